#include "Util/UnixTime.h"

#include <gtest/gtest.h>
#include <limits>

namespace orbel {
namespace {

TEST(UnixTime, MomentsThatTheCountCannotReachBecomeTheNearestOne) {
    using Limits = std::numeric_limits<std::int64_t>;
    EXPECT_EQ(nanosSince1970(1'700'000'000, 5), 1'700'000'000'000'000'005);
    EXPECT_EQ(nanosSince1970(-1, 999'999'999), -1);
    EXPECT_EQ(nanosSince1970(253'370'764'800, 0), Limits::max()) << "the year 9999";
    EXPECT_EQ(nanosSince1970(9'223'372'036, 999'999'999), Limits::max()) << "only the sum is too large";
    EXPECT_EQ(nanosSince1970(-62'135'596'800, 0), Limits::min()) << "the year 1";
}

} // namespace
} // namespace orbel
