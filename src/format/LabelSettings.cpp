#include "format/LabelSettings.h"

#include "settings/SettingsStore.h"

namespace lumetra {

LabelSettings LabelSettings::from(const SettingsStore& store) {
    LabelSettings settings;
    settings.displayedMetrics = store.displayedMetrics();
    settings.separator = store.separator();
    settings.memoryFormat = store.memoryFormat();
    settings.temperatureFormat = store.temperatureFormat();
    settings.style = store.menuBarDisplayStyle();
    return settings;
}

} // namespace lumetra
