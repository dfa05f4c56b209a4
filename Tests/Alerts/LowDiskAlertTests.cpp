#include "Alerts/LowDiskAlert.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orbel {
namespace {

using std::chrono::minutes;
using Time = std::chrono::system_clock::time_point;

TEST(LowDiskAlert, TellsOnceInHalfAnHourWhileTheDiskStaysLow) {
    LowDiskAlert alert;
    const LowDiskSettings on{.enabled = true};
    const Time start;
    int told = 0;
    for (int check = 0; check < 7; ++check)
        told += alert.evaluate(1'000'000'000, on, start + check * minutes(5)) ? 1 : 0;
    EXPECT_EQ(told, 2) << "at the first check and at the one thirty minutes later";
}

TEST(LowDiskAlert, TellsOnlyBelowTheThresholdAndOnlyWhenItIsOn) {
    LowDiskAlert alert;
    const LowDiskSettings on{.enabled = true};
    EXPECT_FALSE(alert.evaluate(on.threshold, on, Time()));
    EXPECT_FALSE(alert.evaluate(0, {.enabled = false}, Time()));
    EXPECT_EQ(
        alert.evaluate(9'999'999'999, on, Time()),
        (LowDiskAlert::Message{.title = "Disk space is low",
                               .body = "10.0 GB free. Open Ostrevo Vanto to see where the space went."}));
}

TEST(LowDiskAlert, KeepsItsCooldownWhenSpaceWasFreeInBetween) {
    LowDiskAlert alert;
    const LowDiskSettings on{.enabled = true};
    EXPECT_TRUE(alert.evaluate(1, on, Time()));
    EXPECT_FALSE(alert.evaluate(on.threshold * 2, on, Time() + minutes(5)));
    EXPECT_FALSE(alert.evaluate(1, on, Time() + minutes(10)));
    EXPECT_TRUE(alert.evaluate(1, on, Time() + minutes(30)));
}

TEST(LowDiskSettings, AreKeptAsJsonAndFallBackToTheDefaults) {
    const LowDiskSettings chosen{.enabled = true, .threshold = 50'000'000'000};
    const nlohmann::json json = chosen;
    EXPECT_EQ(json.dump(), R"({"enabled":true,"threshold":50000000000})");
    EXPECT_EQ(LowDiskSettings::fromText(json.dump()), chosen);
    for (const auto* text : {"", "{", "[]", R"({"enabled":true})", R"({"enabled":1,"threshold":5})",
                             R"({"enabled":true,"threshold":-1})"})
        EXPECT_EQ(LowDiskSettings::fromText(text), LowDiskSettings()) << text;
}

} // namespace
} // namespace orbel
