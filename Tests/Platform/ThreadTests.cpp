#include "Platform/BlockingWork.h"
#include "Platform/Parallel.h"
#include "Platform/Thread.h"

#include <array>
#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <numeric>
#include <string>

#include <pthread.h>

namespace orbel {
namespace {

std::string currentName() {
    std::array<char, 64> name{};
    pthread_getname_np(pthread_self(), name.data(), name.size());
    return name.data();
}

TEST(Thread, RunsUnderItsNameAndIsJoined) {
    std::string name;
    Thread thread = Thread::start("orbel.walker.12345", 1024 * 1024, [&] { name = currentName(); });
    ASSERT_TRUE(thread.joinable());
    Thread moved = std::move(thread);
    EXPECT_FALSE(
        thread.joinable()); // NOLINT(bugprone-use-after-move): a moved thread is defined to hold none
    moved.join();
    EXPECT_EQ(name, std::string("orbel.walker.12345").substr(0, 15));
}

TEST(BlockingWork, GivesItsResultOnceFromAnotherThread) {
    auto name = BlockingWork::run("orbel.work", [] { return currentName(); });
    EXPECT_EQ(name.get(), "orbel.work");
    const auto kept = std::make_shared<std::atomic<bool>>(false);
    auto thrown = BlockingWork::run("orbel.work", [kept]() -> int {
        *kept = true;
        throw std::runtime_error("told to the caller");
    });
    EXPECT_THROW(thrown.get(), std::runtime_error);
    EXPECT_TRUE(*kept);
}

TEST(Parallel, DoesEveryTaskOnce) {
    std::array<std::atomic<int>, 1000> done{};
    forEachTask(done.size(), [&](std::size_t task) { ++done[task]; });
    for (const auto& times : done)
        EXPECT_EQ(times, 1);
    forEachTask(0, [](std::size_t) { FAIL() << "there is nothing to do"; });
}

TEST(Parallel, CoversARangeWithoutGapsOrOverlaps) {
    for (const std::size_t count : {0UL, 1UL, 7UL, 8UL, 1001UL}) {
        std::vector<std::atomic<int>> done(count);
        forEachRange(count, 3, [&](std::size_t begin, std::size_t end) {
            EXPECT_LT(begin, end);
            for (auto i = begin; i < end; ++i)
                ++done[i];
        });
        for (const auto& times : done)
            EXPECT_EQ(times, 1);
    }
}

} // namespace
} // namespace orbel
