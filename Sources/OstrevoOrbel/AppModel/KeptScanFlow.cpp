#include "AppModel/KeptScanFlow.h"

#include "Models/Wording.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/RealPath.h"
#include "Saved/ScanArchive.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <chrono>
#include <expected>
#include <numeric>
#include <utility>

namespace orbel {

namespace {

ScanOutcome outcomeOf(KeptScan kept, const std::string& trashedItems, const std::string& home) {
    using Clock = std::chrono::system_clock::duration;
    ScanResult result;
    result.tree = std::move(kept.tree);
    result.duration = kept.origin.duration;
    auto outcome = treeOutcome(std::move(result), trashedItems, home);
    outcome.finishedAt =
        std::chrono::time_point_cast<Clock>(kept.origin.measuredAt)
        + std::chrono::duration_cast<Clock>(std::chrono::duration<double>(kept.origin.duration));
    outcome.disk.measured = kept.origin.volume;
    outcome.origin = std::move(kept.origin);
    return outcome;
}

KeptOutcome foreignOutcome(KeptScan kept, const std::string& home) {
    // Longer than the name of a host can be, it is none.
    constexpr std::size_t longestName = 255;
    if (kept.origin.machine.size() > longestName)
        kept.origin.machine.clear();
    return {.outcome = outcomeOf(std::move(kept), {}, home), .root = {}, .isForeign = true};
}

/// The newest of this root, as the disk was then: `root` is how it was asked for.
std::optional<KeptOutcome> lastOutcome(const std::string& root, const std::string& folder,
                                       const std::vector<std::string>& patterns, const DiskReader& reader,
                                       const std::string& home) {
    auto kept = ScanArchive(folder).newest(RealPath::resolve(root).value_or(root), patterns);
    if (!kept)
        return std::nullopt;
    const auto trashedItems = reader.trashedItems();
    KeptOutcome shown{.outcome = outcomeOf(*std::move(kept), trashedItems, home), .root = root};
    shown.outcome.disk.disk = shown.outcome.disk.measured;
    if (shown.outcome.tree->index(trashedItems, PathCanonicalizer::shared()))
        shown.outcome.disk.trash = std::reduce(shown.outcome.trashedKinds.begin(),
                                               shown.outcome.trashedKinds.end(), std::uint64_t{0});
    return shown;
}

/// A start that asks for nothing by itself.
bool isPlain(const LaunchOptions& options) {
    return !options.scanPath && !options.openScreen && !options.selectApp && !options.snapshotPath
           && !options.quitAfterScan;
}

} // namespace

KeptScanFlow::KeptScanFlow(const AppEnvironment& environment, ScanFlow& scan, const DiskState& disk,
                           const Activity& activity, Notice& notice)
    : environment_(environment), scan_(scan), disk_(disk), activity_(activity), notice_(notice) {
    connect(&activity, &Activity::changed, this, [this] {
        if (activity_.isIdle())
            return;
        job_.drop();
        setOpeningLast(false);
    });
    const auto& options = environment.options;
    if (options.openScanPath && !options.scanPath)
        open(*options.openScanPath);
    else if (isPlain(options))
        openLast();
}

void KeptScanFlow::openLast() {
    const auto root = scan_.knownRoots().latest();
    if (!root || environment_.scansFolder.empty())
        return;
    setOpeningLast(true);
    job_.run([root = *root, folder = environment_.scansFolder,
              patterns = scan_.excluded().exclusions().patterns, reader = disk_.reader(),
              home = environment_.home] { return lastOutcome(root, folder, patterns, reader, home); },
             [this](std::optional<KeptOutcome> last) {
                 setOpeningLast(false);
                 if (!last)
                     return;
                 scan_.takeKept(*std::move(last));
                 Q_EMIT lastOpened();
             });
}

void KeptScanFlow::setOpeningLast(bool opening) {
    if (std::exchange(isOpeningLast_, opening) != opening)
        Q_EMIT openingChanged();
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
    setOpeningLast(false);
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
