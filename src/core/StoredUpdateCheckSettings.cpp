#include "core/StoredUpdateCheckSettings.h"

#include "settings/SettingsStore.h"

namespace lumetra {

bool StoredUpdateCheckSettings::automaticallyCheckForUpdates() const {
    return store_.automaticallyCheckForUpdates();
}

std::optional<Instant> StoredUpdateCheckSettings::lastUpdateCheckDate() const {
    const std::optional<QDateTime> date = store_.lastUpdateCheckDate();
    if (!date || !date->isValid())
        return std::nullopt;
    return instantFromMilliseconds(date->toMSecsSinceEpoch());
}

void StoredUpdateCheckSettings::setLastUpdateCheckDate(Instant date) {
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(date.time_since_epoch());
    store_.setLastUpdateCheckDate(QDateTime::fromMSecsSinceEpoch(milliseconds.count(), Qt::UTC));
}

} // namespace lumetra
