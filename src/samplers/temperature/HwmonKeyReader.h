#pragma once

#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"
#include "samplers/temperature/smc/SMCKeyReading.h"

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lumetra {

// One temperature input the kernel exposes: an hwmon channel or a thermal zone.
struct HwmonSensor {
    std::string key;    // "<chip name>/<label>", "<chip name>/tempN", or "<zone type>/<zone>"
    std::string chip;   // the hwmon chip's name, or the thermal zone's type
    std::string label;  // tempN_label; empty when the channel has none (and for zones)
    std::string device; // "hwmon3" or "thermal_zone0": tells apart chips of one driver
    std::string inputPath;
    std::string smcKey; // macsmc_hwmon: the SMC key the device tree names for this channel
    bool thermalZone = false;
};

// Linux's temperature sensors behind the SMC key contract: a key names a sensor, a read
// returns its tempN_input (millidegrees) as a "flt " value in degrees. Thermal zones are read
// from the zone itself, never from their hwmon twin, so no sensor counts twice.
class HwmonKeyReader final : public SMCKeyReading {
public:
    // Scans /sys/class/hwmon and /sys/class/thermal below the root once.
    explicit HwmonKeyReader(const KernelRoots& roots);

    const std::vector<HwmonSensor>& sensors() const { return sensors_; }

    // The candidate keys, one group per rule, best rule first: macsmc_hwmon channels whose
    // SMC key is in `smcKeys` (in that order), then those labelled as SoC or CPU; coretemp
    // packages, then cores; k10temp/zenpower Tdie (else Tctl) with the Tccd dies; CPU or SoC
    // thermal zones; acpitz zones. Empty groups are left out.
    std::vector<std::vector<std::string>>
    candidateGroups(std::span<const std::string_view> smcKeys) const;

    // keyNotFound for a key that names no sensor; callFailed(errno) when the input cannot be
    // read, callFailed(0) when it does not hold a number.
    SMCKeyValue readKey(std::string_view key) override;

private:
    std::vector<HwmonSensor> sensors_;
    std::vector<std::unique_ptr<KernelFile>> inputs_; // parallel to sensors_, kept open
    std::map<std::string, std::size_t, std::less<>> byKey_;
};

// A sysfs temperature in millidegrees as a number: trimmed, signed, nothing for garbage.
std::optional<std::int64_t> parseMillidegrees(std::string_view text);

} // namespace lumetra
