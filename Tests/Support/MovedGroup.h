#pragma once

#include "Support/RunProgram.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orbel::test {

/// Three items of a home that one run of move-items moves to the Trash or puts back, and what has to be true
/// of them however that run ended.
class MovedGroup {
public:
    enum class Move : std::uint8_t { toTrash, back };
    static constexpr int size = 3;

    /// Writes nothing. The home may be unmounted and mounted again meanwhile.
    MovedGroup(std::string home, Move move);

    /// Makes the items. Those that are to be put back are moved to the Trash first.
    void prepare() const;

    /// The run, with `tracer` and its options before the program.
    ProgramStart start(std::vector<std::string> tracer = {}) const;

    std::string journalPath() const { return home_ + "/.local/share/Ostrevo Orbel/journal.jsonl"; }

    /// How many items stand where the move brings them.
    int moved() const;

    /// What the run said became of the items ("done", "unrecorded", "refused"), by their paths.
    static std::map<std::string, std::string> told(const std::string& output);

    /// Where the output of a run that came to its end is not true of the disk. Call it before settling.
    std::vector<std::string> untruths(const std::string& output) const;

    /// Info files in the Trash that were not written to their end.
    std::vector<std::string> tornInfoFiles() const;

    /// Settles what the run left behind. Then each item must be at exactly one place, whole; in the Trash
    /// if and only if it has its info file, whole, and its line; and nothing may be left to settle. Tells
    /// what is otherwise.
    std::vector<std::string> faultsOnceSettled() const;

private:
    std::string place(int item) const;
    /// Its name in the Trash, which may be another than its own; empty when it is not there, whole.
    std::string storedName(int item) const;
    bool isMoved(int item) const;
    std::string trash() const { return home_ + "/.local/share/Trash"; }
    ProgramStart movesToTrash() const;

    std::string home_;
    Move move_;
};

} // namespace orbel::test
