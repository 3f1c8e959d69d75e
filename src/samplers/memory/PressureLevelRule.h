#pragma once

#include "model/MemoryPressureLevel.h"

#include <chrono>
#include <optional>
#include <string_view>

namespace lumetra {

// The two avg10 figures of a PSI file such as /proc/pressure/memory.
struct PressureAverages {
    double someAvg10 = 0;
    double fullAvg10 = 0;
};

// Parses "some avg10=… …\nfull avg10=… …". Kernels before 5.13 have no "full" line for CPU
// pressure; for memory both lines exist. A missing full line counts as 0.
std::optional<PressureAverages> parsePressureAverages(std::string_view text);

// Which PSI trigger fired.
enum class PressureEvent { warning, critical };

// The memory-pressure level as triggers and averages move it.
//
// With triggers armed, an event raises the level at once (critical → critical, warning →
// elevated); the level falls back only on a read when no trigger has fired for the quiet
// period and the averages have calmed down. Without triggers the level is computed from the
// averages on every read.
class PressureLevelRule {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kQuietPeriod{10};
    static constexpr double kThreshold = 10.0; // avg10, percent of wall time stalled

    void onEvent(PressureEvent event, Clock::time_point now);

    MemoryPressureLevel level() const { return level_; }

    // Whether a read at `now` needs the averages to decide the level.
    bool needsAverages(Clock::time_point now) const;

    // Settles the level on a read while triggers are armed.
    void settle(const PressureAverages& averages, Clock::time_point now);

    // The level from averages alone, for when no trigger can be armed.
    static MemoryPressureLevel levelFromAverages(const PressureAverages& averages);

private:
    MemoryPressureLevel level_ = MemoryPressureLevel::normal;
    std::optional<Clock::time_point> lastEvent_;
};

} // namespace lumetra
