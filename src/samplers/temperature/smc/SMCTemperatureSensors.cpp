#include "samplers/temperature/smc/SMCTemperatureSensors.h"

#include "samplers/temperature/smc/SMCClient.h"
#include "samplers/temperature/smc/SMCTemperatureKeys.h"

namespace lumetra {

SMCTemperatureSensors::SMCTemperatureSensors(std::unique_ptr<SMCKeyReading> reader)
    : reader_(std::move(reader)) {}

std::vector<std::vector<std::string>> SMCTemperatureSensors::candidateGroups() const {
    return {std::vector<std::string>(kSMCTemperatureKeys.begin(), kSMCTemperatureKeys.end())};
}

std::optional<double> SMCTemperatureSensors::readCelsius(std::string_view sensor) {
    if (sensor.size() != 4)
        return std::nullopt; // SMC keys are four characters; other names are not ours
    try {
        const SMCKeyValue value = reader_->readKey(sensor);
        return SMCClient::decodeValue(value.dataType, value.bytes());
    } catch (const SMCError&) {
        return std::nullopt; // it may answer next time
    }
}

std::string SMCTemperatureSensors::lookedFor() const {
    return "the SMC's die-temperature keys";
}

} // namespace lumetra
