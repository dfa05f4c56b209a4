#pragma once

#include <functional>
#include <QObject>

class QQuickWindow;

namespace orbel {

class AppModel;

/// What a scripted run does when a scan is done: waits until what the shown screen lists is found, lets the
/// screen settle, moves the pointer if asked to, takes a picture, writes the diagnostics and ends the
/// application. Does nothing unless the command line asked for it.
class AfterScan final : public QObject {
    Q_OBJECT

public:
    using Quit = std::function<void(int status)>;

    /// `model` and `window` outlive this. `quit` gets the exit status: 1 when the picture or the diagnostics
    /// could not be written, or the scan of a file not be shown, which is also said on standard error.
    AfterScan(AppModel& model, QQuickWindow& window, Quit quit);

private:
    void begin();
    void awaitRest();
    void finish();
    void moveThePointer();

    AppModel& model_;
    QQuickWindow& window_;
    Quit quit_;
};

} // namespace orbel
