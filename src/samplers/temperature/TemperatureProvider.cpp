#include "samplers/temperature/TemperatureProvider.h"

#include "model/Logging.h"
#include "samplers/temperature/MachineTemperatureSensors.h"
#include "samplers/temperature/ThermalStateReader.h"
#include "samplers/temperature/smc/SMCError.h"

#include <cmath>

namespace lumetra {

TemperatureProvider::TemperatureProvider(const KernelRoots& roots)
    : open_([roots] { return MachineTemperatureSensors::open(roots); }),
      thermalState_(
          [reader = std::make_shared<ThermalStateReader>(roots)] { return reader->read(); }) {}

TemperatureProvider::TemperatureProvider(SourceOpener open, ThermalStateSource thermalState)
    : open_(std::move(open)), thermalState_(std::move(thermalState)) {}

TemperatureSensorSource* TemperatureProvider::ensureSource() {
    if (didAttemptInit_)
        return source_.get();
    didAttemptInit_ = true;
    try {
        source_ = open_();
    } catch (const SMCError& error) {
        qCCritical(logSensors, "SMC client unavailable: %s", error.what());
        source_.reset();
    }
    return source_.get();
}

std::optional<double> TemperatureProvider::plausibleValue(TemperatureSensorSource& source,
                                                          const std::string& sensor) {
    // A sensor that cannot be read is left out, silently: it may answer next time.
    const std::optional<double> celsius = source.readCelsius(sensor);
    return celsius && isPlausible(*celsius) ? celsius : std::nullopt;
}

const std::vector<std::string>&
TemperatureProvider::resolveSensors(TemperatureSensorSource& source) {
    if (validatedSensors_)
        return *validatedSensors_;
    std::vector<std::string> sensors;
    // Every candidate of a group is tried; the first group with a plausible sensor wins.
    for (const std::vector<std::string>& group : source.candidateGroups()) {
        for (const std::string& sensor : group) {
            if (plausibleValue(source, sensor)) {
                sensors.push_back(sensor);
                validatedNames_.append(QString::fromStdString(sensor));
            }
        }
        if (!sensors.empty())
            break;
    }
    if (sensors.empty())
        qCWarning(logSensors, "No plausible temperature sensor found; looked for %s",
                  source.lookedFor().c_str());
    else if (sensors.front().find('/') == std::string::npos) // SMC keys; Linux's are chip/label
        qCInfo(logSensors, "Resolved %ld temperature SMC key(s)",
               static_cast<long>(sensors.size()));
    else
        qCInfo(logSensors, "Resolved %ld temperature sensor(s): %s",
               static_cast<long>(sensors.size()), qUtf8Printable(validatedNames_.join(", ")));
    validatedSensors_ = std::move(sensors);
    return *validatedSensors_;
}

TemperatureReading TemperatureProvider::currentReading() {
    TemperatureReading reading;
    if (thermalState_)
        reading.thermalState = thermalState_();
    TemperatureSensorSource* source = ensureSource();
    if (!source)
        return reading;
    const std::vector<std::string>& sensors = resolveSensors(*source);
    double sum = 0;
    QStringList averaged;
    // Summed in discovery order; the range is checked again on every reading, since a sensor
    // validated at discovery can drift out of it.
    for (std::size_t i = 0; i < sensors.size(); ++i) {
        if (const std::optional<double> celsius = plausibleValue(*source, sensors[i])) {
            sum += *celsius;
            averaged.append(validatedNames_[static_cast<qsizetype>(i)]);
        }
    }
    if (averaged.isEmpty())
        return reading;
    // No sensor resolves finer than a millidegree, so the digits of a mean beyond it are noise.
    reading.temperature = std::round(sum / averaged.size() * 1000.0) / 1000.0;
    reading.availability = TemperatureAvailability::exactTemperature;
    // All of them, the usual case: share the list found at discovery.
    reading.sources = averaged.size() == validatedNames_.size() ? validatedNames_ : averaged;
    return reading;
}

} // namespace lumetra
