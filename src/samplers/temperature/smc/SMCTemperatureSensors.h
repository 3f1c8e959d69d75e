#pragma once

#include "samplers/temperature/TemperatureSensorSource.h"
#include "samplers/temperature/smc/SMCKeyReading.h"

#include <memory>

namespace lumetra {

// An SMC as a sensor source: its die-temperature keys are the sensors, tried in the key
// table's order as one rule; a key reads through the client and its data type's decoding.
class SMCTemperatureSensors final : public TemperatureSensorSource {
public:
    explicit SMCTemperatureSensors(std::unique_ptr<SMCKeyReading> reader);

    std::vector<std::vector<std::string>> candidateGroups() const override;
    // A key that fails to read (any SMCError) or to decode reads as none.
    std::optional<double> readCelsius(std::string_view sensor) override;
    std::string lookedFor() const override;

private:
    std::unique_ptr<SMCKeyReading> reader_;
};

} // namespace lumetra
