#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumetra {

// A source of temperature sensors: hwmon chips and thermal zones, or an SMC whose keys are
// sensors. A sensor is known by its name ("k10temp/Tccd1", "thermal_zone0/cpu-thermal",
// "Tp01") and reads degrees Celsius.
class TemperatureSensorSource {
public:
    virtual ~TemperatureSensorSource() = default;

    // The sensors the candidate rules accept, one group per rule, best rule first. Discovery
    // keeps the first group that yields a plausible sensor.
    virtual std::vector<std::vector<std::string>> candidateGroups() const = 0;

    // The sensor's temperature now; none when it is not this source's, cannot be read at the
    // moment, or does not hold a number.
    virtual std::optional<double> readCelsius(std::string_view sensor) = 0;

    // What this source looks for, for the log line of a machine without a usable sensor.
    virtual std::string lookedFor() const = 0;
};

} // namespace lumetra
