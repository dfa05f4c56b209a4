#include "Find/DuplicateFinder.h"
#include "Platform/FileContent.h"
#include "Scan/TreeScanner.h"
#include "Support/ChildProcess.h"
#include "Support/Policies.h"
#include "Support/RunProgram.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;

class DuplicateGroupTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const auto* name : {"docs/a", "docs/b", "docs/c"})
            home.file(name, 10'000);
        const ScanCancellation nobodyCancels;
        const auto tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;
        group = DuplicateFinder{1}.run(tree, home.path()).at(0);
        group.suggestedKeep = home.path("docs/a");
    }

    std::optional<std::vector<DeletionItem>> items(const std::vector<std::string>& ticked) const {
        std::unordered_set<std::string> paths;
        for (const auto& name : ticked)
            paths.insert(home.path(name));
        return group.deletionItems(paths, {home.path(), test::linuxOptions()});
    }
    DeletionItem item(const std::string& ticked) const { return items({ticked}).value().at(0); }

    TemporaryFolder home;
    DuplicateGroup group;
};

TEST_F(DuplicateGroupTest, EveryItemCarriesTheCopyThatStays) {
    const auto both = items({"docs/b", "docs/c", "docs/not in the group"}).value();
    ASSERT_EQ(both.size(), 2);
    for (const auto& item : both) {
        EXPECT_EQ(item.id, "duplicates:" + item.path);
        EXPECT_EQ(item.title, fs::path(item.path).filename());
        EXPECT_EQ(item.scanStamp, FileStamp::of(item.path));
        EXPECT_EQ(item.estimatedBytes, platform::fileStatus(item.path)->allocatedBytes);
        EXPECT_EQ(item.keep, (KeptCopy{home.path("docs/a"), *FileStamp::of(home.path("docs/a"))}));
        EXPECT_EQ(item.blockedReason, std::nullopt);
        EXPECT_EQ(item.note, std::nullopt);
        EXPECT_FALSE(item.preselected);
    }
    EXPECT_NE(item("docs/a").keep->path, home.path("docs/a")) << "the suggestion is ticked itself";
    EXPECT_EQ(items({"docs/a", "docs/b"})->at(0).keep->path, home.path("docs/c"));
    EXPECT_EQ(items({"docs/a", "docs/b", "docs/c"}), std::nullopt) << "one copy always stays";
    EXPECT_TRUE(items({})->empty());
}

TEST_F(DuplicateGroupTest, ACopyThatChangedIsNeitherMovedNorReliedOn) {
    home.file("docs/a", 10'001);
    EXPECT_EQ(item("docs/a").blockedReason, "Changed since the scan — scan again");
    EXPECT_EQ(item("docs/b").keep->path, home.path("docs/c")) << "another copy stands in";
    EXPECT_EQ(item("docs/b").blockedReason, std::nullopt);
    fs::remove(home.path("docs/c"));
    EXPECT_EQ(item("docs/b").blockedReason, "The copy you are keeping changed or is gone");
    EXPECT_TRUE(items({"docs/c"})->empty()) << "gone";
}

TEST_F(DuplicateGroupTest, NothingTakesThePlaceOfTheCopyThatWasChosenToStay) {
    const SafetyPolicy policy(home.path(), test::linuxOptions());
    const auto keeping = [&](const char* kept) {
        return group.deletionItems({home.path("docs/b")}, policy, home.path(kept));
    };
    EXPECT_EQ(keeping("docs/c")->at(0).keep->path, home.path("docs/c"));
    EXPECT_EQ(keeping("docs/b"), std::nullopt) << "it is ticked";
    EXPECT_EQ(keeping("docs/d"), std::nullopt) << "it is not in the group";
    home.file("docs/c", 10'001);
    EXPECT_EQ(keeping("docs/c")->at(0).blockedReason, "The copy you are keeping changed or is gone");
}

TEST_F(DuplicateGroupTest, TellsWhatStandsAgainstAMoveAndWhatItFrees) {
    home.hardLink("docs/other name", "docs/b");
    EXPECT_EQ(item("docs/b").note, "Frees nothing while other links exist");
    group.files[1].mayShareBlocks = group.files[2].mayShareBlocks = group.files[0].mayShareBlocks = true;
    EXPECT_EQ(item("docs/b").note, "May share storage; moving it may free less");

    group.files[0].path = home.file("docs/login.keychain", 10'000);
    group.files[0].stamp = *FileStamp::of(group.files[0].path);
    EXPECT_EQ(item("docs/login.keychain").blockedReason,
              "Contains protected data (a photo library, keychain or backup)");
    group.files[0].path = home.file("loose", 10'000);
    group.files[0].stamp = *FileStamp::of(group.files[0].path);
    EXPECT_EQ(item("loose").blockedReason, "Too close to the home folder");
}

TEST(SharedBlocks, AreToldWhereTheFileSystemHasThem) {
    if (!test::isRoot())
        GTEST_SKIP() << "only root can mount a file system with shared blocks";
    const TemporaryFolder home;
    const auto image = home.file("image", 0);
    const auto mounted = home.folder("mounted");
    fs::resize_file(image, 160 << 20);
    if (test::runProgram({"mkfs.btrfs", "-q", image}).status != 0)
        GTEST_SKIP() << "no mkfs.btrfs here (package btrfs-progs)";
    EXPECT_TRUE(test::inChildProcess([&] {
        test::useOwnMountTable();
        ASSERT_EQ(test::runProgram({"mount", "-o", "loop", image, mounted}).status, 0);
        home.file("mounted/alone", 300'000);
        home.file("mounted/original", 300'000);
        const auto clone = home.path("mounted/clone");
        ASSERT_EQ(test::runProgram({"cp", "--reflink=always", home.path("mounted/original"), clone}).status,
                  0);
        ASSERT_EQ(test::runProgram({"sync", "-f", mounted}).status, 0);
        EXPECT_FALSE(platform::sharesBlocks(home.path("mounted/alone")));
        EXPECT_TRUE(platform::sharesBlocks(home.path("mounted/original")));
        EXPECT_TRUE(platform::sharesBlocks(clone));
        EXPECT_FALSE(platform::sharesBlocks(mounted));

        // A clone is still a duplicate, and its item says what that means.
        DuplicateGroup group{.bytes = 300'000, .files = {}, .suggestedKeep = home.path("mounted/alone")};
        for (const auto& path : {home.path("mounted/alone"), clone})
            group.files.push_back({.path = path, .stamp = *FileStamp::of(path)});
        const auto items = group.deletionItems({clone}, {home.path(), test::linuxOptions()}).value();
        EXPECT_EQ(items.at(0).note, "May share storage; moving it may free less");
        EXPECT_TRUE(DuplicateFinder::bytesEqual(home.path("mounted/original"), clone));
    }));
    const auto plain = home.file("plain", 300'000);
    EXPECT_FALSE(platform::sharesBlocks(plain));
    EXPECT_FALSE(platform::sharesBlocks(home.path("missing")));
}

} // namespace
} // namespace orbel
