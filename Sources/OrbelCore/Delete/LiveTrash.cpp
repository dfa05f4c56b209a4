#include "Delete/LiveTrash.h"

#include "Delete/TrashFolder.h"
#include "Delete/TrashInfo.h"
#include "Delete/TrashName.h"
#include "Journal/Barrier.h"
#include "Journal/MoveFailure.h"
#include "Platform/MountTable.h"
#include "Platform/SystemTrash.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <cerrno>
#include <cstdint>
#include <optional>
#include <system_error>
#include <utility>

namespace orbel {

namespace {

/// Why the item must not go to this Trash, whatever the file system would let happen; absent when nothing
/// speaks against it.
std::optional<std::string> reasonAgainst(const std::string& path, const std::string& trash) {
    if (RealPath::isInside(path, trash))
        return "It is in the Trash already";
    if (RealPath::isInside(trash, path))
        return "It contains the Trash";
    // Such a folder moves without complaint, and emptying the Trash then deletes what is mounted in it.
    const auto mounts = platform::sharedMountTable();
    if (mounts->empty())
        return "The system does not tell which volumes are mounted in it";
    for (const auto& mount : *mounts)
        if (RealPath::isInside(mount.path, path))
            return "Contains another volume: " + lossyUtf8(mount.path);
    return std::nullopt;
}

/// The path with one slash between its names, which is how real paths are compared; absent when it cannot be
/// the real path of an item.
std::optional<std::string> itemPathOf(const std::string& path) {
    if (!path.starts_with('/') || path.find('\0') != std::string::npos)
        return std::nullopt;
    std::string plain;
    for (const auto component : pathComponents(path)) {
        if (component == "." || component == "..")
            return std::nullopt;
        plain += '/';
        plain += component;
    }
    return plain.empty() ? std::nullopt : std::optional(plain);
}

bool isTaken(const HeldFolder& folder, const std::string& name) {
    const auto found = folder.identityOf(name);
    return found || found.error() != ENOENT;
}

std::string infoNameOf(const std::string& stored) {
    return stored + std::string(trashInfoSuffix);
}

/// Also where there is only an item without an info file: it belongs to another program, and would be lost.
bool isTaken(const TrashFolder& trash, const std::string& stored) {
    return isTaken(trash.files, stored) || isTaken(trash.info, infoNameOf(stored));
}

/// A name by which the item could go; absent when there are too many of its name. A Trash may hold thousands
/// of them, so the numbers are not tried one by one: it is the first that is free if those that are taken
/// follow each other.
std::optional<std::string> freeName(const TrashFolder& trash, const std::string& name) {
    constexpr unsigned mostOfOneName = 1'000'000;
    const auto longest = trash.longestName();
    const auto isNumberTaken = [&](unsigned number) {
        return isTaken(trash, trashName(name, number, longest));
    };
    unsigned taken = 0;
    unsigned free = 1;
    for (; isNumberTaken(free); free *= 2) {
        if (free > mostOfOneName)
            return std::nullopt;
        taken = free;
    }
    while (free - taken > 1) {
        const auto middle = taken + (free - taken) / 2;
        (isNumberTaken(middle) ? taken : free) = middle;
    }
    return trashName(name, free, longest);
}

/// A move by the system's own call, which needs nothing before it.
class SystemMove final : public TrashMove {
public:
    SystemMove(platform::SystemTrash move, std::string path) : move_(move), path_(std::move(path)) {}

    std::expected<std::string, TrashFailure> make(Barrier& /*barrier*/) override {
        auto moved = move_(path_);
        if (!moved)
            return std::unexpected(TrashFailure{.words = std::move(moved.error())});
        return *std::move(moved);
    }

private:
    platform::SystemTrash move_;
    std::string path_;
};

/// A move into the Trash folder, with its info file written.
class FolderMove final : public TrashMove {
public:
    FolderMove(std::string path, std::shared_ptr<const TrashFolder> trash, std::string stored,
               PendingTrashInfo info)
        : path_(std::move(path)),
          trash_(std::move(trash)),
          stored_(std::move(stored)),
          info_(std::move(info)) {}

    std::expected<std::string, TrashFailure> make(Barrier& barrier) override {
        if (auto reason = reasonAgainst(path_, trash_->path))
            return std::unexpected(TrashFailure{.words = *std::move(reason)});
        const auto source = HeldFolder::open(std::string(parentPath(path_)));
        if (!source)
            return failure(source.error());
        if (!info_.isInPlace())
            return std::unexpected(
                TrashFailure{.words = "Its info file was removed from the Trash", .isPlanVoid = true});
        if (const auto moved =
                moveEntry(*source, std::string(lastPathComponent(path_)), trash_->files, stored_);
            !moved)
            return failure(moved.error());
        info_.keep();
        barrier.addMove(*source, trash_->files);
        return joinedPath(joinedPath(trash_->path, "files"), stored_);
    }

private:
    static std::unexpected<TrashFailure> failure(int error) {
        return std::unexpected(TrashFailure{.words = moveFailureText(error), .isPlanVoid = error == EEXIST});
    }

    std::string path_;
    std::shared_ptr<const TrashFolder> trash_; ///< outlives the info file in it
    std::string stored_;
    PendingTrashInfo info_;
};

} // namespace

LiveTrash::LiveTrash(std::string trashFolder, Clock now)
    : trashFolder_(std::move(trashFolder)), now_(std::move(now)) {}

std::expected<std::unique_ptr<TrashMove>, std::string>
LiveTrash::prepare(const std::string& path, const AboutToMove& aboutToMove, Barrier& barrier) {
    const auto itemPath = itemPathOf(path);
    if (!itemPath)
        return std::unexpected("It is not the path of an item");
    const std::string name(lastPathComponent(*itemPath));
    if (const auto move = platform::systemTrash()) {
        if (auto go = aboutToMove({.trashPath = joinedPath(trashFolder_, name)}); !go)
            return std::unexpected(std::move(go.error()));
        return std::make_unique<SystemMove>(move, *itemPath);
    }

    const auto trash = openTrash(barrier);
    if (!trash)
        return std::unexpected(trash.error());
    const auto& folder = **trash;
    const auto infoContent = trashInfoText(*itemPath, now_());
    constexpr int mostAttempts = 100; // others may be quicker, but not forever
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const auto stored = freeName(folder, name);
        if (!stored)
            break;
        const auto infoName = infoNameOf(*stored);
        if (auto go = aboutToMove({.trashPath = joinedPath(joinedPath(folder.path, "files"), *stored),
                                   .infoPath = joinedPath(joinedPath(folder.path, "info"), infoName),
                                   .infoContent = infoContent});
            !go)
            return std::unexpected(std::move(go.error()));
        auto info = PendingTrashInfo::create(folder.info, infoName, infoContent, barrier);
        if (info)
            return std::make_unique<FolderMove>(*itemPath, *trash, *stored, *std::move(info));
        if (info.error() != EEXIST)
            return std::unexpected("Its info file could not be written: "
                                   + std::generic_category().message(info.error()));
    }
    return std::unexpected("The Trash holds too many items of this name");
}

std::expected<std::shared_ptr<const TrashFolder>, std::string> LiveTrash::openTrash(Barrier& barrier) {
    if (auto open = openTrash_.lock())
        return open;
    auto opened = TrashFolder::open(trashFolder_, barrier);
    if (!opened)
        return std::unexpected(std::move(opened.error()));
    auto shared = std::make_shared<const TrashFolder>(*std::move(opened));
    openTrash_ = shared;
    return shared;
}

} // namespace orbel
