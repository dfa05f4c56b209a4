#include "Journal/IntentSettling.h"

#include "Journal/Barrier.h"
#include "Journal/HeldFolder.h"
#include "Journal/IntentLog.h"
#include "Journal/JournalJson.h"
#include "Journal/MoveFailure.h"
#include "Journal/PrivateFile.h"
#include "Journal/RecordedIds.h"
#include "Journal/TrashNote.h"
#include "Platform/MountTable.h"
#include "Safety/RealPath.h"
#include "Util/PathResolver.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/Uuid.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <span>
#include <string_view>
#include <unordered_map>

#include <unistd.h>

namespace orbel {

namespace {

/// All attempts at one move, in their order.
using Attempts = std::vector<MoveIntent>;

/// Whether the object that was to be moved lies at this path. It may have been written to since: where its
/// birth is known its size does not matter.
bool liesAt(const std::string& path, const MoveIntent& intent) {
    const auto now = TrashedIdentity::of(path);
    if (!now)
        return false;
    const auto then = TrashedIdentity::of(intent.stamp, intent.persistent);
    if (then.persistent && now->persistent)
        return then.persistent == now->persistent && then.inode == now->inode
               && then.isDirectory == now->isDirectory;
    return isSameObject(then, *now);
}

std::expected<HeldFolder, int> folderOf(const std::string& path) {
    const auto real = RealPath::resolve(std::string(parentPath(path)));
    if (!real)
        return std::unexpected(ENOENT);
    return HeldFolder::open(*real);
}

/// Whether something else went to the Trash in the item's place, which is still at its own: it lies there
/// with the whole note that was made for the item. Without that note its origin would be lost.
bool somethingElseWent(const MoveIntent& intent) {
    return intent.kind == MoveIntent::Kind::toTrash && platform::fileStatus(intent.destinationPath)
           && TrashNote(intent).isWhole();
}

/// Adds a move that happened. A folder that the item left may be gone meanwhile.
void addMove(const MoveIntent& intent, Barrier& barrier) {
    const auto to = folderOf(intent.destinationPath);
    const auto from = folderOf(intent.sourcePath);
    if (!to)
        barrier.fail(to.error());
    else if (from)
        barrier.addMove(*from, *to);
    else
        barrier.add(*to);
}

/// What the journal holds already of these moves.
class Recorded {
public:
    static std::expected<Recorded, JournalError> of(const std::vector<Attempts>& moves,
                                                    const JournalStore& journal) {
        std::vector<std::string> ids;
        std::vector<std::string> referredTo;
        for (const auto& attempts : moves) {
            ids.push_back(attempts.front().entry.id);
            referredTo.push_back(movedBy(attempts.front()));
        }
        auto found = journal.recorded(ids, referredTo);
        if (!found)
            return std::unexpected(std::move(found.error()));
        return Recorded(*std::move(found));
    }

    /// Also when another program was quicker to put the item back.
    bool holds(const MoveIntent& intent) const {
        return found_.outcomes.contains(intent.entry.id)
               || (intent.kind == MoveIntent::Kind::putBack && found_.restored.contains(movedBy(intent)));
    }

    /// Whether by its lines the item is now where the intent was to move it.
    bool saysMoved(const MoveIntent& intent) const {
        const auto outcome = found_.outcomes.find(intent.entry.id);
        return outcome != found_.outcomes.end() && outcome->second == intent.entry.result
               && !found_.restored.contains(intent.entry.id);
    }

private:
    explicit Recorded(RecordedIds found) : found_(std::move(found)) {}

    /// The id of the line that tells, or is to tell, that the item was moved to the Trash.
    static std::string movedBy(const MoveIntent& intent) {
        return intent.kind == MoveIntent::Kind::putBack ? intent.entry.refersTo.value_or("")
                                                        : intent.entry.id;
    }

    RecordedIds found_;
};

/// The intents of one file whose process is gone, while this object holds its lock.
class AbandonedFile {
public:
    /// `paths` knows which places must not be asked about.
    AbandonedFile(FileDescriptor file, std::string path, PathResolver paths)
        : file_(std::move(file)), path_(std::move(path)), paths_(std::move(paths)) {}

