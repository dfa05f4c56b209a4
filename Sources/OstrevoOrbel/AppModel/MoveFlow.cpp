#include "AppModel/MoveFlow.h"

#include "Delete/TakenAlong.h"
#include "Export/ReportRenderer.h"
#include "Models/ByteFigure.h"
#include "Models/Wording.h"
#include "Platform/ReplaceFile.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"
#include "Util/Uuid.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace orbel {

namespace {

QString itemsText(std::size_t count) {
    return countOf(count, MoveFlow::tr("item"), MoveFlow::tr("items"));
}

/// So that the confirmation counts each item once.
void dropTakenAlong(std::vector<TickedItem>& items) {
    std::vector<DeletionItem> plain;
    plain.reserve(items.size());
    for (const auto& ticked : items)
        plain.push_back(ticked.item);
    const auto isTakenAlong = takenAlong(plain);
    std::vector<TickedItem> kept;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (!isTakenAlong[i])
            kept.push_back(std::move(items[i]));
    items = std::move(kept);
}

MoveItemsModel::State stateAfter(Trasher::Step step) {
    switch (step) {
    case Trasher::Step::begun:
        return MoveItemsModel::State::checking;
    case Trasher::Step::moved:
        return MoveItemsModel::State::moved;
    case Trasher::Step::skipped:
        return MoveItemsModel::State::skipped;
    }
    return MoveItemsModel::State::checking;
}

} // namespace

/// What became of the items since the main thread last looked. Small files move faster than it could be
/// told of each.
class MoveFlow::Steps {
public:
    struct Entry {
        std::size_t row;
        Trasher::Step step;
    };

    /// Whether it is the first one to be taken.
    bool add(Entry entry) {
        const std::scoped_lock guard(lock_);
        entries_.push_back(entry);
        return entries_.size() == 1;
    }

    std::vector<Entry> take() {
        const std::scoped_lock guard(lock_);
        return std::exchange(entries_, {});
    }

private:
    std::mutex lock_;
    std::vector<Entry> entries_;
};

MoveFlow::MoveFlow(const AppEnvironment& environment, DeletionSession& session, const ScanFlow& scan,
                   PutBackFlow& putBack, const ShownScreen& shown, Activity& activity, Notice& notice)
    : environment_(environment),
      session_(session),
      scan_(scan),
      putBack_(putBack),
      shown_(shown),
      activity_(activity),
      notice_(notice) {
    connect(&scan, &ScanFlow::scanStateChanged, this, [this] {
        if (!scan_.isScanning() && !scan_.isForeign())
            return;
        clearTicks();
        // The items of a confirmation are of the tree that has just gone.
        cancel();
    });
    connect(&putBack, &PutBackFlow::changed, this, &MoveFlow::changed);
    connect(&putBack, &PutBackFlow::finished, this, &MoveFlow::takePutBack);
    connect(&putBack, &PutBackFlow::restored, this, &MoveFlow::restored);
}

void MoveFlow::watch(Ticks& ticks) {
    watched_.emplace_back(&ticks);
}

void MoveFlow::clearTicks() {
    std::erase_if(watched_, [](const QPointer<Ticks>& ticks) { return ticks.isNull(); });
    for (const auto& ticks : watched_)
        ticks->clear();
}

void MoveFlow::untickInside(const std::string& path) {
    untick([&](const DeletionItem& ticked) { return isPathInside(ticked.path, path); });
}

void MoveFlow::untickAround(const std::string& path) {
    untick([&](const DeletionItem& ticked) {
        return isPathInside(ticked.path, path) || isPathInside(path, ticked.path);
    });
}

void MoveFlow::untickChanged(const FileTree& tree) {
    const auto& canonicalizer = PathCanonicalizer::shared();
    const auto root = canonicalizer.visiblePath(tree.rootPath);
    untick([&](const DeletionItem& ticked) {
        const auto node = tree.index(ticked.path, canonicalizer);
        return isPathInside(ticked.path, root)
               && (!node || tree.allocated(*node) != ticked.estimatedBytes
                   || !tree.matchesScan(*node, ticked.scanStamp));
    });
}

void MoveFlow::untick(const std::function<bool(const DeletionItem& item)>& isMeant) {
    for (const auto& ticks : watched_) {
        if (ticks.isNull())
            continue;
        std::vector<std::string> meant;
        for (const auto& ticked : ticks->items()) {
            if (isMeant(ticked.item))
                meant.push_back(ticked.item.id);
        }
        ticks->untickAll(meant);
    }
}

void MoveFlow::review(Ticks* ticks) {
    if (ticks != nullptr)
        ask(ticks->items());
}

