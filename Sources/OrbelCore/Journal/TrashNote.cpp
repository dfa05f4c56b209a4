#include "Journal/TrashNote.h"

#include "Journal/PrivateFile.h"
#include "Platform/Parallel.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace orbel {

namespace {

/// The folder of the notes: itself, and not what a link leads to.
std::optional<HeldFolder> notesFolder(std::string_view path) {
    const auto trash = HeldFolder::openThroughLinks(std::string(parentPath(path)));
    auto folder = trash ? trash->openInside(std::string(lastPathComponent(path))) : std::unexpected(ENOENT);
    return folder ? std::optional(*std::move(folder)) : std::nullopt;
}

/// Where the note of an item in a Trash is; empty where there is none.
std::string notePath(const std::string& trashPath) {
    const auto folder = parentPath(trashPath);
    if (lastPathComponent(folder) != "files")
        return {};
    return joinedPath(joinedPath(parentPath(folder), "info"), lastPathComponent(trashPath)) + ".trashinfo";
}

} // namespace

std::optional<MoveIntent::InfoFile> TrashNote::of(const std::string& trashPath) {
    constexpr std::uint64_t mostBytes = 64 * 1024;
    auto path = notePath(trashPath);
    auto content = path.empty() ? std::nullopt : readRegularFile(path, mostBytes);
    if (!content || !isValidUtf8(*content))
        return std::nullopt;
    return MoveIntent::InfoFile{.path = std::move(path), .content = *std::move(content)};
}

std::optional<TrashNote::Seen> TrashNote::seen(const std::string& trashPath) {
    auto path = notePath(trashPath);
    if (path.empty())
        return std::nullopt;
    const auto status = platform::fileStatus(path);
    const bool isOwn = status && status->type == platform::FileType::regular && status->owner == ::geteuid();
    return Seen{.path = std::move(path),
                .stamp = isOwn ? std::optional(FileStamp::of(*status)) : std::nullopt};
}

bool TrashNote::removeUnchanged(std::span<const Seen> notes) {
    // Some disks are told at once of each block that is free again, and are waited for.
    constexpr std::size_t notesAtATime = 64;
    const auto tasks = (notes.size() + notesAtATime - 1) / notesAtATime;
    std::atomic<bool> isOneLeft = false;
    forEachTask(tasks, tasks, [&](std::size_t task) {
        std::string_view folderPath;
        std::optional<HeldFolder> folder;
        const auto begin = task * notesAtATime;
        for (const auto& [path, stamp] : notes.subspan(begin, std::min(notesAtATime, notes.size() - begin))) {
            if (const auto above = parentPath(path); above != folderPath) {
                folderPath = above;
                folder = notesFolder(above);
            }
            const auto now = platform::fileStatus(path);
            if (!now && errno == ENOENT)
                continue;
            const std::string name(lastPathComponent(path));
            const bool isSame = now && stamp && stamp->isUnchanged(FileStamp::of(*now)) && folder
                                && folder->identityOf(name) == stamp->identity;
            if (!isSame || ::unlinkat(folder->descriptor(), name.c_str(), 0) != 0)
                isOneLeft = true;
        }
    });
    return !isOneLeft;
}

TrashNote::TrashNote(const MoveIntent& intent)
    : itemPath_(intent.kind == MoveIntent::Kind::toTrash ? intent.destinationPath : intent.sourcePath),
      path_(intent.infoFile ? intent.infoFile->path : std::string()) {
    if (!intent.infoFile)
        return;
    folder_ = notesFolder(parentPath(path_));
    if (!folder_)
        return;
    const std::string name(lastPathComponent(path_));
    const auto note = PrivateFile::open(folder_->descriptor(), name, PrivateFile::Access::read, path_);
    const auto found = note ? readFile(note->file.get()) : std::nullopt;
    const auto& content = intent.infoFile->content;
    if (found && content.starts_with(*found) && note->isStillAt(folder_->descriptor(), name))
        state_ = *found == content ? State::whole : State::unfinished;
}

bool TrashNote::removeIfUnused() const {
    if (state_ != State::none && folder_) {
        const auto items = HeldFolder::openThroughLinks(std::string(parentPath(itemPath_)));
        // Only if certainly nothing has the name.
        if (items && items->identityOf(std::string(lastPathComponent(itemPath_))) == std::unexpected(ENOENT))
            ::unlinkat(folder_->descriptor(), std::string(lastPathComponent(path_)).c_str(), 0);
    }
    return path_.empty() || !platform::fileStatus(path_);
}

} // namespace orbel
