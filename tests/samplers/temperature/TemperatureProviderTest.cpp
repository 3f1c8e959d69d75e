#include "samplers/temperature/TemperatureProvider.h"
#include "model/Logging.h"
#include "samplers/temperature/MachineTemperatureSensors.h"
#include "samplers/temperature/SysfsTemperatureSensors.h"
#include "samplers/temperature/ThermalMonitor.h"
#include "samplers/temperature/smc/SMCClient.h"
#include "samplers/temperature/smc/SMCSimulator.h"
#include "samplers/temperature/smc/SMCTemperatureKeys.h"
#include "samplers/temperature/smc/SMCTemperatureSensors.h"
#include "support/FixtureTree.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <thread>

using namespace lumetra;
using lumetra::testing::fixtureRoot;

namespace {

struct SensorLog : lumetra::testing::LogCapture {
    SensorLog() : LogCapture(logSensors()) {}
};

// A provider over a simulated SMC whose table the test edits between readings.
struct SimulatedMachine {
    SMCSimulator* smc = nullptr;
    int opens = 0;
    ThermalState thermalState = ThermalState::nominal;
    std::optional<SMCError> openError;

    std::unique_ptr<TemperatureProvider> provider() {
        auto owned = std::make_unique<SMCSimulator>();
        smc = owned.get();
        auto shared = std::make_shared<std::unique_ptr<SMCSimulator>>(std::move(owned));
        return std::make_unique<TemperatureProvider>(
            [this, shared]() -> std::unique_ptr<TemperatureSensorSource> {
                ++opens;
                if (openError)
                    throw *openError;
                return std::make_unique<SMCTemperatureSensors>(
                    std::make_unique<SMCClient>(std::move(*shared)));
            },
            [this] { return thermalState; });
    }
};

// The mean of the keys plausible at the first reading (5 to 115 °C, both ends included); each
// later reading leaves out those that drift out of range or stop answering.
TEST(TemperatureProviderTest, MeanOfTheKeysFoundOnceThatAreStillInRange) {
    SimulatedMachine machine;
    auto provider = machine.provider();
    machine.smc->setFloat("Tp01", 40.0f);
    machine.smc->setFloat("Tp09", 50.0f);
    machine.smc->setKey("Tc0a", "sp78", {60, 0x00});
    machine.smc->setFloat("Tp05", 2.0f); // implausible at discovery: never read again
    SensorLog log;
    const TemperatureReading r = provider->currentReading();
    EXPECT_EQ(std::tuple(r.temperature, r.availability, r.sources),
              std::tuple(50.0, TemperatureAvailability::exactTemperature,
                         QStringList{"Tp01", "Tp09", "Tc0a"}));
    machine.smc->clearCalls();
    machine.smc->setFloat("Tp05", 70.0f);
    EXPECT_EQ(provider->currentReading().temperature, 50.0);
    EXPECT_EQ(machine.smc->calls().size(), 6u) << "the three validated keys, two calls each";

    // The mean is kept to the millidegree, the finest any sensor resolves.
    for (const auto& [value, mean] : {std::pair{115.0f, 71.667},
                                      {115.01f, 50.0},
                                      {5.0f, 35.0},
                                      {4.99f, 50.0},
                                      {NAN, 50.0},
                                      {-40.0f, 50.0}}) {
        machine.smc->setFloat("Tp09", value);
        EXPECT_EQ(provider->currentReading().temperature, mean) << value;
    }
    machine.smc->removeKey("Tp09");
    const TemperatureReading two = provider->currentReading();
    EXPECT_EQ(two.temperature, 50.0);
    EXPECT_EQ(two.sources, (QStringList{"Tp01", "Tc0a"})) << "only those averaged";
    machine.smc->setFloat("Tp01", 4.0f);
    machine.smc->setKey("Tc0a", "sp78", {120, 0x00});
    const TemperatureReading none = provider->currentReading();
    EXPECT_EQ(std::tuple(none.temperature, none.availability, none.sources),
              std::tuple(std::nullopt, TemperatureAvailability::unavailable, QStringList()));
    machine.smc->setFloat("Tp09", 46.0f);
    EXPECT_EQ(provider->currentReading().temperature, 46.0) << "back again";
    EXPECT_EQ(machine.opens, 1);
    EXPECT_EQ(log.lines(), QStringList{"Resolved 3 temperature SMC key(s)"});
}

TEST(TemperatureProviderTest, OpeningFailureIsTriedAndLoggedOnce) {
    SimulatedMachine machine;
    machine.openError = SMCError::failedToOpen(-13);
    auto provider = machine.provider();
    SensorLog log;
    // The thermal state is read each time all the same.
    for (const ThermalState state :
         {ThermalState::serious, ThermalState::nominal, ThermalState::critical}) {
        machine.thermalState = state;
        const TemperatureReading r = provider->currentReading();
        EXPECT_EQ(std::tuple(r.temperature, r.availability, r.thermalState),
                  std::tuple(std::nullopt, TemperatureAvailability::unavailable, state));
    }
    EXPECT_EQ(machine.opens, 1);
    EXPECT_EQ(log.lines(), QStringList{"SMC client unavailable: failedToOpen(-13)"});
}

TEST(TemperatureProviderTest, DiscoveryProbesTheTableOnceEvenWhenNothingIsPlausible) {
    SimulatedMachine machine;
    auto provider = machine.provider();
    SensorLog log;
    EXPECT_FALSE(provider->currentReading().temperature);
    std::vector<std::uint32_t> probed, table; // one information call per key, in table order
    for (const SMCCallRecord& call : machine.smc->calls())
        probed.push_back(call.key());
    for (const auto& key : kSMCTemperatureKeys)
        table.push_back(encodeSMCKey(key));
    EXPECT_EQ(probed, table);
    // Keys appearing later are not picked up: discovery is not repeated.
    machine.smc->setFloat("Tp01", 40.0f);
    machine.smc->clearCalls();
    EXPECT_FALSE(provider->currentReading().temperature);
    EXPECT_TRUE(machine.smc->calls().empty());
    EXPECT_EQ(machine.opens, 1);
    EXPECT_EQ(log.lines(), QStringList{"No plausible temperature sensor found; looked for the "
                                       "SMC's die-temperature keys"});
}

// An SMC beside Linux's sensors: its die keys are the first rule, so a plausible key wins;
// an SMC whose keys read nonsense gives way to hwmon. Each name is read from its own source.
TEST(TemperatureProviderTest, SMCKeysComeBeforeLinuxSensors) {
    for (const auto& [smcValue, mean, names] :
         {std::tuple{47.5f, 47.5, QStringList{"Tp01"}},
          {150.0f, 45.0, QStringList{"coretemp/Package id 0"}}}) {
        std::vector<std::unique_ptr<TemperatureSensorSource>> sources;
        auto smc = std::make_unique<SMCSimulator>();
        smc->setFloat("Tp01", smcValue);
        sources.push_back(
            std::make_unique<SMCTemperatureSensors>(std::make_unique<SMCClient>(std::move(smc))));
        sources.push_back(
            std::make_unique<SysfsTemperatureSensors>(KernelRoots(fixtureRoot("desktop-intel"))));
        SensorLog log;
        TemperatureProvider provider(
            [&] { return std::make_unique<MachineTemperatureSensors>(std::move(sources)); },
            [] { return ThermalState::nominal; });
        const TemperatureReading reading = provider.currentReading();
        EXPECT_EQ(reading.temperature, mean) << smcValue;
        EXPECT_EQ(reading.sources, names) << smcValue;
    }
}

// The fixture machines: an Intel desktop (i7-7700: coretemp, acpitz, PCH and x86_pkg_temp
// zones, throttle counters), an AMD desktop (Ryzen 9 5900X: k10temp with two CCDs, amdgpu,
// nct6798, NVMe), a Raspberry Pi 5 (cpu-thermal zone with fan trips), a MacBook Air M2 under
// Asahi Linux (macsmc_hwmon, sensors named by the device tree under the SMC node) and a cloud
// VM without any sensor. Each offers its candidate groups by the rules, in order; the first
// group is read, and the thermal state comes from the zones' trips.
TEST(TemperatureProviderTest, FixtureMachinesReadTheDieTemperatureAndState) {
    struct Case {
        const char* machine;
        std::vector<std::vector<std::string>> groups;
        std::optional<double> temperature;
        ThermalState state;
    };
    for (const Case& c : std::initializer_list<Case>{
             // The x86_pkg_temp zone has only placeholder trips.
             {"desktop-intel",
              {{"coretemp/Package id 0"},
               {"coretemp/Core 0", "coretemp/Core 1", "coretemp/Core 2", "coretemp/Core 3"},
               {"thermal_zone2/x86_pkg_temp"},
               {"thermal_zone0/acpitz"}},
              45.0,
              ThermalState::nominal},
             // No Tdie on Zen 3; the GPU and Super I/O do not count.
             {"amd-desktop",
              {{"k10temp/Tctl", "k10temp/Tccd1", "k10temp/Tccd2"}},
              48.042,
              ThermalState::nominal},
             // The zone, not its hwmon twin; above the lowest fan trip.
             {"raspberry-pi", {{"thermal_zone0/cpu-thermal"}}, 55.6, ThermalState::fair},
             // No Apple Silicon die key in the device tree, so "SoC Backside Temp". Asahi
             // exercises the SMC-key rule, which an Intel Mac's applesmc keys never match.
             {"apple-laptop", {{"macsmc_hwmon/SoC Backside Temp"}}, 41.25, ThermalState::nominal},
             {"no-sensors-vm", {}, std::nullopt, ThermalState::nominal}}) {
        SCOPED_TRACE(c.machine);
        EXPECT_EQ(SysfsTemperatureSensors(KernelRoots(fixtureRoot(c.machine))).candidateGroups(),
                  c.groups);
        QStringList sources;
        for (const std::string& sensor :
             c.groups.empty() ? std::vector<std::string>() : c.groups.front())
            sources.append(QString::fromStdString(sensor));
        SensorLog log;
        TemperatureProvider provider(KernelRoots(fixtureRoot(c.machine)));
        for (int i = 0; i < 3; ++i) {
            const TemperatureReading r = provider.currentReading();
            EXPECT_EQ(std::tuple(r.temperature, r.availability, r.thermalState, r.sources),
                      std::tuple(c.temperature,
                                 c.temperature ? TemperatureAvailability::exactTemperature
                                               : TemperatureAvailability::unavailable,
                                 c.state, sources));
        }
        ASSERT_EQ(log.lines().size(), 1);
        if (!sources.isEmpty()) {
            EXPECT_EQ(log.lines().first(), QString("Resolved %1 temperature sensor(s): %2")
                                               .arg(sources.size())
                                               .arg(sources.join(", ")));
        } else {
            // One line naming where it looked, below the root it was given.
            const QString line = log.lines().first();
            EXPECT_TRUE(line.startsWith("No plausible temperature sensor found; looked for hwmon "
                                        "chips (macsmc_hwmon, coretemp, k10temp, zenpower) in "))
                << line.toStdString();
            EXPECT_TRUE(line.contains(QString::fromStdString(fixtureRoot(c.machine)) +
                                      "/sys/class/thermal"))
                << line.toStdString();
        }
    }
}

// The monitor runs every reading on one thread of its own (so one at a time), in order, and
// hands the results back.
struct RecordingProvider final : TemperatureProviding {
    TemperatureReading currentReading() override {
        threads.insert(std::this_thread::get_id());
        TemperatureReading reading;
        reading.temperature = ++count;
        return reading;
    }
    int count = 0;
    std::set<std::thread::id> threads;
};

TEST(ThermalMonitorTest, SerialisesReadingsOnOneThread) {
    auto provider = std::make_shared<RecordingProvider>();
    {
        ThermalMonitor monitor(provider);
        std::vector<std::future<TemperatureReading>> futures;
        for (int i = 0; i < 10; ++i)
            futures.push_back(monitor.currentReading());
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(futures[i].get().temperature, i + 1.0);
    }
    ASSERT_EQ(provider->threads.size(), 1u);
    EXPECT_NE(*provider->threads.begin(), std::this_thread::get_id());
}

} // namespace
