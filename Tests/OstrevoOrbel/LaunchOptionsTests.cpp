#include "Launch/LaunchOptions.h"
#include "Scan/VolumeInfo.h"

#include <gtest/gtest.h>
#include <vector>

namespace orbel {
namespace {

LaunchOptions optionsOf(std::vector<std::string> words) {
    words.insert(words.begin(), "/usr/bin/ostrevo-orbel");
    return LaunchOptions(words);
}

TEST(LaunchOptions, ReadsEverySwitch) {
    const auto options =
        optionsOf({"--open", "map", "--scan", "/a b", "--quit-after-scan", "--diagnostics", "d.json",
                   "--snapshot", "s.png", "--snapshot-delay", "2.5", "--scan-delay", "1", "--simulate-hover",
                   "+3", "--select-app", "Tool", "--open-scan", "kept.orbel"});
    EXPECT_EQ(options.openScreen, Screen::map);
    EXPECT_EQ(options.scanPath, "/a b");
    EXPECT_TRUE(options.quitAfterScan);
    EXPECT_EQ(options.diagnosticsPath, "d.json");
    EXPECT_EQ(options.snapshotPath, "s.png");
    EXPECT_EQ(options.snapshotDelay, 2.5);
    EXPECT_EQ(options.scanDelay, 1);
    EXPECT_EQ(options.simulatedHovers, 3);
    EXPECT_EQ(options.selectApp, "Tool");
    EXPECT_EQ(options.openScanPath, "kept.orbel");
    EXPECT_FALSE(options.allowWithoutFullDiskAccess);
}

TEST(LaunchOptions, FallsBackWhereAValueIsMissingOrNotOne) {
    const auto none = optionsOf({});
    EXPECT_EQ(none.openScreen, std::nullopt);
    EXPECT_EQ(none.scanPath, std::nullopt);
    EXPECT_EQ(none.snapshotDelay, std::nullopt);
    EXPECT_FALSE(none.quitAfterScan);

    EXPECT_EQ(optionsOf({"--open", "Map"}).openScreen, std::nullopt);
    EXPECT_EQ(optionsOf({"--open", "tidy"}).openScreen, Screen::tidy);
    EXPECT_EQ(optionsOf({"--scan"}).scanPath, std::nullopt);
    EXPECT_EQ(optionsOf({"--scan", "Volume"}).scanPath, "Volume");
    EXPECT_EQ(optionsOf({"--scan", "volume"}).scanPath, VolumeInfo::dataVolumePath());
    EXPECT_EQ(optionsOf({"--snapshot-delay", "abc"}).snapshotDelay, std::nullopt);
    EXPECT_EQ(optionsOf({"--snapshot-delay", "1.5s"}).snapshotDelay, std::nullopt);
    EXPECT_EQ(optionsOf({"--scan-delay", "abc"}).scanDelay, 0);
    for (const auto* hovers : {"3.5", "", "+-3", "99999999999999999999", " 3"})
        EXPECT_EQ(optionsOf({"--simulate-hover", hovers}).simulatedHovers, 0) << hovers;
    EXPECT_EQ(optionsOf({"--simulate-hover", "-4"}).simulatedHovers, -4);
}

TEST(LaunchOptions, TakesTheFirstOccurrenceAndAnyWordAsAValue) {
    EXPECT_EQ(optionsOf({"--scan", "/a", "--scan", "/b"}).scanPath, "/a");
    const auto options = optionsOf({"--scan", "--quit-after-scan"});
    EXPECT_EQ(options.scanPath, "--quit-after-scan");
    EXPECT_TRUE(options.quitAfterScan);
}

} // namespace
} // namespace orbel
