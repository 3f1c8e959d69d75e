#pragma once

#include <chrono>

namespace lumetra {

// Wall-clock instants: the timestamps of samples and settings dates.
using WallClock = std::chrono::system_clock;
using Instant = WallClock::time_point;

// The earliest representable instant, the timestamp of the empty record.
inline constexpr Instant kDistantPast = Instant::min();

// Seconds from one instant to another (negative when `to` is earlier).
inline double secondsBetween(Instant from, Instant to) {
    return std::chrono::duration<double>(to - from).count();
}

} // namespace lumetra
