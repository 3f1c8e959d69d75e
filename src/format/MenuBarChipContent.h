#pragma once

#include "settings/MenuBarMetric.h"

#include <QString>

#include <optional>

namespace lumetra {

// One chip of the menu bar label: the metric, its reading, its sparkline (empty for metrics
// without history) and its 0..100 level (none when it has no scale or no value).
struct MenuBarChipContent {
    MenuBarMetric metric = MenuBarMetric::cpu;
    QString valueText;
    QString graphText;
    std::optional<double> percentage;

    bool operator==(const MenuBarChipContent&) const = default;
};

} // namespace lumetra
