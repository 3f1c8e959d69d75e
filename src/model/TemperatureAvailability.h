#pragma once

#include "model/EnumTable.h"

#include <string_view>

namespace lumetra {

// How the temperature of a record was obtained. Samplers produce only exactTemperature and
// unavailable; thermalStateOnly exists for the views. The raw value is the case name, as the
// terminal mode's JSON writes it.
enum class TemperatureAvailability { exactTemperature, thermalStateOnly, unavailable };

template <>
struct EnumTraits<TemperatureAvailability> {
    using Case = EnumCase<TemperatureAvailability, std::string_view>;
    static constexpr const char* context = "TemperatureAvailability";
    static constexpr bool hasDisplayName = false;
    static constexpr std::array cases{
        Case{TemperatureAvailability::exactTemperature, "exactTemperature", nullptr},
        Case{TemperatureAvailability::thermalStateOnly, "thermalStateOnly", nullptr},
        Case{TemperatureAvailability::unavailable, "unavailable", nullptr}};
};

} // namespace lumetra
