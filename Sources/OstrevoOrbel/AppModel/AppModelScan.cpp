#include "AppModel/AppModel.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/RescanFlow.h"
#include "AppModel/ScanGrowth.h"
#include "Models/Wording.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <numeric>

namespace orbel {

namespace {

/// Far more than are shown, so that a row that is overtaken still gets its figures.
constexpr std::size_t mostTopLevel = 200;

std::uint64_t sumOf(const KindTotals& totals) {
    return std::accumulate(totals.begin(), totals.end(), std::uint64_t{0});
}

} // namespace

void AppModel::scanFolder(const QUrl& folder) {
    if (const auto path = pathOfFileUrl(folder.toEncoded().toStdString()))
        startScan(*path);
}

void AppModel::scanVolume(int row) {
    if (const auto path = volumes_.pathOf(row))
        startScan(*path);
}

void AppModel::scanDisk() {
    startScan(environment_.dataVolumePath);
}

void AppModel::measureAgain() {
    startScan(std::string(scanRoot_));
}

void AppModel::startScan(const std::string& root) {
    if (scanState_ == ScanState::scanning || moves_->isDeleting() || moves_->isPuttingBack())
        return;
    if (!options().allowWithoutFullDiskAccess && fullDiskAccess_ != true)
        return;
    rescan_->stop();
    if (cancellation_)
        cancellation_->cancel();
    cancellation_ = std::make_shared<ScanCancellation>();
    scanRoot_ = root;
    scanState_ = ScanState::scanning;
    progress_.reset();
    coverage_.reset();
    scannedVolume_.reset();
    counted_.reset();
    figures_.set({});
    topLevel_.begin(scanRootText());
    showTree(sharedTree(FileTree()));
    kinds_.setTotals({});
    largestFolders_.setFolders({});
    growth_.clear();
    unreadable_.setPaths({}, 0, home());
    updateLedgers();
    Q_EMIT scanRootChanged();
    Q_EMIT scanStateChanged();
    Q_EMIT measuredTextChanged();
    mark("scanStarted");

    // The deliveries own the token, so none made later can be at its address while they are under way.
    const auto report = [this, token = cancellation_,
                         inbox = inbox_.address()](const ScanProgress& progress) {
        auto shown = progress;
        shown.topLevel.resize(std::min(shown.topLevel.size(), mostTopLevel));
        inbox.send([this, token, shown = std::move(shown)] { takeProgress(token.get(), shown); });
    };
    inbox_.runAside(
        "orbel.scan",
        [token = cancellation_, report, root, home = home(), scan = environment_.scan, reader = diskReader(),
         growthFolder = environment_.growthFolder] {
            auto result = scan(root, *token, report);
            auto outcome = scanOutcome(std::move(result), reader, home);
            outcome.growth = scanGrowth(outcome, growthFolder, home);
            return outcome;
        },
        [this, token = cancellation_](ScanOutcome outcome) { takeOutcome(token.get(), std::move(outcome)); });
}

void AppModel::stopScan() {
    if (!isScanning() || isStopping())
        return;
    mark("stopRequested");
    cancellation_->cancel();
    Q_EMIT scanStateChanged();
}

void AppModel::takeProgress(const ScanCancellation* token, ScanProgress progress) {
    if (cancellation_.get() != token || !isScanning())
        return;
    if (!progress_)
        mark("firstProgress");
    figures_.set(progress);
    topLevel_.update(progress.topLevel, progress.elapsed);
    progress_ = std::move(progress);
    Q_EMIT measuredTextChanged();
}

void AppModel::takeOutcome(const ScanCancellation* token, ScanOutcome outcome) {
    if (cancellation_.get() != token)
        return;
    const auto& tree = *outcome.tree;
    const bool hasRoot = tree.count() > 0;
    scannedAt_ = outcome.finishedAt;
    scanSeconds_ = outcome.duration;
    takeMoment(outcome.disk);
    if (isWholeDisk() && outcome.disk.disk && hasRoot)
        coverage_ = Coverage(outcome.disk.disk->used, tree);
    counted_.emplace();
    counted_->kinds = outcome.kinds;
    counted_->trashedKinds = outcome.trashedKinds;
    counted_->atScan = outcome.disk;
    counted_->bytesAtScan = counted_->bytes();
    counted_->outsideTreeAtScan = counted_->outsideTree(outcome.disk);
    scanState_ = outcome.cancelled ? ScanState::cancelled : ScanState::done;
    figures_.set({.entries = tree.count(),
                  .bytes = hasRoot ? tree.allocated(0) : 0,
                  .unreadable = tree.unreadableCount,
                  .elapsed = outcome.duration,
                  .topLevel = {}});
    kinds_.setTotals(outcome.kinds);
    largestFolders_.setFolders(std::move(outcome.largestFolders));
    growth_.set(std::move(outcome.growth), environment_.now());
    if (!growth_.failure().isEmpty())
        setNotice(tr("This scan could not be kept to compare the next one with: %1").arg(growth_.failure()));
    unreadable_.setPaths(outcome.unreadable, tree.unreadableCount, home());
    showTree(std::move(outcome.tree));
    updateLedgers();
    Q_EMIT scanStateChanged();
    Q_EMIT measuredTextChanged();
    mark("scanComplete");
    Q_EMIT scanFinished();
}

void AppModel::takeEdit(const std::shared_ptr<const FileTree>& base, ScanOutcome edited) {
    if (tree_ != base || isScanning() || base->count() == 0)
        return;
    const auto& tree = *edited.tree;
    counted_->kinds = edited.kinds;
    counted_->trashedKinds = edited.trashedKinds;
    takeMoment(edited.disk);
    // What was moved to the Trash since is used and not in the tree, but known all the same.
    if (coverage_ && edited.disk.disk) {
        const auto moved = counted_->outsideTree(edited.disk) - counted_->outsideTreeAtScan;
        const auto used = edited.disk.disk->used;
        const auto known = std::clamp<std::int64_t>(moved, 0, static_cast<std::int64_t>(used));
        coverage_ = Coverage(used - static_cast<std::uint64_t>(known), tree);
    }
    figures_.set({.entries = std::uint64_t{tree.descendantCount(0)} + 1,
                  .bytes = tree.allocated(0),
                  .unreadable = tree.unreadableCount,
                  .elapsed = scanSeconds_,
                  .topLevel = {}});
    kinds_.setTotals(edited.kinds);
    largestFolders_.setFolders(std::move(edited.largestFolders));
    growth_.follow(tree, policy_.canonicalizer());
    unreadable_.setPaths(edited.unreadable, tree.unreadableCount, home());
    showTree(std::move(edited.tree));
    updateLedgers();
    Q_EMIT measuredTextChanged();
}

void AppModel::showTree(std::shared_ptr<const FileTree> tree) {
    tree_ = std::move(tree);
    ++treeVersion_;
    Q_EMIT treeChanged();
}

/// What was read earlier than what is shown is dropped.
void AppModel::takeMoment(const DiskMoment& moment) {
    if (moment.number < momentNumber_)
        return;
    momentNumber_ = moment.number;
    const bool isVolumeNew = moment.disk && moment.disk != volume_;
    const bool isTrashNew = moment.trash != trashBytes_;
    if (moment.disk)
        volume_ = moment.disk;
    scannedVolume_ = moment.measured;
    trashBytes_ = moment.trash;
    ledgerVolume_ = volume_;
    updateLedgers();
    if (isVolumeNew)
        Q_EMIT volumeChanged();
    if (isTrashNew)
        Q_EMIT trashBytesChanged();
}

std::uint64_t AppModel::Counted::bytes() const {
    return sumOf(kinds) - sumOf(trashedKinds);
}

std::int64_t AppModel::Counted::outsideTree(const DiskMoment& moment) const {
    return static_cast<std::int64_t>(moment.trash.value_or(0))
           - static_cast<std::int64_t>(sumOf(trashedKinds));
}

void AppModel::updateLedgers() {
    const auto describe = [this](const platform::Mount* mount) {
        return mount == nullptr ? QString() : mountDescription(mount->fileSystem, mount->path, mount->source);
    };
    const auto* const ownMount = mountHolding(mounts_, environment_.dataVolumePath);
    const auto* const scannedMount = mountHolding(mounts_, scanRoot_);
    const bool isSameVolume = isWholeDisk() || ownMount == scannedMount;
    DiskLedger::Figures disk{.path = textOf(environment_.dataVolumePath),
                             .description = describe(ownMount),
                             .volume = ledgerVolume_};
    if (isSameVolume)
        addCounted(disk, true);
    DiskLedger::Figures scanned{.path = scannedMount == nullptr ? scanRootText() : textOf(scannedMount->path),
                                .description = describe(scannedMount),
                                .volume = scannedVolume_};
    addCounted(scanned, false);
    ledger_.setFigures(isSameVolume ? disk : std::move(scanned));
    disk_.setFigures(std::move(disk));
}

/// The Trash is a figure of its own where it is on the same volume, as large as it is now.
void AppModel::addCounted(DiskLedger::Figures& figures, bool holdsTrash) const {
    if (!counted_)
        return;
    figures.measured = counted_->kinds;
    auto accounted = counted_->bytesAtScan;
    if (holdsTrash) {
        for (std::size_t kind = 0; kind < figures.measured->size(); ++kind)
            figures.measured->at(kind) -= counted_->trashedKinds.at(kind);
        figures.trash = trashBytes_.value_or(0);
        accounted += counted_->atScan.trash.value_or(0);
    }
    if (const auto& then = holdsTrash ? counted_->atScan.disk : counted_->atScan.measured)
        figures.uncounted = static_cast<std::int64_t>(then->used) - static_cast<std::int64_t>(accounted);
}

QString AppModel::scanStateName() const {
    switch (scanState_) {
    case ScanState::idle:
        return QStringLiteral("idle");
    case ScanState::scanning:
        return QStringLiteral("scanning");
    case ScanState::done:
        return QStringLiteral("done");
    case ScanState::cancelled:
        break;
    }
    return QStringLiteral("cancelled");
}

bool AppModel::isStopping() const {
    return isScanning() && cancellation_->isCancelled();
}

bool AppModel::isRootUnreadable() const {
    const bool isOver = scanState_ == ScanState::done || scanState_ == ScanState::cancelled;
    return isOver && (tree_->count() == 0 || NodeFlags{tree_->nodeFlags[0]}.contains(NodeFlags::unreadable));
}

QString AppModel::scanRootText() const {
    return textOf(tildePath(policy_.canonicalizer().visiblePath(scanRoot_), home()));
}

QString AppModel::scopeText() const {
    if (isScanning())
        return tr("Measuring %1…").arg(scanRootText());
    const auto what = isWholeDisk() ? tr("This disk") : scanRootText();
    if (scanState_ == ScanState::idle)
        return tr("%1 · not measured yet").arg(what);
    const auto when = whenText(scannedAt_, environment_.now());
    if (isPartial())
        return tr("%1 · partly measured %2, stopped after %3").arg(what, when, durationText(scanSeconds_));
    return tr("%1 · measured %2 in %3").arg(what, when, durationText(scanSeconds_));
}

QString AppModel::measuredText() const {
    if (scanState_ == ScanState::idle)
        return {};
    const auto figures =
        tr("%1 · %2 · %3").arg(figures_.measured().text(), figures_.entriesText(), figures_.duration());
    if (isScanning())
        return figures;
    return (isPartial() ? tr("Partial · measured ") : tr("Measured ")) + figures;
}

QString AppModel::otherVolumesSkipped() const {
    return countText(tree_->otherVolumeCount);
}

} // namespace orbel
