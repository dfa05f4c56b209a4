#include "Journal/IntentLog.h"
#include "Journal/IntentSettling.h"
#include "Journal/JournalJson.h"
#include "Support/ChildProcess.h"
#include "Support/JournalScene.h"
#include "Util/ReadFile.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/resource.h>
#include <sys/stat.h>

namespace orbel {
namespace {

using test::JournalScene;

TEST(IntentLog, MakesItsFileWithTheFirstIntentAndRemovesItWhenClosed) {
    const JournalScene scene;
    IntentLog log(scene.path);
    log.close();
    EXPECT_FALSE(test::exists(scene.home.path("data"))) << "nothing before the first intent";
    const auto first = scene.beginToTrash("first");
    const auto second = scene.beginToTrash("second");
    ASSERT_TRUE(log.begin({&first, 1}));
    ASSERT_TRUE(log.begin({&second, 1}));
    ASSERT_EQ(scene.intentFiles().size(), 1u);
    struct stat status {};
    ASSERT_EQ(::lstat(scene.intentFiles()[0].c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
    EXPECT_EQ(readFile(scene.intentFiles()[0]),
              nlohmann::json(first).dump() + "\n" + nlohmann::json(second).dump() + "\n");

    log.close();
    EXPECT_TRUE(scene.intentFiles().empty());
    ASSERT_TRUE(log.begin({&first, 1})) << "another run in the same log";
    EXPECT_EQ(scene.intentFiles().size(), 1u);
}

TEST(IntentLog, AnIntentThatCannotBeWrittenWholeIsRefused) {
    const JournalScene scene;
    const auto first = scene.beginToTrash("first");
    auto unnameable = first;
    unnameable.destinationPath += "\xFF";
    IntentLog log(scene.path);
    EXPECT_FALSE(log.begin({&unnameable, 1}));
    EXPECT_TRUE(scene.intentFiles().empty());

    test::inChildProcess([&] {
        ASSERT_TRUE(log.begin({&first, 1}));
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{.rlim_cur = std::filesystem::file_size(scene.intentFiles()[0]) + 100,
                           .rlim_max = RLIM_INFINITY};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        const auto second = scene.beginToTrash("second");
        EXPECT_FALSE(log.begin({&second, 1}));
        const rlimit unlimited{.rlim_cur = RLIM_INFINITY, .rlim_max = RLIM_INFINITY};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &unlimited), 0);
        ASSERT_TRUE(log.begin({&second, 1})) << "a torn line does not spoil those after it";
        test::move(first);
        test::move(second);
    });
    JournalStore journal(scene.path);
    EXPECT_EQ(test::titlesOf(settleIntents(journal).recorded).size(), 2u);
}

TEST(IntentLog, AFolderThatCannotBeMadeRefusesTheMove) {
    const JournalScene scene;
    scene.home.file("data/intents", "in its place");
    IntentLog log(scene.path);
    const auto intent = scene.beginToTrash("film.mp4");
    EXPECT_FALSE(log.begin({&intent, 1}));
}

TEST(IntentLog, IsLeftAloneWhileItsProcessLivesAndSettledWhenItDied) {
    JournalScene scene;
    const auto intent = scene.beginToTrash("film.mp4");
    {
        IntentLog own(scene.path);
        ASSERT_TRUE(own.begin({&intent, 1}));
        EXPECT_EQ(settleIntents(scene.store), Settlement{}) << "not even by the process itself";
        own.close();
    }
    const auto other = test::startChildProcess([&] {
        IntentLog log(scene.path);
        if (log.begin({&intent, 1}))
            test::move(intent);
        ::pause();
    });
    while (!test::exists(intent.destinationPath))
        ;
    EXPECT_EQ(settleIntents(scene.store), Settlement{});
    EXPECT_EQ(scene.intentFiles().size(), 1u);
    test::killChildProcess(other);
    EXPECT_EQ(settleIntents(scene.store).recorded, std::vector{intent.entry});
    EXPECT_TRUE(scene.intentFiles().empty());
}

} // namespace
} // namespace orbel
