#pragma once

#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"
#include "samplers/temperature/TemperatureSensorSource.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumetra {

// One temperature input the kernel exposes: an hwmon channel or a thermal zone.
struct SysfsSensor {
    std::string name;   // "<chip>/<label>", "<chip>/tempN" without a label, "<zone>/<type>"
    std::string source; // the hwmon chip's name, or the thermal zone ("thermal_zone0")
    std::string label;  // tempN_label (empty when the channel has none), or the zone's type
    std::string device; // "hwmon3" or "thermal_zone0": tells apart chips of one driver
    std::string inputPath;
    std::string smcKey; // macsmc_hwmon: the SMC key the device tree names for this channel
    bool thermalZone = false;
};

// Linux's temperature sensors: the hwmon chips' tempN_input channels and the thermal zones,
// in millidegrees. Zones are read from the zone itself, never from their hwmon twin, so no
// sensor counts twice.
class SysfsTemperatureSensors final : public TemperatureSensorSource {
public:
    // Scans /sys/class/hwmon and /sys/class/thermal below the root once.
    explicit SysfsTemperatureSensors(const KernelRoots& roots);

    const std::vector<SysfsSensor>& sensors() const { return sensors_; }

    // One group per rule, best rule first: macsmc_hwmon channels whose SMC key is one of the
    // SMC die keys (in their order), then those labelled as SoC or CPU; coretemp packages,
    // then cores; k10temp/zenpower Tdie (else Tctl) with the Tccd dies; CPU or SoC thermal
    // zones; acpitz zones. Empty groups are left out.
    std::vector<std::vector<std::string>> candidateGroups() const override;

    // None for a name that is no sensor here, an input that cannot be read, or one that does
    // not hold a number.
    std::optional<double> readCelsius(std::string_view sensor) override;
    std::string lookedFor() const override;

private:
    std::vector<SysfsSensor> sensors_;
    std::vector<std::unique_ptr<KernelFile>> inputs_; // parallel to sensors_, kept open
    std::map<std::string, std::size_t, std::less<>> byName_;
    std::string hwmonPath_;
    std::string thermalPath_;
};

// A sysfs temperature in millidegrees as a number: trimmed, signed, nothing for garbage.
std::optional<std::int64_t> parseMillidegrees(std::string_view text);

} // namespace lumetra
