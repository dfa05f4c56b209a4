#include "AppModel/DiskState.h"

#include "Models/Wording.h"
#include "Platform/HomeTrash.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/Check.h"
#include "Util/PathText.h"

#include <algorithm>
#include <numeric>
#include <QFile>
#include <QFileInfo>

namespace orbel {

namespace {

std::uint64_t sumOf(const KindTotals& totals) {
    return std::accumulate(totals.begin(), totals.end(), std::uint64_t{0});
}

} // namespace

DiskState::DiskState(const AppEnvironment& environment, const Activity& activity)
    : environment_(environment), activity_(activity), root_(environment.dataVolumePath) {
    trashTimer_.setSingleShot(true);
    trashTimer_.setInterval(std::chrono::milliseconds(500));
    connect(&trashTimer_, &QTimer::timeout, this, &DiskState::takeTrashChange);
    connect(&trashWatch_, &QFileSystemWatcher::directoryChanged, &trashTimer_, [this] {
        if (!trashTimer_.isActive())
            trashTimer_.start();
    });
    refreshVolume();
    refreshVolumes();
}

void DiskState::refreshVolume() {
    watchTrash();
    if (auto volume = environment_.readVolume(environment_.dataVolumePath); volume != volume_) {
        volume_ = volume;
        // Set against what was measured, the volume waits for the Trash: both are of one moment there.
        if (!counted_) {
            ledgerVolume_ = volume;
            updateLedgers();
        }
        Q_EMIT volumeChanged();
    }
    momentJob_.run([reader = reader(), root = root_] { return reader.read(root); },
                   [this, root = root_](const DiskMoment& moment) {
                       if (root == root_ && !isMomentExpected_)
                           takeMoment(moment);
                       else
                           trashTimer_.start();
                   });
}

/// Watches the folder of the trashed items or, until there is one, the nearest above it.
void DiskState::watchTrash() {
    const auto items = platform::trashedItemsFolder(environment_.trashFolder);
    QString watched;
    for (const auto& folder :
         {items, environment_.trashFolder, std::string(parentPath(environment_.trashFolder))}) {
        if (const auto name = QFile::decodeName(folder.c_str()); QFileInfo(name).isDir()) {
            watched = name;
            break;
        }
    }
    const auto before = trashWatch_.directories();
    if (before == QStringList{watched})
        return;
    if (!before.isEmpty())
        trashWatch_.removePaths(before);
    if (!watched.isEmpty())
        trashWatch_.addPath(watched);
}

/// Every item that is moved changes the Trash; the end of the move tells of all of them. A reading that is
/// under way is not replaced, or none would ever end while the Trash is being emptied.
void DiskState::takeTrashChange() {
    if (activity_.isMoving() || momentJob_.isRunning())
        trashTimer_.start();
    else
        refreshVolume();
}

void DiskState::refreshVolumes() {
    struct Found {
        std::vector<platform::Mount> mounts;
        std::vector<MountedVolume> volumes;
    };
    volumesJob_.run(
        [table = environment_.mountTable, read = environment_.readVolume] {
            Found found{.mounts = table(), .volumes = {}};
            found.volumes = mountedVolumes(found.mounts, read);
            return found;
        },
        [this](Found found) {
            mounts_ = std::move(found.mounts);
            volumes_.setVolumes(std::move(found.volumes));
            updateLedgers();
        });
}

void DiskState::openTrash() {
    environment_.desktop->openTrash(platform::trashedItemsFolder(environment_.trashFolder));
}

void DiskState::beginCounting(const std::string& root, const std::optional<QString>& elsewhere) {
    root_ = elsewhere ? environment_.dataVolumePath : root;
    elsewhere_ = elsewhere;
    scannedVolume_.reset();
    counted_.reset();
    isMomentExpected_ = false;
    updateLedgers();
}

void DiskState::takeCounted(const ScanOutcome& outcome) {
    const bool isScan = !counted_;
    if (isScan)
        counted_ = Counted{};
    const auto trashedBefore = sumOf(counted_->trashedKinds);
    counted_->kinds = outcome.kinds;
    counted_->trashedKinds = outcome.trashedKinds;
    if (isScan) {
        counted_->atScan = outcome.disk;
        counted_->bytesAtScan = counted_->bytes();
        counted_->outsideTreeAtScan = counted_->outsideTree(outcome.disk);
        if (elsewhere_)
            scannedVolume_ = outcome.disk.measured;
    } else if (outcome.bytesByExclusions != 0) {
        // As if the scan had left out the same, the Trash perhaps among it.
        const auto trashLeft =
            static_cast<std::int64_t>(trashedBefore) - static_cast<std::int64_t>(sumOf(outcome.trashedKinds));
        counted_->bytesAtScan += static_cast<std::uint64_t>(outcome.bytesByExclusions + trashLeft);
        counted_->outsideTreeAtScan += trashLeft;
    }
    takeMoment(outcome.disk);
    updateLedgers();
}

std::uint64_t DiskState::usedWithoutMoved(const VolumeInfo& disk, const DiskMoment& moment) const {
    ORBEL_CHECK(counted_, "what was moved is known only once a scan was counted");
    const auto moved = counted_->outsideTree(moment) - counted_->outsideTreeAtScan;
    return disk.used
           - static_cast<std::uint64_t>(
               std::clamp<std::int64_t>(moved, 0, static_cast<std::int64_t>(disk.used)));
}

/// What was read earlier than what is shown is dropped, and so is what was not read now.
void DiskState::takeMoment(const DiskMoment& moment) {
    if (moment.number == 0 || moment.number < momentNumber_)
        return;
    momentNumber_ = moment.number;
    // Of a scan of earlier the Trash is only known where the tree has it: else it was then as it is now.
    if (counted_ && !counted_->atScan.trash) {
        counted_->atScan.trash = moment.trash;
        counted_->outsideTreeAtScan = counted_->outsideTree(moment);
    }
    const bool isVolumeNew = moment.disk && moment.disk != volume_;
    const bool isTrashNew = moment.trash != trashBytes_;
    if (moment.disk)
        volume_ = moment.disk;
    if (!elsewhere_)
        scannedVolume_ = moment.measured;
    trashBytes_ = moment.trash;
    ledgerVolume_ = volume_;
    updateLedgers();
    if (isVolumeNew)
        Q_EMIT volumeChanged();
    if (isTrashNew)
        Q_EMIT trashBytesChanged();
}

std::uint64_t DiskState::Counted::bytes() const {
    return sumOf(kinds) - sumOf(trashedKinds);
}

std::int64_t DiskState::Counted::outsideTree(const DiskMoment& moment) const {
    return static_cast<std::int64_t>(moment.trash.value_or(0))
           - static_cast<std::int64_t>(sumOf(trashedKinds));
}

void DiskState::updateLedgers() {
    const auto describe = [](const platform::Mount* mount) {
        return mount == nullptr ? QString() : mountDescription(mount->fileSystem, mount->path, mount->source);
    };
    const auto& ownPath = environment_.dataVolumePath;
    const auto* const ownMount = mountHolding(mounts_, ownPath);
    const auto* const scannedMount = mountHolding(mounts_, root_);
    const bool isSameVolume = !elsewhere_ && (root_ == ownPath || ownMount == scannedMount);
    DiskLedger::Figures own{
        .path = textOf(ownPath), .description = describe(ownMount), .volume = ledgerVolume_};
    if (isSameVolume)
        addCounted(own, true);
    const auto shownRoot = tildePath(PathCanonicalizer::shared().visiblePath(root_), environment_.home);
    DiskLedger::Figures scanned{.path = textOf(scannedMount == nullptr ? shownRoot : scannedMount->path),
                                .description = describe(scannedMount),
                                .volume = scannedVolume_};
    if (elsewhere_) {
        scanned.path = *elsewhere_;
        scanned.description.clear();
    }
    addCounted(scanned, false);
    ledger_.setFigures(isSameVolume ? own : std::move(scanned));
    ownLedger_.setFigures(std::move(own));
}

/// The Trash is a figure of its own where it is on the same volume, as large as it is now.
void DiskState::addCounted(DiskLedger::Figures& figures, bool holdsTrash) const {
    if (!counted_)
        return;
    figures.measured = counted_->kinds;
    auto accounted = counted_->bytesAtScan;
    if (holdsTrash) {
        for (std::size_t kind = 0; kind < figures.measured->size(); ++kind)
            figures.measured->at(kind) -= counted_->trashedKinds.at(kind);
        figures.trash = trashBytes_.value_or(counted_->atScan.trash.value_or(0));
        accounted += counted_->atScan.trash.value_or(0);
    }
    if (const auto& then = holdsTrash ? counted_->atScan.disk : counted_->atScan.measured)
        figures.uncounted = static_cast<std::int64_t>(then->used) - static_cast<std::int64_t>(accounted);
}

} // namespace orbel
