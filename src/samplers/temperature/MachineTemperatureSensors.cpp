#include "samplers/temperature/MachineTemperatureSensors.h"

#include "model/Logging.h"
#include "samplers/temperature/SysfsTemperatureSensors.h"
#include "samplers/temperature/smc/SMCClient.h"
#include "samplers/temperature/smc/SMCSysfsTransport.h"
#include "samplers/temperature/smc/SMCTemperatureSensors.h"

namespace lumetra {

MachineTemperatureSensors::MachineTemperatureSensors(
    std::vector<std::unique_ptr<TemperatureSensorSource>> sources, std::string alsoLookedFor)
    : sources_(std::move(sources)), alsoLookedFor_(std::move(alsoLookedFor)) {
    for (const auto& source : sources_) {
        for (const auto& group : source->candidateGroups()) {
            for (const std::string& sensor : group)
                owners_.emplace(sensor, source.get());
        }
    }
}

std::unique_ptr<TemperatureSensorSource> MachineTemperatureSensors::open(const KernelRoots& roots) {
    std::vector<std::unique_ptr<TemperatureSensorSource>> sources;
    std::string alsoLookedFor;
    if (roots.isLiveSystem()) {
        try {
            sources.push_back(std::make_unique<SMCTemperatureSensors>(
                std::make_unique<SMCClient>(SMCSysfsTransport::open(roots))));
        } catch (const SMCError& error) {
            if (error.kind() != SMCError::Kind::serviceNotFound)
                qCCritical(logSensors, "SMC client unavailable: %s", error.what());
            std::string directory = SMCSysfsTransport::directory(roots);
            directory.pop_back(); // the trailing slash
            alsoLookedFor = "an SMC at " + directory;
        }
    }
    sources.push_back(std::make_unique<SysfsTemperatureSensors>(roots));
    return std::make_unique<MachineTemperatureSensors>(std::move(sources),
                                                       std::move(alsoLookedFor));
}

std::vector<std::vector<std::string>> MachineTemperatureSensors::candidateGroups() const {
    std::vector<std::vector<std::string>> groups;
    for (const auto& source : sources_) {
        for (auto& group : source->candidateGroups())
            groups.push_back(std::move(group));
    }
    return groups;
}

std::optional<double> MachineTemperatureSensors::readCelsius(std::string_view sensor) {
    const auto owner = owners_.find(sensor);
    return owner == owners_.end() ? std::nullopt : owner->second->readCelsius(sensor);
}

std::string MachineTemperatureSensors::lookedFor() const {
    std::string text = alsoLookedFor_;
    for (const auto& source : sources_)
        text += (text.empty() ? "" : "; ") + source->lookedFor();
    return text;
}

} // namespace lumetra
