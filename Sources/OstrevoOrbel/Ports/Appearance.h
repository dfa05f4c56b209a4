#pragma once

#include <QObject>

namespace orbel {

/// How the desktop wants windows to look and to move. Called on the main thread.
class Appearance : public QObject {
    Q_OBJECT

public:
    virtual bool isDark() const = 0;
    /// Whether nothing is to move by itself.
    virtual bool isMotionReduced() const = 0;
    /// Whether lines and text are to stand out more.
    virtual bool isContrastHigh() const = 0;

Q_SIGNALS:
    /// Any of these may be another one now.
    void changed();
};

} // namespace orbel
