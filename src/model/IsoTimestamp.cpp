#include "model/IsoTimestamp.h"

#include <cstdio>
#include <ctime>

namespace lumetra {

std::string isoTimestamp(Instant instant) {
    using namespace std::chrono;
    const auto sinceEpoch = floor<milliseconds>(instant.time_since_epoch());
    const auto wholeSeconds = floor<seconds>(sinceEpoch);
    const std::time_t time = static_cast<std::time_t>(wholeSeconds.count());
    std::tm utc{};
    if (gmtime_r(&time, &utc) == nullptr)
        return "1970-01-01T00:00:00.000Z";
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec,
                  static_cast<int>((sinceEpoch - wholeSeconds).count()));
    return buffer;
}

} // namespace lumetra
