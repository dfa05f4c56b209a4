#include "Delete/RepositoryNote.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/TreeScanner.h"
#include "Support/RunProgram.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

class RepositoryNote : public ::testing::Test {
protected:
    void SetUp() override {
        if (test::runProgram({"git", "--version"}).status != 0)
            GTEST_SKIP() << "needs git";
    }

    /// Runs git as a user would, in a repository of the home.
    void git(const std::string& folder, std::vector<std::string> words) const {
        words.insert(words.begin(),
                     {"git", "-C", home.path(folder), "-c", "user.name=me", "-c", "user.email=me@here"});
        const auto run = test::runProgram(std::move(words));
        ASSERT_EQ(run.status, 0) << run.errors;
    }
    /// A repository with one commit that a remote has too.
    void makePushed(const std::string& folder) const {
        home.folder(folder);
        git(folder, {"init", "-q", "-b", "main"});
        home.file(folder + "/file", 10);
        home.file(folder + "/.gitignore", std::string_view("*.o\n"));
        git(folder, {"add", "."});
        git(folder, {"commit", "-q", "-m", "first"});
        const auto remote = home.path("remote-of-" + std::string(folder.substr(folder.rfind('/') + 1)));
        ASSERT_EQ(test::runProgram({"git", "init", "-q", "--bare", remote}).status, 0);
        git(folder, {"remote", "add", "origin", remote});
        git(folder, {"push", "-q", "origin", "main"});
    }
    std::string noteOf(const std::string& folder) const {
        const ScanCancellation nobodyCancels;
        const auto tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;
        return repositoryNote(tree, tree.index(home.path(folder), PathCanonicalizer::shared()).value())
            .value_or("nothing");
    }

    test::TemporaryFolder home;
};

TEST_F(RepositoryNote, TellsWhatIsNowhereElse) {
    constexpr auto commits = "Holds commits that are on no remote";
    makePushed("work/one");
    home.file("work/one/made.o", 10);
    EXPECT_EQ(noteOf("work/one"), "nothing");

    std::filesystem::last_write_time(home.path("work/one/file"),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    EXPECT_EQ(noteOf("work/one"), "May hold changes that are not committed");
    home.file("work/one/file", 11);
    EXPECT_EQ(noteOf("work"), "Holds changes that are not committed") << "at any depth";
    git("work/one", {"commit", "-q", "-a", "-m", "second"});
    EXPECT_EQ(noteOf("work/one"), commits);
    home.file("work/one/new", 10);
    EXPECT_EQ(noteOf("work/one"), std::string(commits) + ", and changes that are not committed");
    git("work/one", {"add", "new"});
    git("work/one", {"stash", "-q"});
    git("work/one", {"push", "-q", "origin", "main"});
    EXPECT_EQ(noteOf("work/one"), commits) << "of a stash too";

    home.folder("work/fresh");
    git("work/fresh", {"init", "-q"});
    EXPECT_EQ(noteOf("work/fresh"), "nothing");
    home.file("work/fresh/file", 10);
    git("work/fresh", {"add", "file"});
    EXPECT_EQ(noteOf("work/fresh"), "Holds changes that are not committed");
    EXPECT_EQ(noteOf("remote-of-one"), commits) << "a bare repository that others push to";
    home.folder("plain/refs");
    EXPECT_EQ(noteOf("plain"), "nothing");
}

TEST_F(RepositoryNote, RunsNothingThatTheRepositoryNames) {
    makePushed("work/trap");
    const auto trap = home.file("trap", "#!/bin/sh\ntouch '" + home.path("sprung") + "'\ncat\n");
    std::filesystem::permissions(trap, std::filesystem::perms::owner_all);
    home.file("work/trap/.gitattributes", std::string_view("* filter=trap\n"));
    for (const auto* name : {"core.fsmonitor", "filter.trap.clean", "filter.trap.process", "core.sshCommand",
                             "core.pager", "diff.external", "core.alternateRefsCommand"})
        git("work/trap", {"config", name, trap});
    for (const auto* hook : {"post-index-change", "reference-transaction"})
        std::filesystem::copy(trap, home.path("work/trap/.git/hooks/") + hook);
    home.file("work/trap/file", 10);
    EXPECT_NE(noteOf("work/trap"), "nothing");
    EXPECT_FALSE(std::filesystem::exists(home.path("sprung")));
    test::runProgram({"git", "-C", home.path("work/trap"), "status"});
    EXPECT_TRUE(std::filesystem::exists(home.path("sprung"))) << "else this is no trap";
}

} // namespace
} // namespace orbel
