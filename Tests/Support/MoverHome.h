#pragma once

#include "Delete/Trasher.h"
#include "Support/FakeMoves.h"
#include "Support/TrashHome.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace orbel::test {

/// A home folder with all that moves something in it: a policy, a journal, a Trash that can be made to fail,
/// and a clock that stands still until it is set. No process uses anything.
class MoverHome : public TrashHome {
public:
    MoverHome();

    /// An item as the map would offer it now.
    DeletionItem item(std::string_view relative, DeletionModule module = DeletionModule::map) const;
    /// Makes one small file for each name and offers it.
    std::vector<DeletionItem> files(const std::vector<std::string>& names) const;

    /// Moves them as the session "session".
    DeletionReport run(const std::vector<DeletionItem>& items,
                       const Trasher::IsCancelled& isCancelled = nullptr) const;

    std::vector<JournalEntry> entries() const { return journal->entries(); }
    /// The intents that wait to be settled.
    std::vector<std::string> intentFiles() const;
    /// Lets nothing be appended to the journal from now on.
    void breakJournal() const;
    void mendJournal() const;

    const SafetyPolicy policy;
    const std::shared_ptr<JournalStore> journal;
    const std::shared_ptr<FakeTrash> fakeTrash;
    Date now;
    int snapshots = 0;   ///< how often the processes were looked at
    InUseReport inUse{}; ///< what the in-use check answers
    Trasher trasher;
};

/// The reason of the only skipped item; the number of them as text when there is not exactly one.
std::string skipReason(const DeletionReport& report);

} // namespace orbel::test
