#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// How the temperature metric is written. It has no label of its own: the settings picker shows a
// sample reading per case.
enum class TemperatureDisplayFormat { degreesOnly, degreesWithUnit, labeledCPU, labeledTemp };

template <>
struct EnumTraits<TemperatureDisplayFormat> {
    static constexpr const char* context = "TemperatureDisplayFormat";
    static constexpr bool hasDisplayName = false;
    static constexpr std::array cases{
        EnumCase<TemperatureDisplayFormat, std::string_view>{TemperatureDisplayFormat::degreesOnly,
                                                             "degreesOnly", nullptr},
        EnumCase<TemperatureDisplayFormat, std::string_view>{
            TemperatureDisplayFormat::degreesWithUnit, "degreesWithUnit", nullptr},
        EnumCase<TemperatureDisplayFormat, std::string_view>{TemperatureDisplayFormat::labeledCPU,
                                                             "labeledCPU", nullptr},
        EnumCase<TemperatureDisplayFormat, std::string_view>{TemperatureDisplayFormat::labeledTemp,
                                                             "labeledTemp", nullptr},
    };
};

} // namespace lumetra
