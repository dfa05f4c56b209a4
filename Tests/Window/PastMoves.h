#pragma once

#include "Delete/LiveTrash.h"
#include "Journal/JournalStore.h"
#include "Platform/HomeTrash.h"
#include "Support/FakeMoves.h"
#include "Support/TemporaryFolder.h"
#include "Util/PathText.h"
#include "Util/Uuid.h"

#include <string>
#include <vector>

namespace orbel::test {

/// A home in which earlier sessions moved files to its Trash and wrote them into its journal.
class PastMoves {
public:
    TemporaryFolder home;
    std::string trash = platform::homeTrash(home.path());
    std::string journalPath = home.folder("journal") + "/journal.jsonl";
    JournalStore journal{journalPath};

    std::string video(const std::string& name) const { return home.path("Videos/" + name); }

    /// Moves new files of these names, all from Videos.
    void move(const std::string& session, const std::vector<std::string>& names, const std::string& time,
              DeletionModule module = DeletionModule::duplicates) {
        LiveTrash liveTrash(trash);
        for (const auto& name : names) {
            home.file("Videos/" + name, 20'000);
            auto line = lineOf(session, name, time, module);
            line.bytes = 20'480;
            line.trashPath = moveToTrash(liveTrash, line.originalPath).value();
            line.trashedIdentity = TrashedIdentity::of(*line.trashPath);
            journal.append(line).value();
        }
    }

    void skip(const std::string& session, const std::string& name, const std::string& time) {
        auto line = lineOf(session, name, time, DeletionModule::duplicates);
        line.result = JournalEntry::Result::skipped;
        line.reason = "Changed since the scan — scan again";
        journal.append(line).value();
    }

    std::string trashed(const std::string& name) const { return trash + "/files/" + name; }

private:
    JournalEntry lineOf(const std::string& session, const std::string& name, const std::string& time,
                        DeletionModule module) const {
        return {.id = newUuid(),
                .sessionID = session,
                .time = parseIso8601(time).value(),
                .module = module,
                .title = name,
                .originalPath = video(name),
                .originalParentRealPath = std::string(parentPath(video(name)))};
    }
};

} // namespace orbel::test
