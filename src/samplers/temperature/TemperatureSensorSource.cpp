#include "samplers/temperature/TemperatureSensorSource.h"

#include "model/Logging.h"
#include "samplers/temperature/AppleSiliconTemperatureKeys.h"
#include "samplers/temperature/HwmonKeyReader.h"
#include "samplers/temperature/smc/SMCClient.h"
#include "samplers/temperature/smc/SMCSysfsTransport.h"

namespace lumetra {

namespace {

// SMC keys are four characters; Linux sensor keys are "<chip>/<label>".
class SensorKeyRouter final : public SMCKeyReading {
public:
    SensorKeyRouter(std::unique_ptr<SMCKeyReading> smc, std::unique_ptr<SMCKeyReading> hwmon)
        : smc_(std::move(smc)), hwmon_(std::move(hwmon)) {}

    SMCKeyValue readKey(std::string_view key) override {
        SMCKeyReading* reader = key.find('/') == std::string_view::npos ? smc_.get() : hwmon_.get();
        if (!reader)
            throw SMCError::keyNotFound();
        return reader->readKey(key);
    }

private:
    std::unique_ptr<SMCKeyReading> smc_;
    std::unique_ptr<SMCKeyReading> hwmon_;
};

} // namespace

TemperatureSensorSource TemperatureSensorSource::smc(std::unique_ptr<SMCKeyReading> reader) {
    TemperatureSensorSource source;
    source.reader = std::move(reader);
    source.candidateGroups.emplace_back(kAppleSiliconTemperatureKeys.begin(),
                                        kAppleSiliconTemperatureKeys.end());
    return source;
}

TemperatureSensorSource TemperatureSensorSource::forMachine(const KernelRoots& roots) {
    TemperatureSensorSource source;
    source.smcOnly = false;
    std::unique_ptr<SMCKeyReading> smc;
    if (roots.isLiveSystem()) {
        try {
            smc = std::make_unique<SMCClient>(SMCSysfsTransport::open(roots));
            source.candidateGroups.emplace_back(kAppleSiliconTemperatureKeys.begin(),
                                                kAppleSiliconTemperatureKeys.end());
        } catch (const SMCError& error) {
            if (error.kind() != SMCError::Kind::serviceNotFound)
                qCCritical(logSensors, "SMC client unavailable: %s", error.what());
        }
    }
    auto hwmon = std::make_unique<HwmonKeyReader>(roots);
    for (auto& group : hwmon->candidateGroups(kAppleSiliconTemperatureKeys))
        source.candidateGroups.push_back(std::move(group));
    source.reader = std::make_unique<SensorKeyRouter>(std::move(smc), std::move(hwmon));
    return source;
}

} // namespace lumetra
