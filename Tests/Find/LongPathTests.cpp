#include "Find/DuplicateFinder.h"
#include "Find/EmptyFolderFinder.h"
#include "Find/LargeOldQuery.h"
#include "Scan/TreeScanner.h"
#include "Support/ChildProcess.h"
#include "Support/Faults.h"
#include "Support/Policies.h"
#include "Support/ProgramHome.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {
namespace {

using test::TemporaryFolder;

constexpr auto tooLong = "Its path is too long to be moved from here; move a folder above it";

/// Makes "docs/dd…/dd…/…", deeper than the system takes a path, with two equal files and an empty folder at
/// its end, and returns the path of that end.
std::string makeDeepEnd(const TemporaryFolder& home) {
    const std::string name(250, 'd');
    auto path = home.folder("docs");
    int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    while (path.size() < 4096) {
        EXPECT_EQ(::mkdirat(folder, name.c_str(), 0700), 0);
        const int inner = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(folder);
        folder = inner;
        path += "/" + name;
    }
    for (const auto* file : {"one.mkv", "two.mkv"}) {
        const int made = ::openat(folder, file, O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        EXPECT_EQ(::write(made, path.data(), path.size()), static_cast<ssize_t>(path.size()));
        ::close(made);
    }
    EXPECT_EQ(::mkdirat(folder, "nothing in it", 0700), 0);
    ::close(folder);
    return path;
}

TEST(LongPath, IsInEveryListWithTheReasonWhyItStays) {
    const TemporaryFolder home;
    const auto end = makeDeepEnd(home);
    const SafetyPolicy policy(home.path(), test::linuxOptions());
    const ScanCancellation nobodyCancels;
    const auto tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;

    const LargeOldQuery query{.minimumBytes = 1, .unusedFor = std::nullopt};
    const auto large = query.run(tree, policy, currentDate(), {});
    ASSERT_EQ(large.size(), 2);
    for (const auto& row : large)
        EXPECT_EQ(row.item.blockedReason, tooLong) << "and nothing has changed since the scan";

    const auto empty = EmptyFolderFinder().run(tree, policy, currentDate());
    ASSERT_EQ(empty.size(), 1);
    EXPECT_EQ(empty[0].item.path, end + "/nothing in it");
    EXPECT_EQ(empty[0].item.blockedReason, tooLong);
    EXPECT_FALSE(empty[0].item.preselected);

    const auto groups = DuplicateFinder{1}.run(tree, home.path());
    ASSERT_EQ(groups.size(), 1);
    EXPECT_EQ(DuplicateGroup::itemOf(groups[0].files[0], policy)->blockedReason, tooLong);
    EXPECT_FALSE(FileStamp::of(end + "/gone"));
}

TEST(LongPath, AndWhatMayNotBeEnteredIsNotCalledGone) {
    const test::ProgramHome home;
    const auto reasonOf = [&](const std::string& path) {
        return home.json({"--trash", "--dry-run", path}, 1)["skipped"][0]["reason"];
    };
    EXPECT_EQ(reasonOf(makeDeepEnd(home) + "/one.mkv"), tooLong);
    EXPECT_EQ(reasonOf(home.path("docs/missing")), "Already gone");

    const TemporaryFolder other;
    const auto file = other.file("docs/closed/file");
    ASSERT_EQ(::chmod(other.path().c_str(), 0755), 0);
    const test::Restricted closed(other.path("docs/closed"), 0);
    EXPECT_TRUE(test::inChildProcess([&] {
        const SafetyPolicy policy(other.path(), test::linuxOptions());
        const DuplicateFile copy{.path = file, .stamp = {}};
        if (test::isRoot())
            test::becomeOtherUser();
        EXPECT_EQ(DuplicateGroup::itemOf(copy, policy)->blockedReason,
                  "A folder above it may not be entered");
    }));
}

} // namespace
} // namespace orbel
