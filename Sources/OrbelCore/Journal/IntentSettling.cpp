#include "Journal/IntentSettling.h"

#include "Journal/HeldFolder.h"
#include "Journal/IntentLog.h"
#include "Journal/JournalJson.h"
#include "Journal/MoveFailure.h"
#include "Journal/PrivateFile.h"
#include "Journal/RecordedIds.h"
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
#include <nlohmann/json.hpp>
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

/// The Trash's note of an attempt, in its open folder, if it is one that we wrote.
class OwnNote {
public:
    enum class State : std::uint8_t {
        none,       ///< there is no note, or it is another one
        unfinished, ///< a beginning of ours, or nothing yet
        whole
    };

    explicit OwnNote(const MoveIntent& intent) {
        if (!intent.infoFile)
            return;
        const auto& [path, content] = *intent.infoFile;
        folder_ = openExistingFolder(std::string(parentPath(path)));
        name_ = lastPathComponent(path);
        const auto note = PrivateFile::open(folder_.get(), name_, PrivateFile::Access::read, path);
        const auto found = note ? readFile(note->file.get()) : std::nullopt;
        if (found && content.starts_with(*found) && note->isStillAt(folder_.get(), name_))
            state_ = *found == content ? State::whole : State::unfinished;
    }

    bool isWhole() const { return state_ == State::whole; }
    void remove() const {
        if (state_ != State::none)
            static_cast<void>(::unlinkat(folder_.get(), name_.c_str(), 0));
    }

private:
    FileDescriptor folder_;
    std::string name_;
    State state_ = State::none;
};

std::expected<HeldFolder, int> folderOf(const std::string& path) {
    const auto real = RealPath::resolve(std::string(parentPath(path)));
    if (!real)
        return std::unexpected(ENOENT);
    return HeldFolder::open(*real);
}

/// Whether certainly nothing has the name in the Trash that the attempt's note belongs to.
bool isNameFree(const MoveIntent& intent) {
    const auto& path = intent.kind == MoveIntent::Kind::toTrash ? intent.destinationPath : intent.sourcePath;
    const auto folder = folderOf(path);
    return folder && folder->identityOf(std::string(lastPathComponent(path))) == std::unexpected(ENOENT);
}

/// Whether something else went to the Trash in the item's place, which is still at its own: it lies there
/// with the whole note that was made for the item. Without that note its origin would be lost.
bool somethingElseWent(const MoveIntent& intent) {
    return intent.kind == MoveIntent::Kind::toTrash && platform::fileStatus(intent.destinationPath)
           && OwnNote(intent).isWhole();
}

/// Brings a move that happened to stable storage. A folder that the item left may be gone meanwhile.
std::expected<void, JournalError> makeLast(const MoveIntent& intent) {
    const auto lasts = [&]() -> std::expected<void, int> {
        const auto to = folderOf(intent.destinationPath);
        if (!to)
            return std::unexpected(to.error());
        const auto from = folderOf(intent.sourcePath);
        return from ? synchroniseMove(*from, *to) : to->synchronise();
    }();
    if (!lasts)
        return std::unexpected(errorAt(intent.destinationPath, flushFailureText(lasts.error())));
    return {};
}

/// What the journal holds already of these moves.
std::expected<RecordedIds, JournalError> recordedOf(const std::vector<Attempts>& moves,
                                                    const JournalStore& journal) {
    std::vector<std::string> ids;
    std::vector<std::string> referredTo;
    for (const auto& attempts : moves) {
        const auto& intent = attempts.front();
        ids.push_back(intent.entry.id);
        if (intent.kind == MoveIntent::Kind::putBack && intent.entry.refersTo)
            referredTo.push_back(*intent.entry.refersTo);
    }
    return journal.recorded(ids, referredTo);
}

/// Also when another program was quicker to put the item back.
bool holds(const RecordedIds& recorded, const MoveIntent& intent) {
    return recorded.ids.contains(intent.entry.id)
           || (intent.kind == MoveIntent::Kind::putBack && intent.entry.refersTo
               && recorded.restored.contains(*intent.entry.refersTo));
}

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
            // Asked only now, under the lock: whoever settled this file before us may have been interrupted.
            if (const auto recorded = recordedOf(moves, journal)) {
                for (const auto& attempts : moves)
                    if (const auto place = placeOutOfReach(attempts))
                        settlement.failures.push_back(
                            errorAt(*place, "lies on a volume that may not answer; what was moved there is "
                                            "looked for again at the next start")
                                .words);
                    else
                        settle(attempts, holds(*recorded, attempts.front()), journal, settlement);
            } else {
                settlement.failures.push_back(recorded.error().words);
            }
        }
        if (settlement.failures.size() == failuresBefore && ::unlink(path_.c_str()) != 0)
            settlement.failures.push_back(systemErrorAt(path_).words);
    }

private:
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

    static void settle(const Attempts& attempts, bool isRecorded, JournalStore& journal,
                       Settlement& settlement) {
        const auto arrived = std::ranges::find_if(
            attempts, [](const MoveIntent& intent) { return liesAt(intent.destinationPath, intent); });
        const bool isThere = arrived != attempts.end();
        const auto& intent = isThere ? *arrived : attempts.back();
        const bool isStillHere = liesAt(intent.sourcePath, intent);
        if (isThere == isStillHere) {
            if (!isRecorded)
                settlement.doubts.push_back(
                    {.entry = intent.entry,
                     .words = doubt(intent, isThere ? "it is at both places now"
                                                    : "it is at neither place any more")});
            return;
        }
        if (isStillHere && somethingElseWent(intent)) {
            if (!isRecorded)
                settlement.doubts.push_back(
                    {.entry = intent.entry,
                     .words = doubt(intent, "something else went to the Trash in its place")});
            return;
        }
        if (isThere)
            if (const auto kept = keep(intent, isRecorded, journal, settlement); !kept) {
                settlement.failures.push_back(kept.error().words);
                return;
            }
        for (const auto& attempt : attempts)
            if (isNameFree(attempt))
                OwnNote(attempt).remove();
    }

    /// Makes a move last and writes its line, unless that is done.
    static std::expected<void, JournalError> keep(const MoveIntent& intent, bool isRecorded,
                                                  JournalStore& journal, Settlement& settlement) {
        if (!isRecorded || intent.kind == MoveIntent::Kind::putBack)
            if (auto lasts = makeLast(intent); !lasts)
                return lasts;
        if (isRecorded)
            return {};
        auto entry = intent.entry;
        // It may have been written to since, and is to be recognised as it is now.
        if (auto now = TrashedIdentity::of(intent.destinationPath);
            now && intent.kind == MoveIntent::Kind::toTrash)
            entry.trashedIdentity = std::move(now);
        if (auto appended = journal.append(entry); !appended)
            return appended;
        settlement.recorded.push_back(std::move(entry));
        return {};
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
