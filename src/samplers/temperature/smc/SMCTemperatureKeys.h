#pragma once

#include <array>
#include <string_view>

namespace lumetra {

// The SMC's die-temperature keys on Apple Silicon, in the order they are tried: the "Tp"
// sensors first, then the "Tc" ones.
inline constexpr std::array<std::string_view, 21> kSMCTemperatureKeys{
    "Tp01", "Tp05", "Tp09", "Tp0D", "Tp0H", "Tp0L", "Tp0P", "Tp0X", "Tp0b", "Tp0e", "Tp0f",
    "Tp0j", "Tp0k", "Tc0a", "Tc0b", "Tc0c", "Tc0d", "Tc0e", "Tc0f", "Tc0g", "Tc0h"};

} // namespace lumetra