    /// Settles what is in it and removes it, unless that has to be tried again.
    void settle(JournalStore& journal, Settlement& settlement) {
        const auto failuresBefore = settlement.failures.size();
        if (const auto moves = read(settlement); !moves.empty()) {
            // Asked only now, under the lock: an earlier attempt may have been interrupted.
            if (const auto recorded = Recorded::of(moves, journal))
                settle(moves, *recorded, journal, settlement);
            else
                settlement.failures.push_back(recorded.error().words);
        }
        if (settlement.failures.size() == failuresBefore && ::unlink(path_.c_str()) != 0)
            settlement.failures.push_back(systemErrorAt(path_).words);
    }

private:
    void settle(const std::vector<Attempts>& moves, const Recorded& recorded, JournalStore& journal,
                Settlement& settlement) {
        std::vector<const Attempts*> arrived;
        std::vector<JournalEntry> lines;
        Barrier barrier(openExistingFolder(std::string(parentPath(journal.path()))));
        for (const auto& attempts : moves) {
            if (const auto place = placeOutOfReach(attempts)) {
                settlement.failures.push_back(
                    errorAt(*place, "lies on a volume that may not answer; what was moved there is "
                                    "looked for again at the next start")
                        .words);
                continue;
            }
            const bool isRecorded = recorded.holds(attempts.front());
            const auto found = look(attempts);
            if (found.doubt.empty() && found.isThere) {
                arrived.push_back(&attempts);
                addMove(*found.intent, barrier);
                if (!isRecorded)
                    lines.push_back(missingLine(*found.intent));
            } else if (found.doubt.empty() && recorded.saysMoved(*found.intent)) {
                settlement.doubts.push_back({.entry = found.intent->entry,
                                             .words = doubt(*found.intent, "the journal says that it moved, "
                                                                           "but it is at its place")});
            } else if (found.doubt.empty()) {
                removeNotes(attempts);
            } else if (!isRecorded) {
                settlement.doubts.push_back(
                    {.entry = found.intent->entry, .words = doubt(*found.intent, found.doubt)});
            }
        }
        if (arrived.empty())
            return;
        if (const auto lasts = keep(lines, journal, barrier); !lasts) {
            settlement.failures.push_back(lasts.error().words);
            return;
        }
        std::ranges::move(lines, std::back_inserter(settlement.recorded));
        for (const auto* attempts : arrived)
            removeNotes(*attempts);
    }

    std::optional<std::string> placeOutOfReach(const Attempts& attempts) {
        for (const auto& intent : attempts)
            for (const auto& path : {intent.sourcePath, intent.destinationPath})
                if (paths_.resolve(path, PathResolver::Last::keep).state == ResolvedPath::State::outOfReach)
                    return path;
        return std::nullopt;
    }

    std::vector<Attempts> read(Settlement& settlement) const {
        const auto content = readFile(file_.get());
        if (!content) {
            settlement.failures.push_back(systemErrorAt(path_).words);
            return {};
        }
        std::vector<Attempts> moves;
        std::unordered_map<std::string, std::size_t> moveOf; // by the id of the entry
        std::string_view rest = *content;
        // A last line without its line feed was not written to its end, so its move had not begun.
        for (auto end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
            const auto line = rest.substr(0, end);
            rest.remove_prefix(end + 1);
            try {
                auto intent = nlohmann::json::parse(line).get<MoveIntent>();
                const auto [known, isNew] = moveOf.try_emplace(intent.entry.id, moves.size());
                if (isNew)
                    moves.emplace_back();
                moves[known->second].push_back(std::move(intent));
            } catch (const nlohmann::json::exception&) {
                settlement.failures.push_back(errorAt(path_, "holds a line that cannot be read").words);
            }
        }
        return moves;
    }

    struct Found {
        const MoveIntent* intent; ///< the attempt that counts
        bool isThere;             ///< where that was to move it; else the item is where it was
        std::string_view doubt;   ///< empty: it is at one place, and nothing else took the other
    };

