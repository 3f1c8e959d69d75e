#pragma once

#include "settings/MemoryDisplayFormat.h"
#include "settings/MenuBarDisplayStyle.h"
#include "settings/MenuBarMetric.h"
#include "settings/MenuBarSeparator.h"
#include "settings/TemperatureDisplayFormat.h"

#include <QList>

namespace lumetra {

class SettingsStore;

// The settings a label is built from, copied out of the store once per change so that
// building a label touches no observable object.
struct LabelSettings {
    QList<MenuBarMetric> displayedMetrics{MenuBarMetric::cpu, MenuBarMetric::memory,
                                          MenuBarMetric::temperature, MenuBarMetric::download,
                                          MenuBarMetric::upload};
    MenuBarSeparator separator = MenuBarSeparator::space;
    MemoryDisplayFormat memoryFormat = MemoryDisplayFormat::percentageOnly;
    TemperatureDisplayFormat temperatureFormat = TemperatureDisplayFormat::degreesWithUnit;
    MenuBarDisplayStyle style = MenuBarDisplayStyle::textOnly;

    static LabelSettings from(const SettingsStore& store);

    bool operator==(const LabelSettings&) const = default;
};

} // namespace lumetra
