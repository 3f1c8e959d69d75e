#include "samplers/temperature/AppleSiliconTemperatureProvider.h"

#include "model/Logging.h"
#include "samplers/temperature/smc/SMCClient.h"
#include "samplers/temperature/ThermalStateReader.h"

#include <memory>

namespace lumetra {

AppleSiliconTemperatureProvider::AppleSiliconTemperatureProvider(const KernelRoots& roots)
    : open_([roots] { return TemperatureSensorSource::forMachine(roots); }),
      thermalState_([reader = std::make_shared<ThermalStateReader>(roots)] {
          return static_cast<int>(reader->read());
      }) {}

AppleSiliconTemperatureProvider::AppleSiliconTemperatureProvider(SourceOpener open,
                                                                 ThermalStateSource thermalState)
    : open_(std::move(open)), thermalState_(std::move(thermalState)) {}

ThermalState AppleSiliconTemperatureProvider::thermalStateFromCode(int code) {
    switch (code) {
    case 1:
        return ThermalState::fair;
    case 2:
        return ThermalState::serious;
    case 3:
        return ThermalState::critical;
    default:
        return ThermalState::nominal;
    }
}

SMCKeyReading* AppleSiliconTemperatureProvider::ensureClient() {
    if (didAttemptInit_)
        return client_ ? client_->reader.get() : nullptr;
    didAttemptInit_ = true;
    try {
        client_ = open_();
    } catch (const SMCError& error) {
        qCCritical(logSensors, "SMC client unavailable: %s", error.what());
        client_.reset();
        return nullptr;
    }
    if (!client_->reader) {
        client_.reset();
        return nullptr;
    }
    return client_->reader.get();
}

std::optional<double> AppleSiliconTemperatureProvider::plausibleValue(SMCKeyReading& reader,
                                                                      const std::string& key) {
    try {
        const SMCKeyValue value = reader.readKey(key);
        const std::optional<double> celsius = SMCClient::decodeValue(value.dataType, value.bytes());
        if (celsius && isPlausible(*celsius))
            return celsius;
    } catch (const SMCError&) {
        // A key that cannot be read is left out, silently: it may answer next time.
    }
    return std::nullopt;
}

const std::vector<std::string>&
AppleSiliconTemperatureProvider::resolveKeys(SMCKeyReading& reader) {
    if (validatedKeys_)
        return *validatedKeys_;
    std::vector<std::string> keys;
    // Every candidate of a group is tried; the first group with a plausible sensor wins.
    for (const std::vector<std::string>& group : client_->candidateGroups) {
        for (const std::string& key : group) {
            if (plausibleValue(reader, key))
                keys.push_back(key);
        }
        if (!keys.empty())
            break;
    }
    if (keys.empty()) {
        if (client_->smcOnly)
            qCWarning(logSensors,
                      "No plausible Apple Silicon temperature SMC keys found on this Mac");
        else
            qCWarning(logSensors,
                      "No plausible Apple Silicon temperature SMC keys found on this machine");
    } else {
        qCInfo(logSensors, "Resolved %ld temperature SMC key(s)", static_cast<long>(keys.size()));
    }
    validatedKeys_ = std::move(keys);
    return *validatedKeys_;
}

TemperatureReading AppleSiliconTemperatureProvider::currentReading() {
    TemperatureReading reading;
    reading.thermalState = thermalStateFromCode(thermalState_ ? thermalState_() : 0);
    SMCKeyReading* reader = ensureClient();
    if (!reader)
        return reading;
    const std::vector<std::string>& keys = resolveKeys(*reader);
    double sum = 0;
    int count = 0;
    // Summed in key order; the range is checked again on every reading, since a sensor
    // validated at discovery can drift out of it.
    for (const std::string& key : keys) {
        if (const std::optional<double> celsius = plausibleValue(*reader, key)) {
            sum += *celsius;
            ++count;
        }
    }
    if (count == 0)
        return reading;
    reading.temperature = sum / count;
    reading.availability = TemperatureAvailability::exactTemperature;
    return reading;
}

} // namespace lumetra
