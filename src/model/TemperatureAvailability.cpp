#include "model/TemperatureAvailability.h"

namespace lumetra {

std::string_view caseName(TemperatureAvailability availability) {
    switch (availability) {
    case TemperatureAvailability::exactTemperature:
        return "exactTemperature";
    case TemperatureAvailability::thermalStateOnly:
        return "thermalStateOnly";
    case TemperatureAvailability::unavailable:
        return "unavailable";
    }
    return "unavailable";
}

} // namespace lumetra
