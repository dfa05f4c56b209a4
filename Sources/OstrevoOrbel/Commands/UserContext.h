#pragma once

#include "Find/SeenPackages.h"
#include "Journal/JournalStore.h"
#include "Safety/SafetyPolicy.h"
#include "Saved/ScanArchive.h"

#include <memory>
#include <string>

namespace orbel {

/// What the commands that move something, or tell what was moved, work with: the user's home, its policy, its
/// Trash and its journal.
class UserContext {
public:
    UserContext();

    const SafetyPolicy& policy() const { return policy_; }
    const std::string& trashFolder() const { return trashFolder_; }

    /// The earlier scans. Must not be written to when the policy has a reason against the home.
    const ScanArchive& scanArchive() const { return scanArchive_; }

    /// Which packages were installed. Must not be written to likewise.
    const SeenPackages& seenPackages() const { return seenPackages_; }

    /// The journal as the last run left it; what is beside it is not looked at.
    std::shared_ptr<JournalStore> journal() const;

    /// The journal with all that earlier runs could not write to it. What could not be settled, and what
    /// remains doubtful, is told on standard error. Must not be called when the policy has a reason against
    /// the home.
    std::shared_ptr<JournalStore> settledJournal() const;

private:
    SafetyPolicy policy_;
    std::string trashFolder_;
    std::string journalPath_;
    ScanArchive scanArchive_;
    SeenPackages seenPackages_;
};

} // namespace orbel
