#pragma once

#include "samplers/kernel/KernelRoots.h"
#include "samplers/temperature/smc/SMCKeyReading.h"

#include <memory>
#include <string>
#include <vector>

namespace lumetra {

// What temperature discovery runs over: a key reader and the groups of candidate keys to try
// on it, best group first. Discovery keeps the first group that yields a plausible sensor.
struct TemperatureSensorSource {
    std::unique_ptr<SMCKeyReading> reader;
    std::vector<std::vector<std::string>> candidateGroups;
    // How the log names the machine: "Mac" when the only reader is an SMC, "machine" when
    // Linux's sensors take part.
    bool smcOnly = true;

    // The Apple Silicon die keys on an SMC reader (a client over any transport).
    static TemperatureSensorSource smc(std::unique_ptr<SMCKeyReading> reader);

    // This machine's sensors below the root: the SMC where the kernel lets us talk to it
    // (live system only: a saved tree has no controller, and nothing below a given root is
    // ever written), then hwmon and the thermal zones. An SMC that exists but cannot be
    // opened is logged once; a machine without one is the common case and is not.
    static TemperatureSensorSource forMachine(const KernelRoots& roots);
};

} // namespace lumetra
