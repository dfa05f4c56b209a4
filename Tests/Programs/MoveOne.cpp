// Moves one item to the Trash, or all that is in the journal back, or settles intents, with the live parts
// and nothing beside them: no other thread and no look at the processes. So every run makes the same
// system calls, and a test can end it, or fail it, at each of them. Those of a move lie between two calls
// that do nothing.
//
//   move-one trash HOME PATH
//   move-one put-back HOME
//   move-one settle JOURNAL

#include "Delete/DeletionItem.h"
#include "Delete/LiveTrash.h"
#include "Delete/Trasher.h"
#include "Journal/IntentSettling.h"
#include "Journal/LiveRestore.h"
#include "Journal/PutBack.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include <unistd.h>

namespace {

using namespace orbel;

void mark(const char* name) {
    static_cast<void>(::access(name, F_OK));
}

std::string outcomeOfTrashing(const std::string& home, const std::shared_ptr<JournalStore>& journal,
                              const std::string& path) {
    Trasher trasher(SafetyPolicy(home), journal, std::make_shared<LiveTrash>(home + "/.local/share/Trash"));
    trasher.takeMappedSnapshot = [] {
        return MappedFilesSnapshot{.takenAt = std::chrono::system_clock::now(), .processes = {}};
    };
    const DeletionItem item{
        .id = path, .title = "item", .detail = path, .path = path, .scanStamp = FileStamp::of(path).value()};
    mark("/move-one-begins");
    const auto report = trasher.run(std::span(&item, 1), "session", nullptr, nullptr);
    mark("/move-one-ends");
    return std::string(report.moved.empty() ? "skipped" : "moved")
           + (report.journalFailed ? " without journal" : "")
           + (report.skipped.empty() ? "" : ": " + report.skipped.front().reason);
}

std::string outcomeOfPuttingBack(const std::string& home, const std::shared_ptr<JournalStore>& journal) {
    const PutBack putBack(SafetyPolicy(home), journal, std::make_shared<LiveRestore>());
    mark("/move-one-begins");
    const auto results = putBack.putBackSession("session");
    mark("/move-one-ends");
    if (results.size() != 1)
        return std::to_string(results.size()) + " results";
    return std::string(results[0].restored ? "restored" : "not restored") + ": "
           + results[0].reason.value_or("");
}

std::string outcomeOfSettling(const std::string& journalPath) {
    JournalStore journal(journalPath);
    const auto settlement = settleIntents(journal);
    return std::to_string(settlement.recorded.size()) + " recorded, "
           + std::to_string(settlement.failures.size()) + " failures";
}

} // namespace

int main(int count, char** words) {
    if (count < 3)
        return 2;
    const std::string home = words[2];
    if (words[1] == std::string_view("settle")) {
        std::puts(outcomeOfSettling(home).c_str());
        return 0;
    }
    const auto journal = std::make_shared<JournalStore>(home + "/.local/share/Ostrevo Orbel/journal.jsonl");
    const bool isTrashing = words[1] == std::string_view("trash") && count > 3;
    std::puts((isTrashing ? outcomeOfTrashing(home, journal, words[3]) : outcomeOfPuttingBack(home, journal))
                  .c_str());
    return 0;
}
