#include "model/IsoTimestamp.h"

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

TEST(IsoTimestampTest, UtcWithMillisecondsRoundedDown) {
    using std::chrono::milliseconds;
    for (const auto& [ms, text] : {std::pair{0LL, "1970-01-01T00:00:00.000Z"},
                                   {-1LL, "1969-12-31T23:59:59.999Z"},
                                   {1795323662123LL, "2026-11-22T05:01:02.123Z"}})
        EXPECT_EQ(isoTimestamp(Instant(milliseconds(ms))), text) << ms;
}

// Milliseconds reach the years a nanosecond Instant cannot (it ends in 2262).
TEST(IsoTimestampTest, MillisecondsCoverYearsOneTo9999) {
    using namespace std::chrono;
    for (const auto& [ms, text] : {std::pair{65'729'694'600'250LL, "4052-11-21T08:30:00.250Z"},
                                   {253'402'300'799'999LL, "9999-12-31T23:59:59.999Z"},
                                   {-62'135'596'800'000LL, "0001-01-01T00:00:00.000Z"}})
        EXPECT_EQ(isoTimestamp(sys_time<milliseconds>(milliseconds(ms))), text) << ms;
}

} // namespace
