#pragma once

#include <QObject>

namespace orbel {

/// Whether the desktop has a place for the icon of an application whose window is closed. Without one the
/// application ends with its window. Called on the main thread.
class Tray : public QObject {
    Q_OBJECT

public:
    virtual bool isAvailable() const = 0;

Q_SIGNALS:
    void availableChanged();
};

} // namespace orbel
