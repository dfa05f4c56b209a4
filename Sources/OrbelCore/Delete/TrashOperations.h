#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace orbel {

class Barrier;

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

/// Asked before each attempt, before anything is created for it. More than one attempt is made when a name
/// turns out to be taken; each plan takes the place of the one before. An error stops the move, with these
/// words as its reason; nothing is then left behind. Never empty.
using AboutToMove = std::function<std::expected<void, std::string>(const PlannedMove&)>;

/// Why an item was not moved. It still lies at its path, and nothing of it in the Trash.
struct TrashFailure {
    std::string words; ///< for the user
    /// Another program took the planned name, or emptied the Trash: prepared anew, the item may move.
    bool isPlanVoid = false;
};

/// The move of one item that is prepared. Dropped before it was made, it leaves nothing in the Trash.
class TrashMove {
public:
    TrashMove() = default;
    TrashMove(const TrashMove&) = delete;
    TrashMove& operator=(const TrashMove&) = delete;
    virtual ~TrashMove() = default;

    /// Moves what lies at the path now, a link itself and never its target; gives where it lies then. Whether
    /// it was the right object is the caller's to check afterwards. Called once, and only after the barrier
    /// that it was prepared with was passed; adds the move to `barrier`.
    virtual std::expected<std::string, TrashFailure> make(Barrier& barrier) = 0;
};

/// Moves items to the Trash. One thread at a time.
class TrashOperations {
public:
    TrashOperations() = default;
    TrashOperations(const TrashOperations&) = delete;
    TrashOperations& operator=(const TrashOperations&) = delete;
    virtual ~TrashOperations() = default;

    /// Writes what must be in the Trash before the item moves, and adds it to `barrier`. `path` must be the
    /// item's real path. The error is the words of why it cannot be moved.
    virtual std::expected<std::unique_ptr<TrashMove>, std::string>
    prepare(const std::string& path, const AboutToMove& aboutToMove, Barrier& barrier) = 0;
};

} // namespace orbel
