#pragma once

#include "updates/UpdateCheckSettings.h"

namespace lumetra {

class SettingsStore;

// The update policy's two settings, read from and written to the settings store.
class StoredUpdateCheckSettings final : public UpdateCheckSettings {
public:
    explicit StoredUpdateCheckSettings(SettingsStore& store) : store_(store) {}

    bool automaticallyCheckForUpdates() const override;
    std::optional<Instant> lastUpdateCheckDate() const override;
    void setLastUpdateCheckDate(Instant date) override;

private:
    SettingsStore& store_;
};

} // namespace lumetra
