#include "Util/Iso8601.h"
#include "Util/Uuid.h"

#include <gtest/gtest.h>
#include <set>

namespace orbel {
namespace {

using namespace std::chrono;

Date dateOf(std::int64_t microsecondsSince1970) {
    return Date(microseconds(microsecondsSince1970));
}

TEST(Iso8601, WritesWholeSecondsInUtcAndNeverRoundsUp) {
    EXPECT_EQ(iso8601(dateOf(0)), "1970-01-01T00:00:00Z");
    EXPECT_EQ(iso8601(dateOf(1'738'314'300'999'999)), "2025-01-31T09:05:00Z");
    EXPECT_EQ(iso8601(dateOf(-1)), "1969-12-31T23:59:59Z");
    EXPECT_EQ(iso8601(dateOf(951'782'400'000'000)), "2000-02-29T00:00:00Z");
    EXPECT_EQ(iso8601(Date::max()), "9999-12-31T23:59:59Z");
    EXPECT_EQ(iso8601(Date::min()), "0000-01-01T00:00:00Z");
}

TEST(Iso8601, ReadsWhatItWrites) {
    for (const char* text : {"1970-01-01T00:00:00Z", "2025-01-31T09:05:00Z", "2024-02-29T23:59:59Z",
                             "0000-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
        ASSERT_TRUE(parseIso8601(text)) << text;
        EXPECT_EQ(iso8601(*parseIso8601(text)), text);
    }
    EXPECT_LT(currentDate() - parseIso8601(iso8601(currentDate())).value(), seconds(2));
}

TEST(Iso8601, ReadsNothingElse) {
    using namespace std::string_view_literals;
    for (const auto text : {""sv,
                            "2025-01-31"sv,
                            "2025-01-31T09:05:00"sv,
                            "2025-01-31T09:05:00z"sv,
                            "2025-01-31t09:05:00Z"sv,
                            "2025-01-31 09:05:00Z"sv,
                            "2025-01-31T09:05:00.5Z"sv,
                            "2025-01-31T09:05:00+00:00"sv,
                            " 2025-01-31T09:05:00Z"sv,
                            "2025-01-31T09:05:00Z "sv,
                            "2025-01-31T09:05:00Z\0"sv,
                            "+025-01-31T09:05:00Z"sv,
                            "2025-1-031T09:05:00Z"sv,
                            "2025-00-31T09:05:00Z"sv,
                            "2025-13-01T09:05:00Z"sv,
                            "2025-02-29T09:05:00Z"sv,
                            "2025-04-31T09:05:00Z"sv,
                            "2025-01-00T09:05:00Z"sv,
                            "2025-01-31T24:00:00Z"sv,
                            "2025-01-31T09:60:00Z"sv,
                            "2025-01-31T09:05:60Z"sv})
        EXPECT_FALSE(parseIso8601(text)) << text;
}

TEST(Uuid, IsRandomCanonicalAndOfVersionFour) {
    std::set<std::string> made;
    for (int i = 0; i < 1000; ++i) {
        const auto uuid = newUuid();
        ASSERT_TRUE(isUuid(uuid)) << uuid;
        EXPECT_EQ(uuid[14], '4');
        EXPECT_NE(std::string_view("89AB").find(uuid[19]), std::string_view::npos) << uuid;
        made.insert(uuid);
    }
    EXPECT_EQ(made.size(), 1000u);
}

TEST(Uuid, IsTakenInItsCanonicalFormOnly) {
    const UuidBytes bytes{0xF8, 0x1D, 0x4F, 0xAE, 0x7D, 0xEC, 0x11, 0xD0,
                          0xA7, 0x65, 0x00, 0xA0, 0xC9, 0x1E, 0x6B, 0xF6};
    EXPECT_EQ(uuidText(bytes), "F81D4FAE-7DEC-11D0-A765-00A0C91E6BF6");
    EXPECT_TRUE(isUuid("F81D4FAE-7DEC-11D0-A765-00A0C91E6BF6"));
    for (const char* text : {"", "f81d4fae-7dec-11d0-a765-00a0c91e6bf6", "F81D4FAE7DEC11D0A76500A0C91E6BF6",
                             "F81D4FAE-7DEC-11D0-A765-00A0C91E6BF", "F81D4FAE-7DEC-11D0-A765-00A0C91E6BF6 ",
                             "G81D4FAE-7DEC-11D0-A765-00A0C91E6BF6", "F81D4FAE-7DEC-11D0-A765-00A0C91E6B-6"})
        EXPECT_FALSE(isUuid(text)) << text;
}

} // namespace
} // namespace orbel
