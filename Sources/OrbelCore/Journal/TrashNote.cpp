#include "Journal/TrashNote.h"

#include "Journal/PrivateFile.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/Utf8.h"

#include <cerrno>

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

TrashNote::TrashNote(const std::string& trashPath) : TrashNote(trashPath, notePath(trashPath), nullptr) {}

TrashNote::TrashNote(const MoveIntent& intent)
    : TrashNote(intent.kind == MoveIntent::Kind::toTrash ? intent.destinationPath : intent.sourcePath,
                intent.infoFile ? intent.infoFile->path : std::string(),
                intent.infoFile ? &intent.infoFile->content : nullptr) {}

TrashNote::TrashNote(std::string itemPath, std::string path, const std::string* content)
    : itemPath_(std::move(itemPath)), path_(std::move(path)) {
    folder_ = path_.empty() ? std::nullopt : notesFolder(parentPath(path_));
    if (!folder_)
        return;
    const std::string name(lastPathComponent(path_));
    const auto note = PrivateFile::open(folder_->descriptor(), name, PrivateFile::Access::read, path_);
    if (note && content == nullptr)
        state_ = State::whole;
    if (!note || content == nullptr)
        return;
    const auto found = readFile(note->file.get());
    if (found && content->starts_with(*found) && note->isStillAt(folder_->descriptor(), name))
        state_ = *found == *content ? State::whole : State::unfinished;
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
