// Moves items to the Trash in one run, or all that is in the journal back, or settles intents, with the live
// parts and nothing beside them: no other thread and no look at the processes. So every run makes the same
// system calls, and a test can end it, or fail it, at each of them. Those of a move lie between two calls
// that do nothing.
//
//   move-items trash HOME PATH...
//   move-items put-back HOME
//   move-items settle JOURNAL
//
// Prints a line for each item: "done PATH", "unrecorded PATH: WHY" (moved, but not as it should be) or
// "refused PATH: WHY"; and "stopped: WHY" when the run ended before its time.

#include "Delete/DeletionItem.h"
#include "Delete/LiveTrash.h"
#include "Delete/Trasher.h"
#include "Journal/IntentSettling.h"
#include "Journal/LiveRestore.h"
#include "Journal/PutBack.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace {

using namespace orbel;

void mark(const char* name) {
    static_cast<void>(::access(name, F_OK));
}

void tell(const std::string& outcome, const std::string& path, const std::string& reason = "") {
    std::puts((outcome + " " + path + (reason.empty() ? "" : ": " + reason)).c_str());
}

void trash(const std::string& home, const std::shared_ptr<JournalStore>& journal, std::span<char*> paths) {
    Trasher trasher(SafetyPolicy(home), journal, std::make_shared<LiveTrash>(home + "/.local/share/Trash"));
    trasher.takeMappedSnapshot = [] {
        return MappedFilesSnapshot{.takenAt = std::chrono::system_clock::now(), .processes = {}};
    };
    std::vector<DeletionItem> items;
    for (const std::string path : paths)
        items.push_back({.id = path,
                         .title = "item",
                         .detail = path,
                         .path = path,
                         .scanStamp = FileStamp::of(path).value()});
    mark("/moves-begin");
    const auto report = trasher.run(items, "session", nullptr, nullptr);
    mark("/moves-end");
    const auto wasMoved = [&](const std::string& path) {
        return std::ranges::find(report.moved, path, &DeletionReport::Moved::path) != report.moved.end();
    };
    for (const auto& item : report.moved)
        if (std::ranges::find(report.skipped, item.path, &DeletionReport::Skipped::path)
            == report.skipped.end())
            tell("done", item.path);
    for (const auto& item : report.skipped)
        tell(wasMoved(item.path) ? "unrecorded" : "refused", item.path, item.reason);
    if (report.journalFailed || report.stoppedForMismatch)
        std::puts(("stopped: " + report.journalFailure.value_or("mismatch")).c_str());
}

void putBack(const std::string& home, const std::shared_ptr<JournalStore>& journal) {
    const PutBack putBack(SafetyPolicy(home), journal, std::make_shared<LiveRestore>());
    mark("/moves-begin");
    const auto results = putBack.putBackSession("session");
    mark("/moves-end");
    for (const auto& result : results) {
        const auto* done = result.reason ? "unrecorded" : "done";
        tell(result.restored ? done : "refused", result.path, result.explanation());
    }
}

void settle(const std::string& journalPath) {
    JournalStore journal(journalPath);
    const auto settlement = settleIntents(journal);
    std::puts((std::to_string(settlement.recorded.size()) + " recorded, "
               + std::to_string(settlement.failures.size()) + " failures")
                  .c_str());
}

} // namespace

int main(int count, char** words) {
    if (count < 3)
        return 2;
    const std::string_view what = words[1];
    const std::string home = words[2];
    const auto journal = std::make_shared<JournalStore>(home + "/.local/share/Ostrevo Orbel/journal.jsonl");
    if (what == "settle")
        settle(home);
    else if (what == "trash")
        trash(home, journal, std::span(words, static_cast<std::size_t>(count)).subspan(3));
    else
        putBack(home, journal);
    return 0;
}
