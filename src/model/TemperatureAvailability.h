#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace lumetra {

// How the temperature of a record was obtained. Samplers produce only exactTemperature and
// unavailable; thermalStateOnly exists for the views.
enum class TemperatureAvailability { exactTemperature, thermalStateOnly, unavailable };

inline constexpr std::array<TemperatureAvailability, 3> kAllTemperatureAvailabilities{
    TemperatureAvailability::exactTemperature, TemperatureAvailability::thermalStateOnly,
    TemperatureAvailability::unavailable};

// The case name, as the terminal mode's JSON writes it.
std::string_view caseName(TemperatureAvailability availability);

} // namespace lumetra
