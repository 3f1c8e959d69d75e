#pragma once

#include "model/Instant.h"

#include <optional>

namespace lumetra {

// The two settings the update policy reads and writes; the settings store provides them.
class UpdateCheckSettings {
public:
    virtual ~UpdateCheckSettings() = default;

    // "automaticallyCheckForUpdates": whether start-up may check on its own.
    virtual bool automaticallyCheckForUpdates() const = 0;
    // "lastUpdateCheckDate": when the last check started, automatic or manual; none if never.
    virtual std::optional<Instant> lastUpdateCheckDate() const = 0;
    virtual void setLastUpdateCheckDate(Instant date) = 0;
};

} // namespace lumetra
