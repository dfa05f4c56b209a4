#pragma once

#include "Delete/LiveTrash.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace orbel::test {

/// The live Trash, with a hook before each move, on the thread that moves.
class HookedTrash final : public TrashOperations {
public:
    explicit HookedTrash(const std::string& folder) : trash_(folder) {}

    std::vector<std::expected<PlannedMove, std::string>> plan(std::span<const std::string> paths,
                                                              Barrier& barrier) override {
        return trash_.plan(paths, barrier);
    }

    std::expected<std::unique_ptr<TrashMove>, TrashFailure> prepare(const PlannedMove& move,
                                                                    Barrier& barrier) override {
        auto prepared = trash_.prepare(move, barrier);
        if (!prepared)
            return prepared;
        return std::make_unique<Move>(*this, move.path, *std::move(prepared));
    }

    std::function<void(const std::string& path)> beforeMoving;

private:
    class Move final : public TrashMove {
    public:
        Move(const HookedTrash& trash, std::string path, std::unique_ptr<TrashMove> move)
            : trash_(trash), path_(std::move(path)), move_(std::move(move)) {}

        std::expected<std::string, TrashFailure> make(Barrier& barrier) override {
            if (trash_.beforeMoving)
                trash_.beforeMoving(path_);
            return move_->make(barrier);
        }

    private:
        const HookedTrash& trash_;
        std::string path_;
        std::unique_ptr<TrashMove> move_;
    };

    LiveTrash trash_;
};

} // namespace orbel::test
