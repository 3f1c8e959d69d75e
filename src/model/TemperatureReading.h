#pragma once

#include "model/TemperatureAvailability.h"
#include "model/ThermalState.h"

#include <QStringList>

#include <optional>

namespace lumetra {

// One temperature reading: the mean of the plausible die sensors, if any, with the thermal
// state taken at the start of the reading and the sensors averaged, in order ("chip/label").
struct TemperatureReading {
    std::optional<double> temperature;
    ThermalState thermalState = ThermalState::nominal;
    TemperatureAvailability availability = TemperatureAvailability::unavailable;
    QStringList sources;

    bool operator==(const TemperatureReading&) const = default;
};

} // namespace lumetra
