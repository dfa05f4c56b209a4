#pragma once

#include "Journal/JournalEntry.h"
#include "Journal/JournalStore.h"

#include <memory>
#include <string>
#include <vector>

namespace orbel {

/// What became of the intents that earlier processes left behind.
struct Settlement {
    /// A move whose outcome is not known: nothing was recorded and nothing was removed.
    struct Doubt {
        JournalEntry entry; ///< the line that was not written
        std::string words;  ///< what was found where, for the user

        bool operator==(const Doubt&) const = default;
    };

    std::vector<JournalEntry> recorded; ///< the missing lines that were written, in the order of the moves
    std::vector<Doubt> doubts;          ///< told once: their intents are gone afterwards
    /// What kept intents from being settled, for the user; those are still there and are tried again next
    /// time.
    std::vector<std::string> failures;

    bool operator==(const Settlement&) const = default;
};

/// Settles the intents beside the journal whose process is gone. For each move without a line in the journal
/// it looks for the object at both ends: found only where it was moved to, the move is brought to stable
/// storage and the missing line is written; found only where it was, nothing is written; otherwise it is a
/// doubt. A note in the Trash that was made for an item which is not there is removed, also one that was not
/// written to its end. May be called at any time by any number of processes, and again after it was
/// interrupted at any point.
Settlement settleIntents(JournalStore& journal);

/// A journal that may be read: the moves whose lines an earlier crash kept from it are in it.
struct PreparedJournal {
    std::shared_ptr<JournalStore> store;
    Settlement settlement;
};

/// Opens the journal at this path and settles what is beside it. Every command and the window begin with
/// this, before the journal is read.
PreparedJournal prepareJournal(const std::string& path);

} // namespace orbel
