#pragma once

#include <QObject>

namespace orbel {

/// Whether the desktop prefers dark windows. Called on the main thread.
class Appearance : public QObject {
    Q_OBJECT

public:
    virtual bool isDark() const = 0;

Q_SIGNALS:
    void darkChanged(bool dark);
};

} // namespace orbel
