#pragma once

#include "model/EnumTable.h"

#include <QString>

#include <cstddef>
#include <functional>
#include <string_view>

namespace lumetra {

// Ordered: a later case is the hotter state.
enum class ThermalState { nominal, fair, serious, critical };

template <>
struct EnumTraits<ThermalState> {
    using Case = EnumCase<ThermalState, std::string_view>;
    static constexpr const char* context = "ThermalState";
    static constexpr bool hasDisplayName = false; // label() below
    static constexpr std::array cases{
        Case{ThermalState::nominal, "nominal", QT_TRANSLATE_NOOP("ThermalState", "Nominal")},
        Case{ThermalState::fair, "fair", QT_TRANSLATE_NOOP("ThermalState", "Fair")},
        Case{ThermalState::serious, "serious", QT_TRANSLATE_NOOP("ThermalState", "Serious")},
        Case{ThermalState::critical, "critical",
             QT_TRANSLATE_NOOP("ThermalState", "thermalState.critical")}};
};

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