    static Found look(const Attempts& attempts) {
        const auto arrived = std::ranges::find_if(
            attempts, [](const MoveIntent& intent) { return liesAt(intent.destinationPath, intent); });
        const bool isThere = arrived != attempts.end();
        const auto& intent = isThere ? *arrived : attempts.back();
        const bool isStillHere = liesAt(intent.sourcePath, intent);
        if (isThere && isStillHere)
            return {&intent, isThere, "it is at both places now"};
        if (!isThere && !isStillHere)
            return {&intent, isThere, "it is at neither place any more"};
        if (isStillHere && somethingElseWent(intent))
            return {&intent, isThere, "something else went to the Trash in its place"};
        return {&intent, isThere, {}};
    }

    static JournalEntry missingLine(const MoveIntent& intent) {
        auto line = intent.entry;
        // It may have been written to since, and is to be recognised as it is now.
        if (auto now = TrashedIdentity::of(intent.destinationPath);
            now && intent.kind == MoveIntent::Kind::toTrash)
            line.trashedIdentity = std::move(now);
        return line;
    }

    /// Makes the moves in the barrier last, and writes their lines, if any is missing.
    static std::expected<void, JournalError> keep(std::span<const JournalEntry> lines, JournalStore& journal,
                                                  Barrier& barrier) {
        if (!lines.empty())
            return journal.append(lines, barrier);
        if (const auto lasts = barrier.pass(); !lasts)
            return std::unexpected(errorAt(journal.path(), flushFailureText(lasts.error())));
        return {};
    }

    static void removeNotes(const Attempts& attempts) {
        for (const auto& attempt : attempts)
            static_cast<void>(TrashNote(attempt).removeIfUnused()); // at worst it stays
    }

    static std::string doubt(const MoveIntent& intent, std::string_view found) {
        return "Moving \"" + intent.entry.title + "\" from " + intent.sourcePath + " to "
               + intent.destinationPath + " was interrupted, and " + std::string(found);
    }

    FileDescriptor file_;
    std::string path_;
    PathResolver paths_;
};

std::vector<std::string> intentFileNames(const std::string& folder, Settlement& settlement) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        if (entry->path().extension() == IntentLog::fileSuffix && isUuid(entry->path().stem().native()))
            names.push_back(entry->path().filename());
    if (error && error != std::errc::no_such_file_or_directory)
        settlement.failures.push_back(errorAt(folder, error.message()).words);
    std::ranges::sort(names);
    return names;
}

} // namespace

Settlement settleIntents(JournalStore& journal) {
    Settlement settlement;
    const auto folderPath = joinedPath(parentPath(journal.path()), IntentLog::folderName);
    const auto names = intentFileNames(folderPath, settlement);
    const auto folder = openExistingFolder(folderPath);
    const std::array trusted{journal.path()};
    const auto outOfReach = names.empty() ? std::vector<std::string>()
                                          : platform::mountPointsOutOfReach(platform::mountTable(), trusted);
    for (const auto& name : names) {
        const auto path = joinedPath(folderPath, name);
        auto opened = PrivateFile::open(folder.get(), name, PrivateFile::Access::change, path);
        if (!opened) {
            if (platform::fileStatus(path)) // else its process, or another that settled it, removed it
                settlement.failures.push_back(opened.error().words);
            continue;
        }
        if (!tryLock(opened->file.get())) {
            if (errno != EWOULDBLOCK) // else its process is alive
                settlement.failures.push_back(systemErrorAt(path).words);
            continue;
        }
        if (opened->isStillAt(folder.get(), name))
            AbandonedFile(std::move(opened->file), path, PathResolver(outOfReach))
                .settle(journal, settlement);
    }
    return settlement;
}

PreparedJournal prepareJournal(const std::string& path) {
    auto store = std::make_shared<JournalStore>(path);
    auto settlement = settleIntents(*store);
    return {.store = std::move(store), .settlement = std::move(settlement)};
}

} // namespace orbel
