#pragma once

#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orbel {

class Barrier;

/// What a move will leave in the Trash; settling an interrupted move looks there.
struct PlannedMove {
    std::string path;      ///< the item's real path
    std::string trashPath; ///< where the item will lie; absolute
    /// The file that will tell where the item came from, and what it will hold; absent and empty where the
    /// system keeps that to itself.
    std::optional<std::string> infoPath{};
    std::string infoContent{};

    bool operator==(const PlannedMove&) const = default;
};

/// Why an item was not moved. It still lies at its path, and nothing of it in the Trash.
struct TrashFailure {
    std::string words; ///< for the user
    /// Another program took the planned name, or emptied the Trash: planned anew, the item may move.
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

/// Moves items to the Trash, in groups, which are planned, then prepared, then made. One thread at a time
/// plans and prepares; another one may meanwhile make the moves of the group before.
class TrashOperations {
public:
    TrashOperations() = default;
    TrashOperations(const TrashOperations&) = delete;
    TrashOperations& operator=(const TrashOperations&) = delete;
    virtual ~TrashOperations() = default;

    /// Plans the moves of a group, each with a name of its own, and makes nothing but a Trash that is
    /// missing, which is added to `barrier`. `paths`: the items' real paths. Gives for each its plan, or the
    /// words of why it cannot be moved.
    virtual std::vector<std::expected<PlannedMove, std::string>> plan(std::span<const std::string> paths,
                                                                      Barrier& barrier) = 0;

    /// Writes what must be in the Trash before the item moves, and adds it to `barrier`. `move`: of the group
    /// that was planned last.
    virtual std::expected<std::unique_ptr<TrashMove>, TrashFailure> prepare(const PlannedMove& move,
                                                                            Barrier& barrier) = 0;
};

} // namespace orbel
