#include "Scan/MountedVolumes.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using platform::Mount;

std::vector<Mount> table() {
    return {{.path = "/proc", .fileSystem = "proc", .source = "proc"},
            {.path = "/", .fileSystem = "btrfs", .source = "/dev/sda2"},
            {.path = "/run", .fileSystem = "tmpfs", .source = "tmpfs"},
            {.path = "/home", .fileSystem = "btrfs", .source = "/dev/sda2"},
            {.path = "/snap/core/1", .fileSystem = "squashfs", .source = "/dev/loop0"},
            {.path = "/media/stick", .fileSystem = "vfat", .source = "/dev/sdb1"},
            {.path = "/tank", .fileSystem = "zfs", .source = "tank"},
            {.path = "/mnt/dead", .fileSystem = "nfs4", .source = "/export", .isNetwork = true},
            {.path = "/media/empty", .fileSystem = "ext4", .source = "/dev/sdc1"}};
}

TEST(MountedVolumes, ListsEachDiskOnceAndAsksNoServer) {
    std::vector<std::string> asked;
    const auto volumes = mountedVolumes(table(), [&](const std::string& path) {
        asked.push_back(path);
        return path == "/media/empty" ? std::nullopt
                                      : std::optional(VolumeInfo{.total = 100, .free = 40, .used = 60});
    });
    std::vector<std::string> paths;
    for (const auto& volume : volumes)
        paths.push_back(volume.path);
    EXPECT_EQ(paths, (std::vector<std::string>{"/", "/media/stick", "/tank"}));
    EXPECT_EQ(std::ranges::count(asked, "/mnt/dead"), 0);
}

TEST(MountedVolumes, TellTheMountThatHoldsAPath) {
    auto mounts = table();
    EXPECT_EQ(mountHolding(mounts, "/home/mira")->path, "/home");
    EXPECT_EQ(mountHolding(mounts, "/homes")->path, "/");
    mounts.push_back({.path = "/home", .fileSystem = "ext4", .source = "/dev/sdd1"});
    EXPECT_EQ(mountHolding(mounts, "/home")->source, "/dev/sdd1") << "the one on top";
    EXPECT_EQ(mountHolding({}, "/"), nullptr);
}

} // namespace
} // namespace orbel
