#include "Delete/LiveTrash.h"
#include "Support/DesktopSession.h"
#include "Support/FakeMoves.h"
#include "Support/RunProgram.h"
#include "Support/TrashHome.h"
#include "Util/ReadFile.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::TrashHome;
using Names = std::vector<std::string>;

/// The desktop's own tools for the Trash, run in a session of their own whose home is the test's.
class DesktopTrash : public testing::Test {
protected:
    void SetUp() override {
        const auto found = test::runProgram(
            {"sh", "-c", "command -v dbus-run-session && command -v gio && command -v trash-list"});
        // Where the service behind it is not installed, gio does not know what trash:/// is.
        if (found.status != 0 || inSession("gio info trash:///").empty())
            GTEST_SKIP() << "needs dbus-run-session, gio, gvfs and trash-list";
    }

    /// What a shell command in the session prints.
    std::string inSession(const std::string& command) const {
        return test::runProgram(test::desktopSession(home.path(), command)).output;
    }

    /// Where the file manager says that each item in this Trash came from, with the item's address there;
    /// asked until there are as many as expected, because the service needs a moment to find what is there.
    std::map<std::string, std::string> listed(std::size_t expected) const {
        std::istringstream output(inSession("for try in 1 2 3 4 5 6 7 8 9; do\n"
                                            "    gio trash --list | grep -F \"$HOME/\" > \"$HOME/list\"\n"
                                            "    [ $(wc -l < \"$HOME/list\") -ne "
                                            + std::to_string(expected)
                                            + " ] || break\n"
                                              "    sleep 0.5\n"
                                              "done; cat \"$HOME/list\""));
        std::map<std::string, std::string> addresses;
        for (std::string line; std::getline(output, line);)
            addresses[line.substr(line.find('\t') + 1)] = line.substr(0, line.find('\t'));
        return addresses;
    }

    void moveToTrash(const std::string& path) const {
        LiveTrash trash(home.trash());
        const auto moved = test::moveToTrash(trash, path);
        EXPECT_TRUE(moved) << moved.error();
    }

    const TrashHome home;
};

TEST_F(DesktopTrash, ListsAndRestoresWhatWasMoved) {
    const Names plain{home.file("plain.txt", "mine"), home.file("a b%c#d?.txt"), home.folder("folder"),
                      home.file(std::string(240, 'n') + ".txt")};
    home.file("folder/inside");
    const Names odd{home.file("\xC3\xA9t\xC3\xA9 \xE2\x82\xAC.txt"), home.file("two\nlines")};
    for (const auto& path : plain)
        moveToTrash(path);
    for (const auto& path : odd)
        moveToTrash(path);

    const auto lines = inSession("trash-list");
    auto addresses = listed(6);
    for (const auto& path : plain) {
        EXPECT_TRUE(lines.contains(" " + path + "\n")) << path << " not in\n" << lines;
        EXPECT_TRUE(addresses.contains(path)) << path;
    }
    for (const auto& path : odd)
        EXPECT_TRUE(lines.contains(" " + path + "\n")) << path << " not in\n" << lines;

    for (const auto& path : plain)
        inSession("gio trash --restore '" + addresses[path] + "'");
    EXPECT_EQ(readFile(plain[0]), "mine");
    EXPECT_TRUE(fs::exists(home.path("folder/inside")));
    for (const auto& path : plain)
        EXPECT_TRUE(fs::exists(path)) << path;
    EXPECT_EQ(home.contents().size(), 2 * odd.size()) << "items and info files of the others only";
}

TEST_F(DesktopTrash, LetsGoOfWhatWasPutBack) {
    const auto path = home.file("a b%c.txt", "mine");
    inSession("gio trash '" + path + "'");
    if (fs::exists(path))
        GTEST_SKIP() << "gio moves nothing to the Trash on a file system such as that of " << path;
    ASSERT_EQ(listed(1).size(), 1u);
    const auto moved = test::putBack(home.trashed("a b%c.txt"), path);
    ASSERT_TRUE(moved) << moved.error();
    EXPECT_EQ(readFile(path), "mine");
    EXPECT_EQ(home.contents(), Names{});
    EXPECT_FALSE(inSession("trash-list").contains(path));
}

} // namespace
} // namespace orbel