void MoveFlow::ask(std::vector<TickedItem> items) {
    std::erase_if(items, [](const TickedItem& ticked) { return !ticked.item.isSelectable(); });
    dropTakenAlong(items);
    // What is shown says by itself why nothing else begins.
    if (isConfirming() || isDeleting())
        return;
    if (!activity_.isIdle()) {
        notice_.show(scan_.isScanning()
                         ? tr("Nothing moves while something is measured. Wait for the end, or stop it.")
                         : tr("Nothing moves while something is put back."));
        return;
    }
    if (scan_.isForeign()) {
        notice_.show(scan_.keptStatement());
        return;
    }
    if (items.empty()) {
        notice_.show(tr("Nothing is ticked. Space ticks the item that has the focus."));
        return;
    }
    origin_ = shown_.title();
    items_.setItems(items);
    request_ = {.id = newUuid(), .items = std::move(items)};
    Q_EMIT changed();
}

void MoveFlow::cancel() {
    if (!isConfirming())
        return;
    request_.reset();
    items_.setItems({});
    Q_EMIT changed();
}

void MoveFlow::confirm() {
    if (!isConfirming() || !activity_.isIdle())
        return;
    request_.reset();
    std::vector<DeletionItem> approved;
    std::vector<std::string> ids;
    for (const auto& ticked : items_.items()) {
        approved.push_back(ticked.item);
        ids.push_back(ticked.item.id);
    }
    isReporting_ = false;
    atWork_ = 0;
    // The session knows only what this confirmation showed.
    session_.forgetItems();
    session_.registerItems(approved);
    batch_.run(
        [this, move = session_.prepared(ids)](const LatestJob::Run& run) {
            const auto progress = [this, run, steps = std::make_shared<Steps>()](
                                      std::size_t row, const DeletionItem& /*item*/, Trasher::Step step) {
                if (steps->add({.row = row, .step = step}))
                    run.report([this, steps] { takeSteps(*steps); });
            };
            return move(progress, [run] { return run.isCancelled(); });
        },
        [this](DeletionReport report) { takeReport(std::move(report)); });
    activity_.begin(Activity::Kind::move);
    Q_EMIT deletingChanged();
    Q_EMIT changed();
}

void MoveFlow::stopAfterThisItem() {
    if (!isDeleting() || isStopping())
        return;
    batch_.stop();
    Q_EMIT changed();
}

void MoveFlow::takeSteps(Steps& steps) {
    for (const auto& [row, step] : steps.take()) {
        items_.setState(row, stateAfter(step));
        if (step == Trasher::Step::begun)
            atWork_ = row;
    }
    Q_EMIT changed();
}

void MoveFlow::takeReport(DeletionReport report) {
    const auto approved = items_.items();
    std::vector<std::string> gone;
    gone.reserve(report.moved.size());
    for (const auto& item : report.moved)
        gone.push_back(item.path);
    report_.set(report, approved, origin_, environment_.home, environment_.now());
    lastReport_ = std::move(report);
    isReporting_ = true;
    activity_.end();
    Q_EMIT deletingChanged();
    items_.setItems({});
    clearTicks();
    Q_EMIT moved(gone);
    Q_EMIT changed();
    Q_EMIT finished();
}

void MoveFlow::closeReport() {
    if (!isReporting_)
        return;
    isReporting_ = false;
    Q_EMIT changed();
}

void MoveFlow::putBackAll() {
    if (lastReport_ && report_.canPutBack())
        putBack_.putBackSession(lastReport_->sessionID);
}

void MoveFlow::takePutBack(const std::string& sessionID, const std::vector<PutBackResult>& results) {
    if (!lastReport_ || lastReport_->sessionID != sessionID)
        return;
    report_.takePutBack(results);
    // The report that is in sight tells it, item by item.
    if (isReporting_)
        putBack_.closeMessage();
}

void MoveFlow::exportReport(const QUrl& file) {
    const auto path = pathOfFileUrl(file.toEncoded().toStdString());
    if (!path || !lastReport_)
        return;
    const auto text = path->ends_with(".json") ? ReportRenderer::json(*lastReport_) + "\n"
                                               : ReportRenderer::markdown(*lastReport_);
    if (const auto written = replaceFile(*path, text); !written)
        notice_.show(tr("The report could not be written to %1.").arg(textOf(*path)));
}

QString MoveFlow::question() const {
    return tr("Move %1 to the Trash?").arg(itemsText(items_.items().size()));
}

QString MoveFlow::sum() const {
    return tr("%1, %2 on disk")
        .arg(itemsText(items_.items().size()), ByteFigure(sumsOf(items_.items()).bytes).text());
}

QString MoveFlow::frees() const {
    return sumsOf(items_.items()).freesText();
}

QString MoveFlow::commitText() const {
    return tr("Move %1 (%2) to Trash")
        .arg(itemsText(items_.items().size()), ByteFigure(sumsOf(items_.items()).bytes).text());
}

QString MoveFlow::progressText() const {
    if (!isDeleting())
        return {};
    return tr("Moving to the Trash: %1 of %2").arg(countText(atWork_ + 1), countText(items_.items().size()));
}

QString MoveFlow::deletingTitle() const {
    return isDeleting() ? textOf(items_.items().at(atWork_).item.title) : QString();
}

} // namespace orbel
