#include "Platform/Linux/Portable/ProcessText.h"

#include <gtest/gtest.h>
#include <vector>

namespace orbel::platform {
namespace {

TEST(ProcessText, ReadsTheStateAfterWhateverName) {
    const auto plain = parseProcessState("812 (bash) S 1 812 812 34816 812 4194304 1 2 3\n");
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->name, "bash");
    EXPECT_FALSE(plain->isKernelThread || plain->isEnded);
    const auto odd = parseProcessState("9 (a) Z 0 (b\nc) R 1 9 9 0 -1 4194304 0");
    ASSERT_TRUE(odd);
    EXPECT_EQ(odd->name, "a) Z 0 (b\nc");
    EXPECT_FALSE(odd->isEnded);
    EXPECT_TRUE(parseProcessState("2 (kthreadd) S 0 0 0 0 -1 2129984 0")->isKernelThread);
    EXPECT_TRUE(parseProcessState("7 (x) Z 1 7 7 0 -1 4228108 0")->isEnded);
    for (const auto* text : {"", "7", "7 (x", "7 (x)", "7 )x( S 1 7 7 0 -1 0", "7 (x) S 1 7 7 0 -1 flags"})
        EXPECT_FALSE(parseProcessState(text)) << text;
}

TEST(ProcessText, FindsTheFilesAmongTheMappings) {
    std::vector<std::string> found;
    forEachMappedFile("55d0a000-55d0b000 r--p 00000000 08:01 131 /usr/bin/a b\\012c\n"
                      "55d0b000-55d0c000 r-xp 00001000 08:01 131                        /usr/bin/a b\\012c\n"
                      "55d0c000-55d0d000 rw-p 00000000 00:00 0 [heap]\n"
                      "7f001000-7f002000 rw-p 00000000 00:00 0 \n"
                      "7f002000-7f003000 r--s 00000000 103:00102 132    /home/x (deleted)\n"
                      "7f003000-7f004000 rw-s 00000000 00:01 1025 anon_inode:[gpu]\n"
                      "7f004000-7f005000 r--p 00000000 0801 131 /no/device\n"
                      "7f005000-7f006000\n\n"
                      "7f006000-7f007000 r--p 00000000 08:01 131 /usr/bin/a b\\012c",
                      [&](const MappedFile& mapped) {
                          found.push_back(std::string(mapped.range) + " " + std::to_string(mapped.device)
                                          + ":" + std::to_string(mapped.inode) + " "
                                          + std::string(mapped.path));
                      });
    EXPECT_EQ(found, (std::vector<std::string>{"55d0a000-55d0b000 2049:131 /usr/bin/a b\\012c",
                                               "7f002000-7f003000 1114882:132 /home/x (deleted)",
                                               "7f006000-7f007000 2049:131 /usr/bin/a b\\012c"}));
}

TEST(ProcessText, FindsTheSocketsThatArePlacesToTurnTo) {
    std::vector<std::string> found;
    forEachBoundSocket("Num       RefCount Protocol Flags    Type St Inode Path\n"
                       "0000000000000000: 00000002 00000000 00010000 0001 01 18310 /run/user/0/a b\n"
                       "0000000000000000: 00000003 00000000 00000000 0001 03 18311 /run/user/0/a b\n"
                       "0000000000000000: 00000002 00000000 00010000 0001 01 18312 @/abstract\n"
                       "0000000000000000: 00000002 00000000 00010000 0001 01 18313 relative/path\n"
                       "0000000000000000: 00000002 00000000 00000000 0002 01 18314 /run/log\n"
                       "0000000000000000: 00000003 00000000 00000000 0001 03 18315\n"
                       "ffff8881: 00000002 00000000 00010000 0005 01 4294967296 /run/packets",
                       [&](const BoundSocket& bound) {
                           found.push_back(std::to_string(bound.inode) + " " + std::string(bound.path));
                       });
    EXPECT_EQ(found, (std::vector<std::string>{"18310 /run/user/0/a b", "18314 /run/log",
                                               "4294967296 /run/packets"}));
    EXPECT_EQ(socketInode("socket:[18310]"), 18310u);
    for (const auto* other : {"socket:[]", "socket:[18310", "pipe:[18310]", "/socket:[18310]", "socket:[1x]"})
        EXPECT_EQ(socketInode(other), std::nullopt) << other;
}

} // namespace
} // namespace orbel::platform
