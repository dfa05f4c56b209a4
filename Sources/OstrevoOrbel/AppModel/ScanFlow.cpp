#include "AppModel/ScanFlow.h"

#include "Models/MapWords.h"
#include "Safety/FullDiskAccess.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/Check.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <algorithm>
#include <QTimer>

namespace orbel {

namespace {

/// Far more than are shown, so that a row that is overtaken still gets its figures.
constexpr std::size_t mostTopLevel = 200;

/// Its root included.
std::uint64_t entriesIn(const FileTree& tree) {
    return tree.count() == 0 ? 0 : std::uint64_t{tree.descendantCount(0)} + 1;
}

} // namespace

ScanFlow::ScanFlow(const AppEnvironment& environment, DiskState& disk, Activity& activity, Notice& notice)
    : environment_(environment),
      disk_(disk),
      activity_(activity),
      notice_(notice),
      scanRoot_(environment.dataVolumePath),
      known_(*environment.settings, environment.dataVolumePath),
      excluded_(*environment.settings),
      tree_(sharedTree(FileTree())) {
    refreshFullDiskAccess();
}

void ScanFlow::scanFolder(const QUrl& folder) {
    if (const auto path = pathOfFileUrl(folder.toEncoded().toStdString()))
        startScan(*path);
}

void ScanFlow::scanVolume(int row) {
    if (const auto path = disk_.volumes()->pathOf(row))
        startScan(*path);
}

void ScanFlow::startScan(const std::string& root) {
    if (!activity_.isIdle() || (!environment_.options.allowWithoutFullDiskAccess && fullDiskAccess_ != true))
        return;
    activity_.begin(Activity::Kind::scan);
    scanRoot_ = root;
    scanState_ = ScanState::scanning;
    provenance_ = Provenance::now;
    progress_.reset();
    lastEntries_ = known_.entriesOf(root);
    topLevel_.begin(rootText());
    disk_.beginCounting(root);
    ScanOutcome nothing;
    nothing.tree = sharedTree(FileTree());
    show(std::move(nothing));
    Q_EMIT scanRootChanged();
    Q_EMIT scanStateChanged();
    environment_.mark("scanStarted");
    job_.run(
        [this, root, home = environment_.home, scan = environment_.scan, reader = disk_.reader(),
         exclusions = excluded_.exclusions()](const LatestJob::Run& run) {
            const auto report = [this, run](const ScanProgress& progress) {
                auto shown = progress;
                shown.topLevel.resize(std::min(shown.topLevel.size(), mostTopLevel));
                run.report([this, shown = std::move(shown)] { takeProgress(shown); });
            };
            auto result = scan(root, run.cancellation(), report, exclusions);
            return scanOutcome(std::move(result), reader, home);
        },
        [this](ScanOutcome outcome) { takeOutcome(std::move(outcome)); });
}

void ScanFlow::stop() {
    if (!isScanning() || isStopping())
        return;
    environment_.mark("stopRequested");
    job_.stop();
    Q_EMIT scanStateChanged();
}

void ScanFlow::takeProgress(const ScanProgress& progress) {
    if (!progress_)
        environment_.mark("firstProgress");
    figures_.set(progress);
    topLevel_.update(progress.topLevel, progress.elapsed);
    progress_ = progress;
    Q_EMIT measuredTextChanged();
}

void ScanFlow::takeOutcome(ScanOutcome outcome) {
    settle(std::move(outcome));
    activity_.end();
    tellEnd();
}

void ScanFlow::takeFresh(ScanOutcome fresh) {
    ORBEL_CHECK(!isScanning(), "a scan would end in the place of a fresh one");
    ORBEL_CHECK(!fresh.cancelled, "a whole scan takes the place of an earlier one");
    provenance_ = Provenance::now;
    disk_.beginCounting(scanRoot_);
    settle(std::move(fresh));
    tellEnd();
}

void ScanFlow::tellEnd() {
    Q_EMIT scanStateChanged();
    environment_.mark("scanComplete");
    Q_EMIT scanFinished();
}

void ScanFlow::settle(ScanOutcome outcome) {
    scannedAt_ = outcome.finishedAt;
    scanSeconds_ = outcome.duration;
    scanState_ = outcome.cancelled ? ScanState::cancelled : ScanState::done;
    origin_ = std::move(outcome.origin);
    disk_.takeCounted(outcome);
    show(std::move(outcome));
    // What is to be left out may have changed while it ran: then it does not tell how long the next one is.
    const bool isLikeTheNext = tree_->exclusions == excluded_.exclusions();
    if (hasTree())
        known_.note(scanRoot_,
                    isPartial() || !isLikeTheNext ? std::nullopt : std::optional(entriesIn(*tree_)));
}

void ScanFlow::takeKept(KeptOutcome kept) {
    ORBEL_CHECK(!isScanning(), "a scan would end in the place of what was kept");
    origin_ = std::move(kept.outcome.origin);
    provenance_ = kept.isForeign ? Provenance::elsewhere : Provenance::earlier;
    scanRoot_ = kept.root.empty() ? kept.outcome.tree->rootPath : kept.root;
    scanState_ = ScanState::done;
    scannedAt_ = kept.outcome.finishedAt;
    scanSeconds_ = kept.outcome.duration;
    progress_.reset();
    const auto disk = origin_.machine.empty() ? tr("Another disk") : textOf(origin_.machine);
    disk_.beginCounting(scanRoot_, isForeign() ? std::optional(disk) : std::nullopt);
    // Without the volume of then, nothing can be set against the disk.
    if (kept.outcome.disk.measured)
        disk_.takeCounted(kept.outcome);
    show(std::move(kept.outcome));
    // The ledger sets the disk as it is now against the figures of then, and names what changed since.
    if (!isForeign())
        disk_.refreshVolume();
    Q_EMIT scanRootChanged();
    Q_EMIT scanStateChanged();
    environment_.mark("scanOpened");
    Q_EMIT scanFinished();
}

void ScanFlow::takeEdit(const std::shared_ptr<const FileTree>& base, ScanOutcome edited) {
    if (tree_ != base || isScanning() || base->count() == 0)
        return;
    disk_.takeCounted(edited);
    show(std::move(edited));
}

void ScanFlow::show(ScanOutcome outcome) {
    const auto& tree = *outcome.tree;
    const bool hasRoot = tree.count() > 0;
    coverage_.reset();
    if (isWholeDisk() && outcome.disk.disk && hasRoot)
        coverage_ = Coverage(disk_.usedWithoutMoved(*outcome.disk.disk, outcome.disk), tree);
    figures_.set({.entries = entriesIn(tree),
                  .bytes = hasRoot ? tree.allocated(0) : 0,
                  .unreadable = tree.unreadableCount,
                  .elapsed = isScanning() ? 0 : scanSeconds_,
                  .topLevel = {}});
    kinds_.setTotals(outcome.kinds);
    extensions_.setTotals(outcome.extensions);
    largestFolders_.setFolders(std::move(outcome.largestFolders));
    unreadable_.setPaths(outcome.unreadable, tree.unreadableCount, environment_.home);
    tree_ = std::move(outcome.tree);
    ++treeVersion_;
    Q_EMIT treeChanged();
    Q_EMIT measuredTextChanged();
}

void ScanFlow::refreshFullDiskAccess() {
    // A check that cannot decide must not lock the user out.
    const bool isGranted = environment_.isFullDiskAccessGranted(environment_.home).value_or(true);
    if (fullDiskAccess_ == isGranted)
        return;
    fullDiskAccess_ = isGranted;
    Q_EMIT fullDiskAccessChanged();
    const auto& options = environment_.options;
    if (!isGranted || !options.scanPath || !isIdle())
        return;
    const auto delay = std::chrono::duration<double>(std::max(options.scanDelay, 0.0));
    QTimer::singleShot(std::chrono::duration_cast<std::chrono::milliseconds>(delay), this,
                       [this] { startScan(*environment_.options.scanPath); });
}

void ScanFlow::openPrivacySettings() {
    environment_.desktop->openAddress(textOf(FullDiskAccess::settingsURL));
}

bool ScanFlow::isRootUnreadable() const {
    return !isIdle() && !isScanning()
           && (tree_->count() == 0 || NodeFlags{tree_->nodeFlags[0]}.contains(NodeFlags::unreadable));
}

double ScanFlow::share() const {
    if (!isScanning() || !lastEntries_)
        return -1;
    return std::min(1.0, fractionOf(progress_ ? progress_->entries : 0, *lastEntries_));
}

QString ScanFlow::shareWords() const {
    if (!isScanning() || !lastEntries_)
        return {};
    const auto last = countOf(*lastEntries_, tr("entry"), tr("entries"));
    const auto entries = progress_ ? progress_->entries : 0;
    return entries > *lastEntries_
               ? tr("More than the %1 of the last scan").arg(last)
               : tr("About %1 of the %2 of the last scan").arg(shareText(entries, *lastEntries_), last);
}

QString ScanFlow::rootText() const {
    return textOf(tildePath(PathCanonicalizer::shared().visiblePath(scanRoot_), environment_.home));
}

QString ScanFlow::keptStatement() const {
    if (!isKept())
        return {};
    if (!isForeign())
        return tr("Measured %1").arg(whenText(scannedAt_, environment_.now()));
    return origin_.machine.empty()
               ? tr("Measured elsewhere; nothing can be moved from here")
               : tr("Measured on %1; nothing can be moved from here").arg(textOf(origin_.machine));
}

QString ScanFlow::keptSentence() const {
    if (!isKept())
        return {};
    if (!isForeign())
        return tr("What has changed since is not in it. Whatever you move is measured again first.");
    return tr("A scan of %1, made %2.").arg(rootText(), whenText(scannedAt_, environment_.now()));
}

QString ScanFlow::scopeText() const {
    if (isScanning())
        return tr("Measuring %1…").arg(rootText());
    const auto what = isWholeDisk() ? tr("This disk") : rootText();
    if (isIdle())
        return tr("%1 · not measured yet").arg(what);
    const auto when = whenText(scannedAt_, environment_.now());
    if (isPartial())
        return tr("%1 · partly measured %2, stopped after %3").arg(what, when, durationText(scanSeconds_));
    return isDurationKnown() ? tr("%1 · measured %2 in %3").arg(what, when, durationText(scanSeconds_))
                             : tr("%1 · measured %2").arg(what, when);
}

QString ScanFlow::measuredText() const {
    if (isIdle())
        return {};
    auto figures = tr("%1 · %2").arg(figures_.measured().text(), figures_.entriesText());
    if (isDurationKnown())
        figures = tr("%1 · %2").arg(figures, figures_.duration());
    const auto state = isScanning() ? QString() : isPartial() ? tr("Partial · measured ") : tr("Measured ");
    return state + figures;
}

} // namespace orbel
