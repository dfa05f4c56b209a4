#include "Support/FakeMoves.h"

#include "Journal/Barrier.h"
#include "Journal/LiveRestore.h"
#include "Journal/TrashNote.h"
#include "Util/PathText.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel::test {

namespace fs = std::filesystem;

namespace {

template <class Hook>
void call(const Hook& hook, const std::string& path) {
    if (hook)
        hook(path);
}

} // namespace

class FakeTrash::Move : public TrashMove {
public:
    Move(FakeTrash& trash, std::string path, std::string target)
        : trash_(trash), path_(std::move(path)), target_(std::move(target)) {}

    std::expected<std::string, TrashFailure> make(Barrier& barrier) override {
        if (trash_.failure)
            return std::unexpected(TrashFailure{.words = *trash_.failure});
        if (trash_.voidPlans > 0) {
            --trash_.voidPlans;
            return std::unexpected(TrashFailure{.words = "Its name was taken", .isPlanVoid = true});
        }
        call(trash_.beforeMoving, path_);
        fs::rename(path_, target_);
        call(trash_.afterMoving, target_);
        if (trash_.flushError != 0)
            barrier.fail(trash_.flushError);
        return target_;
    }

private:
    FakeTrash& trash_;
    std::string path_, target_;
};

std::vector<std::expected<PlannedMove, std::string>> FakeTrash::plan(std::span<const std::string> paths,
                                                                     Barrier& /*barrier*/) {
    fs::create_directories(files_);
    std::vector<std::expected<PlannedMove, std::string>> plans;
    for (const auto& path : paths) {
        asked.push_back(path);
        call(beforeAsking, path);
        plans.push_back(PlannedMove{.path = path, .trashPath = joinedPath(files_, lastPathComponent(path))});
    }
    return plans;
}

std::expected<std::unique_ptr<TrashMove>, TrashFailure> FakeTrash::prepare(const PlannedMove& move,
                                                                           Barrier& /*barrier*/) {
    return std::make_unique<Move>(*this, move.path, move.trashPath);
}

std::expected<std::string, std::string> moveToTrash(TrashOperations& trash, const std::string& path,
                                                    const std::function<void(const PlannedMove&)>& planned) {
    while (true) {
        Barrier barrier;
        const auto plan = trash.plan({&path, 1}, barrier).front();
        if (!plan)
            return std::unexpected(plan.error());
        planned(*plan);
        const auto prepared = trash.prepare(*plan, barrier);
        EXPECT_TRUE(barrier.pass());
        const auto moved = prepared ? (*prepared)->make(barrier) : std::unexpected(prepared.error());
        EXPECT_TRUE(barrier.pass());
        if (moved)
            return *moved;
        if (!moved.error().isPlanVoid)
            return std::unexpected(moved.error().words);
    }
}

std::expected<void, std::string> putBack(const std::string& from, const std::string& to) {
    const auto folder = HeldFolder::open(std::string(parentPath(to)));
    if (!folder)
        return std::unexpected("cannot be held: " + to);
    Barrier barrier;
    auto moved = LiveRestore().move(from, *folder, std::string(lastPathComponent(to)), barrier);
    EXPECT_TRUE(barrier.pass());
    const auto note = TrashNote::seen(from);
    if (moved && note)
        std::ignore = TrashNote::removeUnchanged({&*note, 1}); // false where another's thing has the name
    return moved;
}

std::expected<void, std::string> FakeRestore::move(const std::string& from, const HeldFolder& folder,
                                                   const std::string& name, Barrier& barrier) {
    asked.push_back(from);
    if (failure)
        return std::unexpected(*failure);
    call(beforeMoving, from);
    auto moved = LiveRestore().move(from, folder, name, barrier);
    call(afterMoving, from);
    if (moved && flushError != 0)
        barrier.fail(flushError);
    return moved;
}

} // namespace orbel::test
