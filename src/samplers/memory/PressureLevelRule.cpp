#include "samplers/memory/PressureLevelRule.h"

#include "samplers/kernel/TextScan.h"

namespace lumetra {

using namespace textscan;

namespace {

// "some avg10=1.23 avg60=… total=…" → 1.23
std::optional<double> avg10Of(std::string_view line) {
    nextField(line); // "some" or "full"
    const std::string_view field = nextField(line);
    constexpr std::string_view prefix = "avg10=";
    if (!field.starts_with(prefix))
        return std::nullopt;
    return parseDouble(field.substr(prefix.size()));
}

} // namespace

std::optional<PressureAverages> parsePressureAverages(std::string_view text) {
    std::optional<double> some;
    std::optional<double> full;
    while (!text.empty()) {
        const std::string_view line = nextLine(text);
        if (line.starts_with("some "))
            some = avg10Of(line);
        else if (line.starts_with("full "))
            full = avg10Of(line);
    }
    if (!some)
        return std::nullopt;
    return PressureAverages{*some, full.value_or(0)};
}

void PressureLevelRule::onEvent(PressureEvent event, Clock::time_point now) {
    lastEvent_ = now;
    level_ = event == PressureEvent::critical ? MemoryPressureLevel::critical
                                              : MemoryPressureLevel::elevated;
}

bool PressureLevelRule::needsAverages(Clock::time_point now) const {
    if (level_ == MemoryPressureLevel::normal)
        return false;
    return !lastEvent_ || now - *lastEvent_ >= kQuietPeriod;
}

void PressureLevelRule::settle(const PressureAverages& averages, Clock::time_point now) {
    if (!needsAverages(now))
        return;
    const bool someCalm = averages.someAvg10 < kThreshold;
    const bool fullCalm = averages.fullAvg10 < kThreshold;
    if (someCalm && fullCalm)
        level_ = MemoryPressureLevel::normal;
    else if (level_ == MemoryPressureLevel::critical && fullCalm)
        level_ = MemoryPressureLevel::elevated;
}

MemoryPressureLevel PressureLevelRule::levelFromAverages(const PressureAverages& averages) {
    if (averages.fullAvg10 >= kThreshold)
        return MemoryPressureLevel::critical;
    if (averages.someAvg10 >= kThreshold)
        return MemoryPressureLevel::elevated;
    return MemoryPressureLevel::normal;
}

} // namespace lumetra
