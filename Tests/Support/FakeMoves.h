#pragma once

#include "Delete/TrashOperations.h"
#include "Journal/RestoreOperations.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orbel::test {

/// A Trash that is a plain folder, with a hook at each point where the world may change.
class FakeTrash : public TrashOperations {
public:
    /// `files`: the folder that holds what was moved; made when missing.
    explicit FakeTrash(std::string files) : files_(std::move(files)) {}

    std::vector<std::expected<PlannedMove, std::string>> plan(std::span<const std::string> paths,
                                                              Barrier& barrier) override;
    std::expected<std::unique_ptr<TrashMove>, TrashFailure> prepare(const PlannedMove& move,
                                                                    Barrier& barrier) override;

    std::vector<std::string> asked; ///< every path whose move was to be planned, in order
    std::function<void(const std::string&path)> beforeAsking, beforeMoving;
    std::function<void(const std::string& trashPath)> afterMoving;
    std::optional<std::string> failure; ///< the words with which a move fails
    int voidPlans = 0;                  ///< how many of the next moves find their plan void
    int flushError = 0;                 ///< of every move that is made

private:
    class Move;

    std::string files_;
};

/// Plans the move of one item, prepares and makes it, anew as long as its plan becomes void. `planned`
/// sees each plan.
std::expected<std::string, std::string> moveToTrash(
    TrashOperations& trash, const std::string& path,
    const std::function<void(const PlannedMove&)>& planned = [](const PlannedMove&) {});

/// Puts one item back, and removes its note from the Trash.
std::expected<void, std::string> putBack(const std::string& from, const std::string& to);

/// Puts back as the program does, with the same hooks.
class FakeRestore : public RestoreOperations {
public:
    std::expected<void, std::string> move(const std::string& from, const HeldFolder& folder,
                                          const std::string& name, Barrier& barrier) override;

    std::vector<std::string> asked; ///< every path it was to move from, in order
    std::function<void(const std::string&from)> beforeMoving, afterMoving;
    std::optional<std::string> failure;
    int flushError = 0;
};

} // namespace orbel::test
