#pragma once

#include "model/Instant.h"

#include <string>

namespace lumetra {

// The program's one ISO 8601 writer: UTC with milliseconds, "2026-11-22T05:01:02.123Z".
std::string isoTimestamp(Instant instant);

} // namespace lumetra
