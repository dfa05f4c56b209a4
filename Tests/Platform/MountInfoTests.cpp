#include "Platform/Linux/Portable/MountInfo.h"

#include <gtest/gtest.h>
#include <string>

namespace orbel::platform {
namespace {

TEST(MountInfo, ReadsEachLineInOrder) {
    const auto mounts =
        parseMountInfo("29 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw\n"
                       "31 29 0:27 /sub /home/user/bind rw - btrfs /dev/sdb1 rw,subvol=/sub\n");
    ASSERT_EQ(mounts.size(), 2U);
    EXPECT_EQ(mounts[0].id, 29U);
    EXPECT_EQ(mounts[0].parentId, 1U);
    EXPECT_EQ(mounts[0].path, "/");
    EXPECT_EQ(mounts[0].fileSystem, "ext4");
    EXPECT_EQ(mounts[0].source, "/dev/vda");
    EXPECT_EQ(mounts[1].path, "/home/user/bind");
    EXPECT_EQ(mounts[1].source, "/dev/sdb1");
}

TEST(MountInfo, AnyNumberOfOptionalTagsMayStandBeforeTheSeparator) {
    for (const std::string tags :
         {"", "shared:7 ", "shared:7 master:2 ", "master:2 propagate_from:3 unbindable "}) {
        const auto mounts = parseMountInfo("40 29 0:30 / /mnt rw " + tags + "- xfs /dev/sdc rw\n");
        ASSERT_EQ(mounts.size(), 1U) << tags;
        EXPECT_EQ(mounts[0].fileSystem, "xfs");
        EXPECT_EQ(mounts[0].source, "/dev/sdc");
    }
}

TEST(MountInfo, EscapesArePutBackAndOtherBackslashesStay) {
    const auto mounts = parseMountInfo(R"(40 29 0:30 / /media/My\040Disk\011\134x\012 rw - ext4 /dev/a\040b rw
41 29 0:31 / /odd\04\8\ rw - ext4 none rw)");
    ASSERT_EQ(mounts.size(), 2U);
    EXPECT_EQ(mounts[0].path, "/media/My Disk\t\\x\n");
    EXPECT_EQ(mounts[0].source, "/dev/a b");
    EXPECT_EQ(mounts[1].path, R"(/odd\04\8\)");
}

TEST(MountInfo, MalformedLinesArePassedOver) {
    const auto mounts = parseMountInfo("\n"
                                       "40 29 0:30 / /no-separator rw ext4 /dev/sdc rw\n"
                                       "x 29 0:30 / /no-number rw - ext4 /dev/sdc rw\n"
                                       "40 -1 0:30 / /bad-parent rw - ext4 /dev/sdc rw\n"
                                       "40 29 0:30 / - ext4 /dev/sdc rw\n"
                                       "40 29 0:30 / /nothing-behind rw -\n"
                                       "40 29 0:30 / /no-source rw - ext4\n"
                                       "99999999999999999999 29 0:30 / /overflow rw - ext4 /dev/sdc rw\n"
                                       "41 29 0:30 / /good rw - ext4 /dev/sdc rw");
    ASSERT_EQ(mounts.size(), 1U);
    EXPECT_EQ(mounts[0].path, "/good");
    EXPECT_TRUE(parseMountInfo("").empty());
}

TEST(MountInfo, NetworkAndUserProgramsAreTold) {
    const auto isNetwork = [](const std::string& type) {
        const auto mounts = parseMountInfo("40 29 0:30 / /mnt rw - " + type + " source rw\n");
        return mounts.size() == 1 && mounts[0].isNetwork;
    };
    for (const auto* type : {"nfs", "nfs4", "cifs", "9p", "autofs", "fuse", "fuse.sshfs"})
        EXPECT_TRUE(isNetwork(type)) << type;
    for (const auto* type : {"ext4", "btrfs", "tmpfs", "fuseblk", "overlay", "zfs"})
        EXPECT_FALSE(isNetwork(type)) << type;
}

TEST(MountTable, WhatMayHangIsOutOfReachUnlessTheHomeLiesOnIt) {
    const auto mounts = parseMountInfo("1 0 0:1 / / rw - ext4 /dev/a rw\n"
                                       "2 1 0:2 / /nas rw - nfs4 server rw\n"
                                       "3 2 0:3 / /nas/me/cloud rw - fuse.cloud cloud rw\n"
                                       "4 1 0:4 / /disk rw - autofs systemd-1 rw\n"
                                       "5 4 0:5 / /disk rw - ext4 /dev/b rw\n");
    const std::vector<std::string> home{"/nas/me"};
    EXPECT_EQ(mountPointsOutOfReach(mounts, home), std::vector<std::string>{"/nas/me/cloud"});
    EXPECT_EQ(mountPointsOutOfReach(mounts, {}), (std::vector<std::string>{"/nas", "/nas/me/cloud"}))
        << "a disk that was mounted on demand lies over its automount";
}

} // namespace
} // namespace orbel::platform
