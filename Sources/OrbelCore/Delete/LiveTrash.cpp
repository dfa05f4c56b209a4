#include "Delete/LiveTrash.h"

#include "Delete/TrashFolder.h"
#include "Delete/TrashInfo.h"
#include "Delete/TrashName.h"
#include "Journal/Barrier.h"
#include "Journal/MoveFailure.h"
#include "Platform/MountTable.h"
#include "Platform/SystemTrash.h"
#include "Safety/RealPath.h"
#include "Util/Check.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <cerrno>
#include <optional>
#include <system_error>
#include <unordered_set>
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

/// Plans the moves of one group into a Trash folder.
class Planner {
public:
    Planner(const TrashFolder& trash, std::chrono::system_clock::time_point now)
        : trash_(trash), longestName_(trash.longestName()), now_(now) {}

    std::expected<PlannedMove, std::string> plan(const std::string& path) {
        auto stored = freeName(std::string(lastPathComponent(path)));
        if (!stored)
            return std::unexpected("The Trash holds too many items of this name");
        PlannedMove move{.path = path,
                         .trashPath = joinedPath(joinedPath(trash_.path, "files"), *stored),
                         .infoPath = joinedPath(joinedPath(trash_.path, "info"), infoNameOf(*stored)),
                         .infoContent = trashInfoText(path, now_)};
        planned_.insert(*std::move(stored));
        return move;
    }

private:
    /// A name by which an item could go; absent when there are too many of its name. A Trash may hold
    /// thousands of them, so the numbers are not tried one by one: it is the first that is free if those that
    /// are taken follow each other.
    std::optional<std::string> freeName(const std::string& name) const {
        constexpr unsigned mostOfOneName = 1'000'000;
        const auto isNumberTaken = [&](unsigned number) {
            return isTaken(trashName(name, number, longestName_));
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
        return trashName(name, free, longestName_);
    }

    /// Also where there is only an item without an info file: it belongs to another program, and
    /// would be lost.
    bool isTaken(const std::string& stored) const {
        return planned_.contains(stored) || orbel::isTaken(trash_.files, stored)
               || orbel::isTaken(trash_.info, infoNameOf(stored));
    }

    const TrashFolder& trash_;
    std::size_t longestName_;
    std::chrono::system_clock::time_point now_;
    std::unordered_set<std::string> planned_; ///< names for items of the group
};

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

std::vector<std::expected<PlannedMove, std::string>> LiveTrash::plan(std::span<const std::string> paths,
                                                                     Barrier& barrier) {
    std::vector<std::expected<PlannedMove, std::string>> plans;
    plans.reserve(paths.size());
    std::optional<std::string> unusable;
    std::optional<Planner> planner;
    if (platform::systemTrash() == nullptr) {
        openTrash_ = nullptr;
        if (auto trash = TrashFolder::open(trashFolder_, barrier)) {
            openTrash_ = std::make_shared<const TrashFolder>(*std::move(trash));
            planner.emplace(*openTrash_, now_());
        } else {
            unusable = std::move(trash.error());
        }
    }
    for (const auto& path : paths) {
        const auto plain = itemPathOf(path);
        if (!plain)
            plans.emplace_back(std::unexpected("It is not the path of an item"));
        else if (unusable)
            plans.emplace_back(std::unexpected(*unusable));
        else if (planner)
            plans.push_back(planner->plan(*plain));
        else
            plans.emplace_back(PlannedMove{.path = *plain,
                                           .trashPath = joinedPath(trashFolder_, lastPathComponent(*plain))});
    }
    return plans;
}

std::expected<std::unique_ptr<TrashMove>, TrashFailure> LiveTrash::prepare(const PlannedMove& move,
                                                                           Barrier& barrier) {
    if (const auto systemMove = platform::systemTrash())
        return std::make_unique<SystemMove>(systemMove, move.path);
    ORBEL_CHECK(openTrash_ && move.infoPath, "a move into the Trash folder is planned before it is prepared");
    auto info = PendingTrashInfo::create(openTrash_->info, std::string(lastPathComponent(*move.infoPath)),
                                         move.infoContent, barrier);
    if (!info)
        return std::unexpected(TrashFailure{.words = "Its info file could not be written: "
                                                     + std::generic_category().message(info.error()),
                                            .isPlanVoid = info.error() == EEXIST});
    return std::make_unique<FolderMove>(move.path, openTrash_, std::string(lastPathComponent(move.trashPath)),
                                        *std::move(info));
}

} // namespace orbel
