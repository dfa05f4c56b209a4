#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Interruption.h"
#include "Commands/Request.h"
#include "Commands/UserContext.h"
#include "Journal/LiveRestore.h"
#include "Journal/PutBack.h"
#include "Util/JsonText.h"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

nlohmann::json resultJson(const PutBackResult& result) {
    nlohmann::json json = {{"title", result.title}, {"path", result.path}, {"restored", result.restored}};
    if (result.reason)
        json["reason"] = *result.reason;
    if (result.journalFailure)
        json["journalFailure"] = *result.journalFailure;
    return json;
}

void run(const Request& request) {
    const auto& cancellation = stopAfterThisItemOnInterrupt();
    const UserContext user;
    if (const auto& reason = user.policy().homeReason()) {
        say(*reason);
        finish("[]\n", ExitStatus::incomplete);
    }
    const auto journal = user.settledJournal();
    const PutBack putBack(user.policy(), journal, std::make_shared<LiveRestore>());

    const auto& id = request.operands.front();
    bool isStopped = false;
    const auto isCancelled = [&] { return isStopped = cancellation.isCancelled(); };
    const auto outcome =
        id == "last" ? putBack.putBackLast(isCancelled) : putBack.putBackEntryOrSession(id, isCancelled);
    if (outcome.journalFailure) {
        say(*outcome.journalFailure);
        finish("[]\n", ExitStatus::incomplete);
    }
    const auto& results = outcome.results;

    nlohmann::json json = nlohmann::json::array();
    for (const auto& result : results)
        json.push_back(resultJson(result));
    if (results.empty() && !isStopped)
        say("There is nothing to put back");
    const bool allBack =
        !results.empty() && !isStopped && std::ranges::all_of(results, &PutBackResult::restored);
    finish(prettyJson(json) + "\n", allBack ? ExitStatus::done : ExitStatus::incomplete);
}

} // namespace

constinit const Command putBackCommand{
    .name = "--put-back",
    .operands = "ID",
    .fewestOperands = 1,
    .isChange = true,
    .help = "Move back what an entry or a session of the journal moved to the Trash; \"last\" is the newest "
            "session with anything left. Nothing is ever replaced. Prints the outcomes as JSON.",
    .run = run,
};

} // namespace orbel
