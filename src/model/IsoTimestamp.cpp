#include "model/IsoTimestamp.h"

#include <cstdio>
#include <ctime>

namespace lumetra {

std::string isoTimestamp(Instant instant) {
    return isoTimestamp(std::chrono::floor<std::chrono::milliseconds>(instant));
}

std::string isoTimestamp(std::chrono::sys_time<std::chrono::milliseconds> time) {
    using namespace std::chrono;
    const auto sinceEpoch = time.time_since_epoch();
    const auto wholeSeconds = floor<seconds>(sinceEpoch);
    const std::time_t seconds = static_cast<std::time_t>(wholeSeconds.count());
    std::tm utc{};
    if (gmtime_r(&seconds, &utc) == nullptr)
        return "1970-01-01T00:00:00.000Z";
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec,
                  static_cast<int>((sinceEpoch - wholeSeconds).count()));
    return buffer;
}

} // namespace lumetra
