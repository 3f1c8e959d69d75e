#pragma once

#include <chrono>
#include <cstdint>

namespace lumetra {

// Wall-clock instants: the timestamps of samples and settings dates.
using WallClock = std::chrono::system_clock;
using Instant = WallClock::time_point;

// The earliest representable instant, the timestamp of the empty record.
inline constexpr Instant kDistantPast = Instant::min();

// The instant a count of milliseconds since 1970 names, held at the ends of the clock's range
// (about 1677 to 2262): a stored date may lie far beyond, and converting it as it is
// overflows.
inline Instant instantFromMilliseconds(std::int64_t milliseconds) {
    using std::chrono::duration_cast;
    using Milliseconds = std::chrono::milliseconds;
    constexpr auto latest = duration_cast<Milliseconds>(Instant::max().time_since_epoch());
    constexpr auto earliest = duration_cast<Milliseconds>(Instant::min().time_since_epoch());
    if (milliseconds >= latest.count())
        return Instant::max();
    if (milliseconds <= earliest.count())
        return Instant::min();
    return Instant(Milliseconds(milliseconds));
}

// Seconds from one instant to another (negative when `to` is earlier).
inline double secondsBetween(Instant from, Instant to) {
    return std::chrono::duration<double>(to - from).count();
}

} // namespace lumetra
