#include "Scan/Coverage.h"
#include "Scan/VolumeInfo.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orbel {
namespace {

using nlohmann::json;

TEST(VolumeInfo, NeverGoesBelowZero) {
    const VolumeInfo volume{.total = 100, .free = 60, .used = 50, .availableForImportantUsage = 55};
    EXPECT_EQ(volume.purgeable(), 0);
    EXPECT_EQ(volume.otherVolumes(), 0);
    const VolumeInfo ordinary{.total = 100, .free = 30, .used = 50, .availableForImportantUsage = 45};
    EXPECT_EQ(ordinary.purgeable(), 15);
    EXPECT_EQ(ordinary.otherVolumes(), 20);
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ((VolumeInfo{.total = 100, .free = most, .used = most}.otherVolumes()), 0);
}

TEST(VolumeInfo, ReadsTheVolumeOfAPath) {
    const test::TemporaryFolder home;
    const auto volume = VolumeInfo::read(home.path());
    ASSERT_TRUE(volume);
    EXPECT_GT(volume->total, 0);
    EXPECT_LE(volume->used, volume->total);
    EXPECT_EQ(json(*volume).get<VolumeInfo>(), *volume);
    EXPECT_EQ(json(*volume).size(), 4);
    EXPECT_FALSE(VolumeInfo::read(home.path("missing")));
    EXPECT_TRUE(VolumeInfo::dataVolumePath().starts_with('/'));
}

TEST(Coverage, SetsTheTreeAgainstTheVolume) {
    test::TreeBuilder builder;
    builder.file(0, "file", 70);
    builder.tree.unreadableCount = 1;
    builder.tree.datalessCount = 2;
    builder.tree.otherVolumeCount = 3;
    const FileTree tree = builder.build();
    const Coverage less(100, tree);
    EXPECT_EQ(less.notMeasured(), 30);
    EXPECT_FALSE(less.measuredMoreThanUsed());
    const Coverage more(60, tree);
    EXPECT_EQ(more.notMeasured(), 0);
    EXPECT_TRUE(more.measuredMoreThanUsed());

    const json expected{{"used", 100},
                        {"measured", 70},
                        {"unreadableEntries", 1},
                        {"cloudFilesNotDownloaded", 2},
                        {"otherVolumesSkipped", 3}};
    EXPECT_EQ(json(less), expected);
    EXPECT_EQ(expected.get<Coverage>(), less);
}

} // namespace
} // namespace orbel
