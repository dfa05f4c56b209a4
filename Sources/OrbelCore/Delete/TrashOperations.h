#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>

namespace orbel {

/// What one attempt to move an item would leave in the Trash. Whoever finds these after a crash knows what
/// was under way.
struct PlannedMove {
    std::string trashPath; ///< where the item would lie; absolute
    /// The file that would tell where the item came from, and what it would hold; absent and empty where the
    /// system keeps that to itself.
    std::optional<std::string> infoPath{};
    std::string infoContent{};

    bool operator==(const PlannedMove&) const = default;
};

/// An item that was moved to the Trash.
struct TrashedItem {
    std::string path; ///< where it lies now; absolute
    /// Why a power cut may still undo the move, for the user to read; absent when it is on the disk.
    std::optional<std::string> flushFailure{};

    bool operator==(const TrashedItem&) const = default;
};

/// Asked before each attempt, before anything is created for it. More than one attempt is made when a name
/// turns out to be taken; each plan takes the place of the one before. An error stops the move, with these
/// words as its reason; nothing is then left behind. Never empty.
using AboutToMove = std::function<std::expected<void, std::string>(const PlannedMove&)>;

/// Moves items to the Trash. One call at a time.
class TrashOperations {
public:
    TrashOperations() = default;
    TrashOperations(const TrashOperations&) = delete;
    TrashOperations& operator=(const TrashOperations&) = delete;
    virtual ~TrashOperations() = default;

    /// Moves what lies at `path`, a link itself and never its target. `path` must be the item's real
    /// path. Gives the item in the Trash, or the words of why it was not moved; it then still lies at
    /// `path`, and nothing of it in the Trash. Whether it was the right object that moved is the caller's
    /// to check afterwards.
    virtual std::expected<TrashedItem, std::string> moveToTrash(const std::string& path,
                                                                const AboutToMove& aboutToMove) = 0;
};

} // namespace orbel
