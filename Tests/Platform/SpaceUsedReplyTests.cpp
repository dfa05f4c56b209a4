#include "Platform/macOS/Portable/SpaceUsedReply.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <span>

namespace orbel::platform {
namespace {

std::array<std::byte, 64> reply(std::uint32_t length, std::int64_t bytes) {
    std::array<std::byte, 64> raw{};
    std::memcpy(raw.data(), &length, sizeof length);
    std::memcpy(raw.data() + sizeof length, &bytes, sizeof bytes);
    return raw;
}

TEST(SpaceUsedReply, OnlyAWholePositiveFigureCounts) {
    EXPECT_EQ(spaceUsedIn(reply(12, 1)), 1U);
    EXPECT_EQ(spaceUsedIn(reply(16, 494'384'795'648)), 494'384'795'648U);
    EXPECT_EQ(spaceUsedIn(reply(11, 5)), std::nullopt);
    EXPECT_EQ(spaceUsedIn(reply(0, 5)), std::nullopt);
    EXPECT_EQ(spaceUsedIn(reply(12, 0)), std::nullopt);
    EXPECT_EQ(spaceUsedIn(reply(12, -1)), std::nullopt);

    const auto whole = reply(12, 5);
    EXPECT_EQ(spaceUsedIn(std::span(whole).first(12)), 5U);
    EXPECT_EQ(spaceUsedIn(std::span(whole).first(11)), std::nullopt);
    EXPECT_EQ(spaceUsedIn({}), std::nullopt);
}

} // namespace
} // namespace orbel::platform
