#pragma once

#include "samplers/kernel/KernelRoots.h"
#include "samplers/temperature/TemperatureProviding.h"
#include "samplers/temperature/TemperatureSensorSource.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lumetra {

// One die temperature: the mean of the plausible sensors found once, at the first reading,
// with the machine's thermal state. The name is the product's; on Linux it reads whatever
// machine it runs on through a key reader: the SMC where one answers, else hwmon and the
// thermal zones. Not thread-safe: ThermalMonitor calls it from its own thread only,
// which is what lets the one-time set-up go without a lock.
class AppleSiliconTemperatureProvider final : public TemperatureProviding {
public:
    // Opens the sensor source; throws SMCError when there is none.
    using SourceOpener = std::function<TemperatureSensorSource()>;
    // The thermal state as a code: 1, 2, 3 are fair, serious, critical; anything else nominal.
    using ThermalStateSource = std::function<int()>;

    // This machine's sensors and thermal zones below the root.
    explicit AppleSiliconTemperatureProvider(const KernelRoots& roots = KernelRoots());
    AppleSiliconTemperatureProvider(SourceOpener open, ThermalStateSource thermalState);

    TemperatureReading currentReading() override;

    // 5.0 to 115.0 °C, both ends included; not a number is not plausible.
    static bool isPlausible(double celsius) { return celsius >= 5.0 && celsius <= 115.0; }
    static ThermalState thermalStateFromCode(int code);

private:
    SMCKeyReading* ensureClient();
    const std::vector<std::string>& resolveKeys(SMCKeyReading& reader);
    std::optional<double> plausibleValue(SMCKeyReading& reader, const std::string& key);

    SourceOpener open_;
    ThermalStateSource thermalState_;

    std::optional<TemperatureSensorSource> client_; // empty until opened, for good if that failed
    std::optional<std::vector<std::string>> validatedKeys_; // set once, possibly to no keys
    bool didAttemptInit_ = false;
};

} // namespace lumetra
