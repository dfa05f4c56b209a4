#include "AppModel/PutBackFlow.h"

#include "AppModel/AppModel.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/RescanFlow.h"
#include "AppModel/TreeEdits.h"
#include "Models/Wording.h"
#include "Util/BlockingWork.h"
#include "Util/PathText.h"

#include <algorithm>
#include <utility>

namespace orbel {

namespace {

QString quoted(const PutBackResult& result) {
    return QStringLiteral("“%1”").arg(textOf(result.title));
}

} // namespace

PutBackFlow::PutBackFlow(AppModel& app) : app_(app) {
    connect(&app, &AppModel::scanStateChanged, this, &PutBackFlow::changed);
}

PutBackFlow::~PutBackFlow() {
    stopAfterThisItem();
    if (work_.valid())
        work_.wait();
}

bool PutBackFlow::isReady() const {
    return !isRunning() && !app_.isScanning() && !app_.moves()->isDeleting();
}

void PutBackFlow::putBackEntry(const std::string& entryID) {
    start([entryID](const PutBack& service, const ScanCancellation&) {
        Outcome outcome;
        if (auto result = service.putBackEntry(entryID))
            outcome.results.push_back(*std::move(result));
        return outcome;
    });
}

void PutBackFlow::putBackSession(const std::string& sessionID) {
    start([sessionID](const PutBack& service, const ScanCancellation& cancellation) {
        return Outcome{.sessionID = sessionID, .results = service.putBackSession(sessionID, [&] {
                           return cancellation.isCancelled();
                       })};
    });
}

void PutBackFlow::putBackLast() {
    start([](const PutBack& service, const ScanCancellation& cancellation) {
        return service.putBackLast([&] { return cancellation.isCancelled(); });
    });
}

void PutBackFlow::start(std::function<Outcome(const PutBack&, const ScanCancellation&)> work) {
    if (!isReady())
        return;
    app_.rescan()->stop();
    cancellation_ = std::make_shared<ScanCancellation>();
    statement_.clear();
    explanation_.clear();
    restoredPath_.reset();
    Q_EMIT changed();
    work_ = BlockingWork::run("orbel.put-back", [work = std::move(work), service = app_.putBackService(),
                                                 token = cancellation_] {
                return work(service, *token);
            }).share();
    inbox_.runAside(
        "orbel.put-backs", [result = work_] { return result.get(); },
        [this](const Outcome& outcome) { take(outcome); });
}

void PutBackFlow::take(const Outcome& outcome) {
    cancellation_.reset();
    std::vector<std::string> paths;
    for (const auto& result : outcome.results) {
        if (result.restored)
            paths.push_back(result.path);
    }
    if (!paths.empty())
        restoredPath_ = paths.front();
    tell(outcome.results);
    Q_EMIT finished(outcome.sessionID, outcome.results);
    Q_EMIT restored(paths);
    app_.treeEdits().restore(std::move(paths));
    app_.refreshVolume();
    app_.loadJournal();
    Q_EMIT changed();
}

void PutBackFlow::tell(const std::vector<PutBackResult>& results) {
    const auto restored = static_cast<std::size_t>(std::ranges::count_if(results, &PutBackResult::restored));
    const auto back = std::ranges::find_if(results, &PutBackResult::restored);
    const auto doubt =
        std::ranges::find_if(results, [](const PutBackResult& result) { return result.reason.has_value(); });
    isFailed_ = results.empty() || doubt != results.end();
    if (results.empty()) {
        statement_ = tr("There is nothing to put back");
    } else if (restored == 0) {
        statement_ = results.size() == 1 ? tr("%1 was not put back").arg(quoted(results.front()))
                                         : tr("None of %1 items was put back").arg(countText(results.size()));
    } else if (restored < results.size()) {
        statement_ = tr("Put back %1 of %2 items").arg(countText(restored), countText(results.size()));
    } else {
        statement_ = tr("Put back %1").arg(quoted(*back));
        if (restored > 1)
            statement_ += tr(" and %1 more").arg(countText(restored - 1));
    }
    if (doubt != results.end()) {
        const auto reason = textOf(doubt->explanation());
        explanation_ = results.size() == 1 ? reason : tr("%1: %2").arg(quoted(*doubt), reason);
    } else if (restored > 0) {
        const auto folder = parentPath(back->path);
        const bool isOneFolder = std::ranges::all_of(
            results, [&](const PutBackResult& result) { return parentPath(result.path) == folder; });
        explanation_ =
            isOneFolder ? tr("to %1").arg(textOf(tildePath(folder, app_.home()))) : tr("to where they were");
    }
}

QString PutBackFlow::putBackMessage() const {
    if (explanation_.isEmpty())
        return statement_;
    return statement_ + (isFailed_ ? QStringLiteral(": ") : QStringLiteral(" ")) + explanation_;
}

void PutBackFlow::stopAfterThisItem() {
    if (isRunning())
        cancellation_->cancel();
}

void PutBackFlow::closeMessage() {
    statement_.clear();
    explanation_.clear();
    restoredPath_.reset();
    Q_EMIT changed();
}

void PutBackFlow::showRestored() {
    if (restoredPath_)
        app_.desktop().showInFileManager(*restoredPath_);
}

} // namespace orbel
