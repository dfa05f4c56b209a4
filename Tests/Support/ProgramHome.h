#pragma once

#include "Journal/JournalStore.h"
#include "Support/RunProgram.h"
#include "Support/TrashHome.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace orbel::test {

/// A home folder in which the terminal program is run, and which is all that it sees.
class ProgramHome : public TrashHome {
public:
    ProgramStart start(std::vector<std::string> words) const {
        words.insert(words.begin(), ORBEL_PROGRAM);
        return {.words = std::move(words), .environment = environmentOf(path()), .folder = path()};
    }
    ProgramRun run(std::vector<std::string> words) const {
        return RunningProgram(start(std::move(words))).finish();
    }
    /// What a run printed, which must be JSON, after it ended with this status.
    nlohmann::json json(std::vector<std::string> words, int status) const;

    std::string journalPath() const { return path(".local/share/Ostrevo Orbel/journal.jsonl"); }
    std::vector<JournalEntry> entries() const { return JournalStore(journalPath()).entries(); }
};

} // namespace orbel::test
