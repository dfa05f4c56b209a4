#include "Find/SystemPlaces.h"
#include "Scan/TreeScanner.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

TEST(SystemPlaces, TheLargestFirstAndNothingSmall) {
    const ScanCancellation nobodyCancels;
    const auto source = [](const std::string& home, const platform::MeasureFolder&) {
        EXPECT_EQ(home, "/home/ann");
        std::vector<SystemPlace> places(4);
        places[0].bytes = 99'999'999;
        places[1].bytes = 100'000'000;
        places[2].bytes = 300'000'000;
        return places;
    };
    const auto found = SystemPlaces::find("/home/ann", FileTree(), nobodyCancels, source);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].bytes, 300'000'000U);
    EXPECT_EQ(found[1].bytes, 100'000'000U);
    ScanCancellation cancelled;
    cancelled.cancel();
    EXPECT_EQ(SystemPlaces::find("/home/ann", FileTree(), cancelled, source).size(), 0U);
}

TEST(SystemPlaces, ATreeIsBelievedWhereItKnowsAll) {
    const test::TemporaryFolder disk;
    disk.file("store/a", 70'000);
    disk.file("linked/a", 70'000);
    disk.hardLink("other/a", "linked/a");
    const ScanCancellation nobodyCancels;
    auto tree = TreeScanner::scan(disk.path(), 1, nobodyCancels, nullptr).tree;
    const auto node = [&](std::string_view path) {
        return tree.index(disk.path(path), PathCanonicalizer::shared()).value();
    };
    const auto size = [&](const std::string& path) {
        platform::FolderSize measured;
        static_cast<void>(SystemPlaces::find("", tree, nobodyCancels,
                                             [&](const std::string&, const platform::MeasureFolder& measure) {
                                                 measured = measure(disk.path(path));
                                                 return std::vector<SystemPlace>();
                                             }));
        return measured;
    };
    const auto bytes = test::blocksOf(disk.path("store/a"));
    disk.file("store/b", 50'000);
    EXPECT_EQ(size("store").bytes, bytes) << "from the tree, although it changed since";
    EXPECT_EQ(size("linked").bytes + size("other").bytes, 2 * bytes) << "as if each stood alone";
    EXPECT_TRUE(size("store").isComplete);
    tree.nodeFlags[node("store")] |= NodeFlags::unreadable.rawValue;
    tree.recomputeTotals();
    EXPECT_FALSE(size("store").isComplete);
    EXPECT_FALSE(size("nowhere").isComplete);
}

} // namespace
} // namespace orbel
