#include "AppModel/KeptScanFlow.h"

#include "Models/Wording.h"
#include "Saved/ScanFile.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <chrono>
#include <expected>
#include <utility>

namespace orbel {

namespace {

/// As a file tells it; empty where it is longer than the name of a host can be.
std::string machineIn(ScanOrigin& origin) {
    constexpr std::size_t longest = 255;
    return origin.machine.size() > longest ? std::string() : std::move(origin.machine);
}

KeptOutcome foreignOutcome(KeptScan kept, const std::string& home) {
    using Clock = std::chrono::system_clock::duration;
    ScanResult result;
    result.tree = std::move(kept.tree);
    result.duration = kept.origin.duration;
    KeptOutcome shown{.outcome = treeOutcome(std::move(result), {}, home),
                      .origin = {.machine = machineIn(kept.origin), .isForeign = true}};
    shown.outcome.finishedAt =
        std::chrono::time_point_cast<Clock>(kept.origin.measuredAt)
        + std::chrono::duration_cast<Clock>(std::chrono::duration<double>(kept.origin.duration));
    shown.outcome.disk.measured = kept.origin.volume;
    return shown;
}

} // namespace

KeptScanFlow::KeptScanFlow(const AppEnvironment& environment, ScanFlow& scan, const Activity& activity,
                           Notice& notice)
    : environment_(environment), scan_(scan), activity_(activity), notice_(notice) {
    connect(&activity, &Activity::changed, this, [this] {
        if (!activity_.isIdle())
            job_.drop();
    });
    const auto& options = environment.options;
    if (options.openScanPath && !options.scanPath)
        open(*options.openScanPath);
}

void KeptScanFlow::openFile(const QUrl& file) {
    if (const auto path = pathOfFileUrl(file.toEncoded().toStdString()))
        open(*path);
}

void KeptScanFlow::open(const std::string& path) {
    if (!activity_.isIdle()) {
        notice_.show(tr("A scan is opened when nothing else runs."));
        return;
    }
    using Opened = std::expected<KeptOutcome, QString>;
    const auto shown = textOf(tildePath(path, environment_.home));
    job_.run(
        [path, shown, home = environment_.home]() -> Opened {
            auto kept = readScanFile(path);
            if (!kept)
                return std::unexpected(tr("%1 is not a scan file.").arg(shown));
            if (!*kept)
                return std::unexpected(tr("%1 could not be opened: %2").arg(shown, textOf(kept->error())));
            return foreignOutcome(*std::move(*kept), home);
        },
        [this](Opened opened) {
            if (opened) {
                scan_.takeKept(*std::move(opened));
                return;
            }
            notice_.show(opened.error());
            Q_EMIT failed(opened.error());
        });
}

} // namespace orbel
