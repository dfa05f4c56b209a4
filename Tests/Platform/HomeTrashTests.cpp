#include "Platform/HomeTrash.h"
#include "Support/ChildProcess.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace orbel::platform {
namespace {

TEST(HomeTrash, LiesInTheDataFolderWhenThatIsAbsolute) {
    test::inChildProcess([] {
        ::unsetenv("XDG_DATA_HOME");
        EXPECT_EQ(homeTrash("/home/ann"), "/home/ann/.local/share/Trash");
        for (const auto* relative : {"", "data", "./data", "~/data"}) {
            ::setenv("XDG_DATA_HOME", relative, 1);
            EXPECT_EQ(homeTrash("/home/ann"), "/home/ann/.local/share/Trash") << relative;
        }
        ::setenv("XDG_DATA_HOME", "/data/", 1);
        EXPECT_EQ(homeTrash("/home/ann"), "/data/Trash");
        EXPECT_EQ(trashedItemsFolder("/data/Trash"), "/data/Trash/files");
    });
}

} // namespace
} // namespace orbel::platform
