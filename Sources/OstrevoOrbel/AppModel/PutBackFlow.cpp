#include "AppModel/PutBackFlow.h"

#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <utility>

namespace orbel {

namespace {

QString quoted(const PutBackResult& result) {
    return QStringLiteral("“%1”").arg(textOf(result.title));
}

} // namespace

PutBackFlow::PutBackFlow(const AppEnvironment& environment, const PutBack& service, Activity& activity)
    : environment_(environment), service_(service), activity_(activity) {
    connect(&activity, &Activity::changed, this, &PutBackFlow::changed);
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
    if (!isReady()) {
        if (isRunning())
            return;
        isFailed_ = true;
        statement_ = tr("Nothing is put back while something is measured or moved");
        explanation_.clear();
        restoredPath_.reset();
        Q_EMIT changed();
        return;
    }
    statement_.clear();
    explanation_.clear();
    restoredPath_.reset();
    job_.run([work = std::move(work),
              service = service_](const LatestJob::Run& run) { return work(service, run.cancellation()); },
             [this](const Outcome& outcome) { take(outcome); });
    activity_.begin(Activity::Kind::putBack);
}

void PutBackFlow::take(const Outcome& outcome) {
    std::vector<std::string> paths;
    for (const auto& result : outcome.results) {
        if (result.restored)
            paths.push_back(result.path);
    }
    if (!paths.empty())
        restoredPath_ = paths.front();
    tell(outcome.results);
    activity_.end();
    Q_EMIT finished(outcome.sessionID, outcome.results);
    Q_EMIT restored(paths);
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
        statement_ =
            results.size() == 1
                ? tr("%1 was not put back").arg(quoted(results.front()))
                : tr("None of %1 was put back").arg(countOf(results.size(), tr("item"), tr("items")));
    } else if (restored < results.size()) {
        statement_ = tr("Put back %1 of %2")
                         .arg(countText(restored), countOf(results.size(), tr("item"), tr("items")));
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
        explanation_ = isOneFolder ? tr("to %1").arg(textOf(tildePath(folder, environment_.home)))
                                   : tr("to where they were");
    }
}

QString PutBackFlow::putBackMessage() const {
    if (explanation_.isEmpty())
        return statement_;
    return statement_ + (isFailed_ ? QStringLiteral(": ") : QStringLiteral(" ")) + explanation_;
}

void PutBackFlow::closeMessage() {
    statement_.clear();
    explanation_.clear();
    restoredPath_.reset();
    Q_EMIT changed();
}

void PutBackFlow::showRestored() {
    if (restoredPath_)
        environment_.desktop->showInFileManager(*restoredPath_);
}

} // namespace orbel
