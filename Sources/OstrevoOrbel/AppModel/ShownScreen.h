#pragma once

#include "Launch/Screen.h"
#include "Models/Wording.h"

#include <QObject>

namespace orbel {

/// Which screen is shown. Used on the main thread.
class ShownScreen final : public QObject {
    Q_OBJECT

public:
    explicit ShownScreen(Screen first) : screen_(first) {}

    Screen screen() const { return screen_; }
    void set(Screen screen) {
        if (screen == screen_)
            return;
        screen_ = screen;
        Q_EMIT changed();
    }
    /// "large"
    QString name() const { return textOf(screenNames.at(static_cast<std::size_t>(screen_))); }
    /// "Large and Old"
    QString title() const { return textOf(screenTitles.at(static_cast<std::size_t>(screen_))); }

Q_SIGNALS:
    void changed();

private:
    Screen screen_;
};

} // namespace orbel
