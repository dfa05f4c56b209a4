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

std::expected<std::unique_ptr<TrashMove>, std::string>
FakeTrash::prepare(const std::string& path, const AboutToMove& aboutToMove, Barrier& /*barrier*/) {
    asked.push_back(path);
    fs::create_directories(files_);
    const auto target = joinedPath(files_, lastPathComponent(path));
    call(beforeAsking, path);
    if (auto go = aboutToMove({.trashPath = target}); !go)
        return std::unexpected(go.error());
    return std::make_unique<Move>(*this, path, target);
}

std::expected<std::string, std::string> moveToTrash(TrashOperations& trash, const std::string& path,
                                                    const AboutToMove& aboutToMove) {
    while (true) {
        Barrier barrier;
        const auto prepared = trash.prepare(path, aboutToMove, barrier);
        if (!prepared)
            return std::unexpected(prepared.error());
        EXPECT_TRUE(barrier.pass());
        auto moved = (*prepared)->make(barrier);
        EXPECT_TRUE(barrier.pass());
        if (moved)
            return *std::move(moved);
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
    if (moved)
        TrashNote(from).removeIfUnused();
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
