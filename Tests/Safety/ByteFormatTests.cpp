#include "Safety/ByteFormat.h"

#include <gtest/gtest.h>
#include <limits>
#include <locale>

namespace orbel {
namespace {

TEST(ByteFormat, ChoosesTheUnitBeforeItRounds) {
    const std::pair<std::uint64_t, const char*> cases[] = {
        {0, "0 B"},
        {999, "999 B"},
        {1000, "1 KB"},
        {1499, "1 KB"},
        {1500, "2 KB"},
        {2500, "2 KB"},
        {999'999, "1000 KB"},
        {1'000'000, "1 MB"},
        {12'600'000, "13 MB"},
        {999'999'999, "1000 MB"},
        {1'000'000'000, "1.0 GB"},
        {1'234'567'890, "1.2 GB"},
        {999'999'999'999, "1000.0 GB"},
        {1'000'000'000'000, "1.00 TB"},
        {2'500'000'000'000, "2.50 TB"},
        {std::numeric_limits<std::uint64_t>::max(), "18446744.07 TB"}};
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(ByteFormat::string(bytes), text) << bytes;
}

TEST(ByteFormat, ComesInTwoPartsAndWithASign) {
    EXPECT_EQ(ByteFormat::parts(999).value, "999");
    EXPECT_EQ(ByteFormat::parts(999).unit, "B");
    EXPECT_EQ(ByteFormat::parts(1'234'567'890).value, "1.2");
    EXPECT_EQ(ByteFormat::parts(1'234'567'890).unit, "GB");
    EXPECT_EQ(ByteFormat::signedString(-1500), "\xE2\x88\x92"
                                               "2 KB");
    EXPECT_EQ(ByteFormat::signedString(0), "0 B");
    EXPECT_EQ(ByteFormat::signedString(1500), "2 KB");
    EXPECT_DEATH(ByteFormat::signedString(std::numeric_limits<std::int64_t>::min()), "negated");
}

TEST(ByteFormat, TakesNoHeedOfTheLocale) {
    struct German : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const auto before = std::locale::global(std::locale(std::locale::classic(), new German));
    EXPECT_EQ(ByteFormat::string(1'234'567'890), "1.2 GB");
    EXPECT_EQ(ByteFormat::string(std::numeric_limits<std::uint64_t>::max()), "18446744.07 TB");
    std::locale::global(before);
}

} // namespace
} // namespace orbel
