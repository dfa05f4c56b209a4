#include "Delete/LiveTrash.h"

#include "Delete/TrashFolder.h"
#include "Delete/TrashInfo.h"
#include "Delete/TrashName.h"
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
    const auto mounts = platform::mountTable();
    if (mounts.empty())
        return "The system does not tell which volumes are mounted in it";
    for (const auto& mount : mounts)
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

/// Absent when the stored name turned out to be taken.
using Attempt = std::optional<TrashedItem>;

std::expected<Attempt, std::string> attemptMove(const HeldFolder& source, const std::string& name,
                                                const TrashFolder& trash, const std::string& stored,
                                                const PlannedMove& plan) {
    auto info = PendingTrashInfo::create(trash.info, stored + std::string(trashInfoSuffix), plan.infoContent);
    if (!info && info.error() == EEXIST)
        return std::nullopt;
    if (!info)
        return std::unexpected("Its info file could not be written: "
                               + std::generic_category().message(info.error()));
    const auto moved = moveEntry(source, name, trash.files, stored);
    if (!moved && moved.error() == EEXIST)
        return std::nullopt;
    if (!moved)
        return std::unexpected(moveFailureText(moved.error()));
    info->keep();
    TrashedItem item{.path = plan.trashPath};
    if (const auto lasts = synchroniseMove(source, trash.files); !lasts)
        item.flushFailure = flushFailureText(lasts.error());
    return item;
}

} // namespace

LiveTrash::LiveTrash(std::string trashFolder, Clock now)
    : trashFolder_(std::move(trashFolder)), now_(std::move(now)) {}

std::expected<TrashedItem, std::string> LiveTrash::moveToTrash(const std::string& path,
                                                               const AboutToMove& aboutToMove) {
    const auto itemPath = itemPathOf(path);
    if (!itemPath)
        return std::unexpected("It is not the path of an item");
    const std::string name(lastPathComponent(*itemPath));
    if (const auto move = platform::systemTrash()) {
        if (auto go = aboutToMove({.trashPath = joinedPath(trashFolder_, name)}); !go)
            return std::unexpected(std::move(go.error()));
        auto moved = move(*itemPath);
        if (!moved)
            return std::unexpected(std::move(moved.error()));
        return TrashedItem{.path = *std::move(moved)};
    }

    const auto source = HeldFolder::open(std::string(parentPath(*itemPath)));
    if (!source)
        return std::unexpected(moveFailureText(source.error()));
    if (const auto item = source->identityOf(name); !item)
        return std::unexpected(moveFailureText(item.error()));
    const auto trash = TrashFolder::open(trashFolder_);
    if (!trash)
        return std::unexpected(trash.error());
    if (auto reason = reasonAgainst(*itemPath, trash->path))
        return std::unexpected(std::move(*reason));

    const auto infoContent = trashInfoText(*itemPath, now_());
    constexpr unsigned mostAttempts = 100'000;
    for (unsigned attempt = 1; attempt <= mostAttempts; ++attempt) {
        const auto stored = trashName(name, attempt, trash->longestName());
        const auto infoName = stored + std::string(trashInfoSuffix);
        // Also where there is only an item without an info file: it is somebody's, and would be lost.
        if (isTaken(trash->files, stored) || isTaken(trash->info, infoName))
            continue;
        const PlannedMove plan{.trashPath = joinedPath(joinedPath(trash->path, "files"), stored),
                               .infoPath = joinedPath(joinedPath(trash->path, "info"), infoName),
                               .infoContent = infoContent};
        if (auto go = aboutToMove(plan); !go)
            return std::unexpected(std::move(go.error()));
        auto attempted = attemptMove(*source, name, *trash, stored, plan);
        if (!attempted)
            return std::unexpected(attempted.error());
        if (auto& moved = *attempted)
            return *std::move(moved);
    }
    return std::unexpected("The Trash holds too many items of this name");
}

} // namespace orbel
