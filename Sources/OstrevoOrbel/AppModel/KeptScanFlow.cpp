#include "AppModel/KeptScanFlow.h"

#include "Models/Wording.h"
#include "Platform/MountTable.h"
#include "Safety/PathCanonicalizer.h"
#include "Saved/OpenScan.h"
#include "Saved/ScanArchive.h"
#include "Util/FileUrl.h"
#include "Util/PathResolver.h"
#include "Util/PathText.h"

#include <chrono>
#include <expected>
#include <functional>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

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

/// What the last scan is looked for with.
struct LastScan {
    std::string root; ///< as it was asked for
    std::vector<std::string> patterns;
    ScanArchive archive;
    DiskReader reader;
    std::string home;
    std::function<std::vector<platform::Mount>()> mountTable;

    /// The newest, and the disk as it was then. Absent too where the root is not there now, or on a server.
    std::optional<KeptOutcome> outcome() const {
        PathResolver resolver(platform::mountPointsOutOfReach(mountTable(), std::span(&home, 1)));
        const auto place = resolver.resolve(root);
        auto kept = place.isFound() ? archive.newest(place.path, patterns) : std::nullopt;
        if (!kept)
            return std::nullopt;
        const auto trashedItems = reader.trashedItems();
        KeptOutcome shown{.outcome = outcomeOf(*std::move(kept), trashedItems, home), .root = root};
        auto& disk = shown.outcome.disk;
        disk.disk = disk.measured;
        const auto& trashed = shown.outcome.trashedKinds;
        if (shown.outcome.tree->index(trashedItems, PathCanonicalizer::shared()))
            disk.trash = std::reduce(trashed.begin(), trashed.end(), std::uint64_t{0});
        return shown;
    }
};

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
    job_.run([last = LastScan{.root = *root,
                              .patterns = scan_.excluded().exclusions().patterns,
                              .archive = ScanArchive(environment_.scansFolder),
                              .reader = disk_.reader(),
                              .home = environment_.home,
                              .mountTable = environment_.mountTable}] { return last.outcome(); },
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
    job_.run(
        [path, home = environment_.home]() -> Opened {
            auto kept = read(path, home);
            if (!kept)
                return std::unexpected(std::move(kept.error()));
            return foreignOutcome(*std::move(kept), home);
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

std::expected<KeptScan, QString> KeptScanFlow::read(const std::string& path, const std::string& home) {
    const auto shown = textOf(tildePath(path, home));
    auto kept = openScan(path);
    if (!kept)
        return std::unexpected(tr("%1 is not a scan file.").arg(shown));
    if (!*kept)
        return std::unexpected(tr("%1 could not be opened: %2").arg(shown, textOf(kept->error())));
    return *std::move(*kept);
}

} // namespace orbel
