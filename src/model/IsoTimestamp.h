#pragma once

#include "model/Instant.h"

#include <chrono>
#include <string>

namespace lumetra {

// The program's one ISO 8601 writer: UTC with milliseconds, "2026-11-22T05:01:02.123Z".
std::string isoTimestamp(Instant instant);

// The same for a count of milliseconds, which holds every date from year 0 to 9999; an
// Instant counts nanoseconds and ends in 2262.
std::string isoTimestamp(std::chrono::sys_time<std::chrono::milliseconds> time);

} // namespace lumetra
