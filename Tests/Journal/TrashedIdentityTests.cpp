#include "Journal/TrashedIdentity.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include <unistd.h>

namespace orbel {
namespace {

const TrashedIdentity then{.device = 1,
                           .inode = 2,
                           .size = 3,
                           .isDirectory = false,
                           .persistent = {{.volume = "volume", .birthNanos = 4}}};

TEST(TrashedIdentity, OnTheSameDeviceTheBirthIsNotAsked) {
    auto now = then;
    EXPECT_TRUE(isSameObject(then, now));
    now.persistent.reset();
    EXPECT_TRUE(isSameObject(then, now));
    EXPECT_TRUE(isSameObject(now, then));
    for (const auto& other : {TrashedIdentity{1, 9, 3, false, {}}, {1, 2, 9, false, {}}, {1, 2, 3, true, {}}})
        EXPECT_FALSE(isSameObject(then, other));
    EXPECT_TRUE(isSameObject({.device = 1, .inode = 2, .size = 3, .isDirectory = true},
                             {.device = 1, .inode = 2, .size = 9, .isDirectory = true}))
        << "the size of a folder says nothing";
}

TEST(TrashedIdentity, OnAnotherDeviceItDecides) {
    auto now = then;
    now.device = 9;
    EXPECT_TRUE(isSameObject(then, now));
    for (const auto& persistent : {std::optional<platform::PersistentIdentity>(),
                                   {{.volume = "other", .birthNanos = 4}},
                                   {{.volume = "volume", .birthNanos = 5}}}) {
        auto other = now;
        other.persistent = persistent;
        EXPECT_FALSE(isSameObject(then, other));
        EXPECT_FALSE(isSameObject(other, then));
    }
    auto unknown = then;
    unknown.persistent.reset();
    now.persistent.reset();
    EXPECT_FALSE(isSameObject(unknown, now)) << "two unknowns are not the same";
    auto larger = then;
    larger.device = 9;
    larger.size = 9;
    EXPECT_FALSE(isSameObject(then, larger));
}

TEST(TrashedIdentity, GoesWithTheObjectAndNotWithItsName) {
    const test::TemporaryFolder home;
    const auto path = home.file("file", "content");
    const auto taken = TrashedIdentity::of(path).value();
    if (!taken.persistent)
        GTEST_SKIP() << "this file system tells neither births nor a UUID";
    const auto moved = home.folder("folder") + "/moved";
    std::filesystem::rename(path, moved);
    EXPECT_EQ(TrashedIdentity::of(moved), taken);
    EXPECT_FALSE(TrashedIdentity::of(path));

    // The clock of births moves on every few milliseconds; from then on a new object is told from this one.
    while (TrashedIdentity::of(home.file("file"))->persistent == taken.persistent)
        std::filesystem::remove(path);
    EXPECT_FALSE(platform::persistentIdentity(path, taken.inode)) << "another object than was asked for";
    EXPECT_EQ(TrashedIdentity::of(home.path("folder"))->persistent->volume, taken.persistent->volume);
    const auto link = TrashedIdentity::of(home.link("link", moved)).value();
    EXPECT_NE(link.inode, taken.inode) << "a link itself, never its target";
    EXPECT_TRUE(link.persistent);
}

TEST(TrashedIdentity, SurvivesThatBtrfsIsMountedAgainUnderAnotherDeviceNumber) {
    if (!test::isRoot())
        GTEST_SKIP() << "needs root to mount a file system";
    const test::TemporaryFolder home;
    const auto quietly = [](const std::string& command) {
        return std::system((command + " >/dev/null 2>&1").c_str()) == 0; // NOLINT(concurrency-mt-unsafe)
    };
    const auto image = home.file("image");
    std::filesystem::resize_file(image, 128 * 1024 * 1024);
    if (!quietly("mkfs.btrfs '" + image + "'"))
        GTEST_SKIP() << "needs mkfs.btrfs";
    const auto volume = home.folder("volume");
    const std::string mount = "mount -o loop '" + image + "' '" + volume + "'";
    test::inChildProcess([&] {
        test::useOwnMountTable();
        if (!quietly(mount))
            GTEST_SKIP() << "needs a loop device";
        home.file("volume/file");
        const auto file = TrashedIdentity::of(home.path("volume/file")).value();

        ASSERT_TRUE(quietly("umount '" + volume + "'"));
        // One of these takes the number that is free now, unless a mount elsewhere has.
        constexpr int others = 20;
        for (int i = 0; i < others; ++i) {
            const auto between = home.folder("between" + std::to_string(i));
            test::mountTmpfs(between.c_str());
            if (TrashedIdentity::of(between).value().device == file.device)
                break;
        }
        ASSERT_TRUE(quietly(mount));
        const auto again = TrashedIdentity::of(home.path("volume/file")).value();
        EXPECT_NE(again.device, file.device);
        EXPECT_TRUE(isSameObject(file, again));
        ASSERT_TRUE(quietly("umount '" + volume + "'"));
    });
}

} // namespace
} // namespace orbel
