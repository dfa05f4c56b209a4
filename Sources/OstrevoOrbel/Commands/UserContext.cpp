#include "Commands/UserContext.h"

#include "Commands/CommandOutput.h"
#include "Journal/IntentSettling.h"
#include "Platform/Home.h"
#include "Platform/HomeTrash.h"
#include "Platform/Places.h"
#include "Util/Check.h"

namespace orbel {

UserContext::UserContext()
    : policy_(platform::homeFolder()),
      trashFolder_(platform::homeTrash(policy_.homePath())),
      journalPath_(JournalStore::defaultPath(platform::places(policy_.homePath()).applicationSupport)),
      scanArchive_(ScanArchive::defaultFolder(platform::places(policy_.homePath()).applicationSupport)),
      seenPackages_(SeenPackages::defaultPath(platform::places(policy_.homePath()).applicationSupport)) {}

std::shared_ptr<JournalStore> UserContext::journal() const {
    return std::make_shared<JournalStore>(journalPath_);
}

std::shared_ptr<JournalStore> UserContext::settledJournal() const {
    ORBEL_CHECK(!policy_.homeReason(), "settling writes, which nobody may do in this home");
    auto prepared = prepareJournal(journalPath_);
    if (const auto count = prepared.settlement.recorded.size(); count > 0)
        say("An earlier run was cut short; what it had moved is in the journal now (lines added: "
            + std::to_string(count) + ")");
    for (const auto& doubt : prepared.settlement.doubts)
        say(doubt.words);
    for (const auto& failure : prepared.settlement.failures)
        say(failure);
    return std::move(prepared.store);
}

} // namespace orbel
