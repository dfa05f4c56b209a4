#include "AppModel/MoveFlow.h"

#include "AppModel/AppModel.h"
#include "AppModel/PutBackFlow.h"
#include "AppModel/RescanFlow.h"
#include "AppModel/TreeEdits.h"
#include "Delete/DeletionSession.h"
#include "Delete/TakenAlong.h"
#include "Export/ReportRenderer.h"
#include "Models/ByteFigure.h"
#include "Models/Wording.h"
#include "Platform/ReplaceFile.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"
#include "Util/Uuid.h"

#include <algorithm>
#include <mutex>
#include <unordered_set>
#include <utility>

namespace orbel {

namespace {

QString itemsText(std::size_t count) {
    return countOf(count, MoveFlow::tr("item"), MoveFlow::tr("items"));
}

std::vector<DeletionItem> movedItems(const DeletionReport& report, const std::vector<TickedItem>& approved) {
    std::unordered_set<std::string_view> paths;
    for (const auto& moved : report.moved)
        paths.insert(moved.path);
    std::vector<DeletionItem> items;
    for (const auto& ticked : approved) {
        if (paths.contains(ticked.item.path))
            items.push_back(ticked.item);
    }
    return items;
}

/// So that the confirmation counts each item once.
void dropTakenAlong(std::vector<TickedItem>& items) {
    std::vector<DeletionItem> plain;
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

MoveFlow::MoveFlow(AppModel& app) : app_(app) {
    connect(&app, &AppModel::scanStateChanged, this, [this] {
        if (!app_.isScanning())
            return;
        clearTicks();
        // The items of a confirmation are of the tree that has just gone.
        cancel();
    });
    auto* const putBack = app.putBack();
    connect(this, &MoveFlow::deletingChanged, putBack, &PutBackFlow::changed);
    connect(putBack, &PutBackFlow::changed, this, &MoveFlow::changed);
    connect(putBack, &PutBackFlow::finished, this, &MoveFlow::takePutBack);
    connect(putBack, &PutBackFlow::restored, this, &MoveFlow::restored);
}

MoveFlow::~MoveFlow() {
    stopAfterThisItem();
    if (batch_.valid())
        batch_.wait();
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
    for (const auto& ticks : watched_) {
        if (ticks.isNull())
            continue;
        std::vector<std::string> inside;
        for (const auto& ticked : ticks->items()) {
            if (isPathInside(ticked.item.path, path))
                inside.push_back(ticked.item.id);
        }
        ticks->untickAll(inside);
    }
}

void MoveFlow::review(Ticks* ticks) {
    if (ticks != nullptr)
        ask(ticks->items());
}

void MoveFlow::ask(std::vector<TickedItem> items) {
    std::erase_if(items, [](const TickedItem& ticked) { return !ticked.item.isSelectable(); });
    dropTakenAlong(items);
    if (items.empty() || isConfirming() || isDeleting() || isPuttingBack() || app_.isScanning())
        return;
    origin_ = app_.screenTitle();
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
    if (!isConfirming() || isDeleting())
        return;
    app_.rescan()->stop();
    request_.reset();
    std::vector<DeletionItem> approved;
    std::vector<std::string> ids;
    for (const auto& ticked : items_.items()) {
        approved.push_back(ticked.item);
        ids.push_back(ticked.item.id);
    }
    isReporting_ = false;
    cancellation_ = std::make_shared<ScanCancellation>();
    atWork_ = 0;
    const auto progress = [this, token = cancellation_, steps = std::make_shared<Steps>(),
                           inbox = inbox_.address()](std::size_t row, const DeletionItem& /*item*/,
                                                     Trasher::Step step) {
        if (steps->add({.row = row, .step = step}))
            inbox.send([this, token, steps] { takeSteps(token.get(), *steps); });
    };
    // The session knows only what this confirmation showed.
    auto& session = app_.session();
    session.forgetItems();
    session.registerItems(approved);
    batch_ = session.run(ids, progress, [token = cancellation_] { return token->isCancelled(); }).share();
    inbox_.runAside(
        "orbel.moves", [batch = batch_] { return batch.get(); },
        [this, token = cancellation_](DeletionReport report) { takeReport(token.get(), std::move(report)); });
    Q_EMIT deletingChanged();
    Q_EMIT changed();
}

void MoveFlow::stopAfterThisItem() {
    if (!isDeleting() || isStopping())
        return;
    cancellation_->cancel();
    Q_EMIT changed();
}

bool MoveFlow::isStopping() const {
    return isDeleting() && cancellation_->isCancelled();
}

void MoveFlow::takeSteps(const ScanCancellation* token, Steps& steps) {
    if (cancellation_.get() != token)
        return;
    for (const auto& [row, step] : steps.take()) {
        items_.setState(row, stateAfter(step));
        if (step == Trasher::Step::begun)
            atWork_ = row;
    }
    Q_EMIT changed();
}

void MoveFlow::takeReport(const ScanCancellation* token, DeletionReport report) {
    if (cancellation_.get() != token)
        return;
    const auto approved = items_.items();
    const auto gone = movedItems(report, approved);
    cancellation_.reset();
    report_.set(report, approved, origin_, app_.home(), app_.now());
    lastReport_ = std::move(report);
    isReporting_ = true;
    Q_EMIT deletingChanged();
    items_.setItems({});
    clearTicks();
    Q_EMIT moved(gone);
    std::vector<std::string> paths;
    paths.reserve(gone.size());
    for (const auto& item : gone)
        paths.push_back(item.path);
    app_.treeEdits().remove(std::move(paths));
    app_.refreshVolume();
    app_.loadJournal();
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
        app_.putBack()->putBackSession(lastReport_->sessionID);
}

bool MoveFlow::isPuttingBack() const {
    return app_.putBack()->isRunning();
}

void MoveFlow::takePutBack(const std::string& sessionID, const std::vector<PutBackResult>& results) {
    if (!lastReport_ || lastReport_->sessionID != sessionID)
        return;
    report_.takePutBack(results);
    // The report that is in sight tells it, item by item.
    if (isReporting_)
        app_.putBack()->closeMessage();
}

void MoveFlow::exportReport(const QUrl& file) {
    const auto path = pathOfFileUrl(file.toEncoded().toStdString());
    if (!path || !lastReport_)
        return;
    const auto text = path->ends_with(".json") ? ReportRenderer::json(*lastReport_) + "\n"
                                               : ReportRenderer::markdown(*lastReport_);
    if (const auto written = replaceFile(*path, text); !written)
        app_.tell(tr("The report could not be written to %1.").arg(textOf(*path)));
}

QString MoveFlow::question() const {
    return tr("Move %1 to the Trash?").arg(itemsText(items_.items().size()));
}

QString MoveFlow::sum() const {
    return tr("%1, %2 on disk")
        .arg(itemsText(items_.items().size()), ByteFigure(bytesOf(items_.items())).text());
}

QString MoveFlow::frees() const {
    return freesText(items_.items());
}

QString MoveFlow::commitText() const {
    return tr("Move %1 (%2) to Trash")
        .arg(itemsText(items_.items().size()), ByteFigure(bytesOf(items_.items())).text());
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
