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

} // namespace
