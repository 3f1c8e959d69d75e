#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// How the dashboard draws its metric cards. The label of compactRow is plural on purpose.
enum class MetricCardStyle { classic, ring, compactRow, sparklineArea, grid };

template <>
struct EnumTraits<MetricCardStyle> {
    static constexpr const char* context = "MetricCardStyle";
    static constexpr std::array cases{
        EnumCase<MetricCardStyle, std::string_view>{
            MetricCardStyle::classic, "classic", QT_TRANSLATE_NOOP("MetricCardStyle", "Classic")},
        EnumCase<MetricCardStyle, std::string_view>{MetricCardStyle::ring, "ring",
                                                    QT_TRANSLATE_NOOP("MetricCardStyle", "Ring")},
        EnumCase<MetricCardStyle, std::string_view>{
            MetricCardStyle::compactRow, "compactRow",
            QT_TRANSLATE_NOOP("MetricCardStyle", "Compact Rows")},
        EnumCase<MetricCardStyle, std::string_view>{
            MetricCardStyle::sparklineArea, "sparklineArea",
            QT_TRANSLATE_NOOP("MetricCardStyle", "Sparkline Area")},
        EnumCase<MetricCardStyle, std::string_view>{MetricCardStyle::grid, "grid",
                                                    QT_TRANSLATE_NOOP("MetricCardStyle", "Grid")},
    };
};

} // namespace lumetra
