#include "Services/AfterScan.h"

#include "AppModel/AppModel.h"
#include "Commands/CommandOutput.h"
#include "Models/Wording.h"
#include "Services/WindowSnapshot.h"

#include <chrono>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QQuickWindow>
#include <QTimer>
#include <random>

namespace orbel {

namespace {

constexpr double settlingSeconds = 1.5;
constexpr std::chrono::milliseconds restInterval(200);

} // namespace

AfterScan::AfterScan(AppModel& model, QQuickWindow& window, Quit quit)
    : model_(model), window_(window), quit_(std::move(quit)) {
    const auto& options = model.options();
    if (!options.snapshotPath && !options.quitAfterScan)
        return;
    connect(model.scan(), &ScanFlow::scanFinished, this, &AfterScan::begin);
    // Without a scan there is nothing to wait for.
    connect(model.kept(), &KeptScanFlow::failed, this, [this](const QString& words) {
        say(withoutIsolates(words).toStdString());
        if (model_.options().quitAfterScan)
            quit_(ExitStatus::incomplete);
    });
}

void AfterScan::begin() {
    if (model_.screen() == Screen::duplicates)
        model_.duplicates()->search(); // the other lists are found without being asked for
    // What the scan's end makes the screens do begins with its other receivers.
    QTimer::singleShot(0, this, &AfterScan::awaitRest);
}

void AfterScan::awaitRest() {
    if (model_.isShownScreenBusy()) {
        QTimer::singleShot(restInterval, this, &AfterScan::awaitRest);
        return;
    }
    const std::chrono::duration<double> delay(
        std::max(model_.options().snapshotDelay.value_or(settlingSeconds), 0.0));
    QTimer::singleShot(std::chrono::duration_cast<std::chrono::milliseconds>(delay), this,
                       &AfterScan::finish);
}

void AfterScan::finish() {
    int status = ExitStatus::done;
    moveThePointer();
    const auto& options = model_.options();
    if (options.snapshotPath) {
        if (!writeWindowSnapshot(window_, *options.snapshotPath)) {
            say("The picture of the window could not be written to " + *options.snapshotPath);
            status = ExitStatus::incomplete;
        }
        if (model_.diagnostics() != nullptr)
            model_.diagnostics()->mark("snapshotTaken");
    }
    if (options.quitAfterScan)
        quit_(status);
}

/// The same ways in every run, so that two runs can be compared.
void AfterScan::moveThePointer() {
    auto* const diagnostics = model_.diagnostics();
    const auto hovers = model_.options().simulatedHovers;
    if (hovers <= 0)
        return;
    if (diagnostics != nullptr)
        diagnostics->mark("hoverStarted");
    std::minstd_rand random(1); // NOLINT(bugprone-random-generator-seed,cert-msc51-cpp): see above
    std::uniform_real_distribution<double> share(0, 1);
    for (std::int64_t i = 0; i < hovers; ++i) {
        const QPointF place(share(random) * window_.width(), share(random) * window_.height());
        QMouseEvent move(QEvent::MouseMove, place, window_.mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&window_, &move);
        QCoreApplication::processEvents();
    }
    if (diagnostics != nullptr)
        diagnostics->mark("hoverEnded");
}

} // namespace orbel
