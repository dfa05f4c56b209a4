#include "Safety/PathCanonicalizer.h"
#include "Scan/Rescan.h"
#include "Scan/TreeScanner.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using Kind = RescanTarget::Kind;

struct RescanOn : testing::Test {
    void SetUp() override {
        home.file("a/b/c/film.mkv");
        home.file("a/other.mkv");
        tree = TreeScanner::scan(home.path(), std::nullopt, ScanCancellation(), nullptr).tree;
    }
    NodeIndex at(const char* path) const {
        return tree.index(home.path(path), PathCanonicalizer::shared()).value();
    }
    void expect(const char* asked, Kind kind, const char* path) const {
        EXPECT_EQ(rescanTarget(tree, at(asked)), (RescanTarget{.kind = kind, .node = at(path)}));
    }

    test::TemporaryFolder home;
    FileTree tree;
};

TEST_F(RescanOn, MeasuresTheNearestFolderThatIsStillWhatItWas) {
    expect("a/b", Kind::folder, "a/b");
    expect("a/b/c/film.mkv", Kind::folder, "a/b/c");
    expect("", Kind::wholeTree, "");
    fs::rename(home.path("a/b"), home.path("moved"));
    home.file("a/b", "a file by now");
    expect("a/b", Kind::folder, "a");
    fs::remove(home.path("a/b"));
    home.link("a/b", home.path("moved"));
    expect("a/b/c", Kind::folder, "a"); // what it is reached through leads elsewhere
    fs::remove(home.path("a/b"));
    expect("a/b/c", Kind::gone, "a/b");
    fs::remove_all(home.path("a"));
    expect("a/b/c", Kind::gone, "a");
}

TEST_F(RescanOn, LeavesOtherVolumesToTheFolderThatHoldsThem) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    EXPECT_TRUE(test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(home.path("a/b").c_str());
        home.file("a/b/c/film.mkv");
        expect("a/b/c", Kind::folder, "a");
        expect("a/b", Kind::folder, "a");
    }));
}

} // namespace
} // namespace orbel
