#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

namespace lumetra {

enum class ThermalState { nominal, fair, serious, critical };

inline constexpr std::array<ThermalState, 4> kAllThermalStates{
    ThermalState::nominal, ThermalState::fair, ThermalState::serious, ThermalState::critical};

std::string_view rawValue(ThermalState state);

// Accepts exactly the raw values, case-sensitively.
std::optional<ThermalState> thermalStateFromRaw(std::string_view raw);

// The localised label. The first three are keyed by their English text; critical keeps
// the dotted key "thermalState.critical" with "Critical" as its default, as translation
// tables keyed that way expect.
QString label(ThermalState state);

} // namespace lumetra

template <>
struct std::hash<lumetra::ThermalState> {
    std::size_t operator()(lumetra::ThermalState state) const noexcept {
        return std::hash<std::string_view>{}(lumetra::rawValue(state));
    }
};
