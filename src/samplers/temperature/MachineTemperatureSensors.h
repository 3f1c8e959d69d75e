#pragma once

#include "samplers/kernel/KernelRoots.h"
#include "samplers/temperature/TemperatureSensorSource.h"

#include <map>
#include <memory>

namespace lumetra {

// Several sources as one: their rules one after the other, in the order the sources were
// given, and each sensor read from the source that offers it.
class MachineTemperatureSensors final : public TemperatureSensorSource {
public:
    // `alsoLookedFor` names sources that were looked for and not found, for lookedFor().
    explicit MachineTemperatureSensors(
        std::vector<std::unique_ptr<TemperatureSensorSource>> sources,
        std::string alsoLookedFor = {});

    // This machine's sources below the root: the SMC where the kernel lets us talk to it
    // (live system only: a saved tree has no controller, and nothing below a given root is
    // ever written), then hwmon and the thermal zones. An SMC that exists but cannot be
    // opened is logged; a machine without one is the common case and is not.
    static std::unique_ptr<TemperatureSensorSource> open(const KernelRoots& roots);

    std::vector<std::vector<std::string>> candidateGroups() const override;
    std::optional<double> readCelsius(std::string_view sensor) override;
    std::string lookedFor() const override;

private:
    std::vector<std::unique_ptr<TemperatureSensorSource>> sources_;
    std::map<std::string, TemperatureSensorSource*, std::less<>> owners_;
    std::string alsoLookedFor_;
};

} // namespace lumetra
