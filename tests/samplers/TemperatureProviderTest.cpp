#include "model/Logging.h"
#include "samplers/AppleSiliconTemperatureKeys.h"
#include "samplers/AppleSiliconTemperatureProvider.h"
#include "samplers/SMCClient.h"
#include "samplers/SMCSimulator.h"
#include "samplers/ThermalMonitor.h"
#include "support/FixtureTree.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <atomic>
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
    int thermalCode = 0;
    std::optional<SMCError> openError;

    std::unique_ptr<AppleSiliconTemperatureProvider> provider() {
        auto owned = std::make_unique<SMCSimulator>();
        smc = owned.get();
        auto shared = std::make_shared<std::unique_ptr<SMCSimulator>>(std::move(owned));
        return std::make_unique<AppleSiliconTemperatureProvider>(
            [this, shared] {
                ++opens;
                if (openError)
                    throw *openError;
                return TemperatureSensorSource::smc(
                    std::make_unique<SMCClient>(std::move(*shared)));
            },
            [this] { return thermalCode; });
    }
};

TEST(TemperatureProviderTest, MeanOfPlausibleSensorsInKeyOrder) {
    SimulatedMachine machine;
    auto provider = machine.provider();
    machine.smc->setFloat("Tp01", 40.0f);
    machine.smc->setFloat("Tp09", 50.0f);
    machine.smc->setKey("Tc0a", "sp78", {60, 0x00});
    machine.smc->setFloat("Tp05", 2.0f); // implausible at discovery: never read again
    SensorLog log;
    const TemperatureReading reading = provider->currentReading();
    EXPECT_EQ(reading.temperature, 50.0);
    EXPECT_EQ(reading.availability, TemperatureAvailability::exactTemperature);
    EXPECT_EQ(log.lines(), QStringList{"Resolved 3 temperature SMC key(s)"});

    // Every candidate was probed once (two calls each for those present, one for the rest);
    // later readings touch only the three validated keys, two calls each.
    machine.smc->clearCalls();
    machine.smc->setFloat("Tp05", 70.0f);
    EXPECT_EQ(provider->currentReading().temperature, 50.0);
    EXPECT_EQ(machine.smc->calls().size(), 6u);
}

TEST(TemperatureProviderTest, PlausibleRangeIncludesBothEnds) {
    struct Case {
        float value;
        bool accepted;
    };
    for (const Case c : {Case{4.99f, false}, Case{5.0f, true}, Case{115.0f, true},
                         Case{115.01f, false}, Case{NAN, false}, Case{-40.0f, false}}) {
        SimulatedMachine machine;
        auto provider = machine.provider();
        machine.smc->setFloat("Tp01", c.value);
        SensorLog log;
        EXPECT_EQ(provider->currentReading().temperature,
                  c.accepted ? std::optional<double>(c.value) : std::nullopt)
            << c.value;
    }
}

TEST(TemperatureProviderTest, KeysThatDriftOutOfRangeAreLeftOutOfThatReading) {
    SimulatedMachine machine;
    auto provider = machine.provider();
    machine.smc->setFloat("Tp01", 40.0f);
    machine.smc->setFloat("Tp05", 60.0f);
    EXPECT_EQ(provider->currentReading().temperature, 50.0);

    machine.smc->setFloat("Tp05", 130.0f);
    EXPECT_EQ(provider->currentReading().temperature, 40.0);

    machine.smc->setFloat("Tp01", 4.0f);
    const TemperatureReading none = provider->currentReading();
    EXPECT_FALSE(none.temperature);
    EXPECT_EQ(none.availability, TemperatureAvailability::unavailable);

    // A key that stops answering is skipped; one that comes back counts again.
    machine.smc->setFloat("Tp01", 44.0f);
    machine.smc->removeKey("Tp05");
    EXPECT_EQ(provider->currentReading().temperature, 44.0);
    machine.smc->setFloat("Tp05", 46.0f);
    EXPECT_EQ(provider->currentReading().temperature, 45.0);
}

TEST(TemperatureProviderTest, OpeningFailureIsTriedAndLoggedOnce) {
    SimulatedMachine machine;
    machine.openError = SMCError::failedToOpen(-13);
    machine.thermalCode = 2;
    auto provider = machine.provider();
    SensorLog log;
    for (int i = 0; i < 5; ++i) {
        const TemperatureReading reading = provider->currentReading();
        EXPECT_FALSE(reading.temperature);
        EXPECT_EQ(reading.availability, TemperatureAvailability::unavailable);
        EXPECT_EQ(reading.thermalState, ThermalState::serious);
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
    for (const auto& key : kAppleSiliconTemperatureKeys)
        table.push_back(encodeSMCKey(key));
    EXPECT_EQ(probed, table);
    // Keys appearing later are not picked up: discovery is not repeated.
    machine.smc->setFloat("Tp01", 40.0f);
    machine.smc->clearCalls();
    EXPECT_FALSE(provider->currentReading().temperature);
    EXPECT_TRUE(machine.smc->calls().empty());
    EXPECT_EQ(machine.opens, 1);
    EXPECT_EQ(log.lines(),
              QStringList{"No plausible Apple Silicon temperature SMC keys found on this Mac"});
}

TEST(TemperatureProviderTest, ThermalStateCodesMapWithUnknownAsNominal) {
    const std::vector<std::pair<int, ThermalState>> cases{
        {0, ThermalState::nominal},  {1, ThermalState::fair},    {2, ThermalState::serious},
        {3, ThermalState::critical}, {4, ThermalState::nominal}, {-1, ThermalState::nominal}};
    for (const auto& [code, state] : cases) {
        SimulatedMachine machine;
        machine.thermalCode = code;
        auto provider = machine.provider();
        machine.smc->setFloat("Tp01", 40.0f);
        SensorLog log;
        EXPECT_EQ(provider->currentReading().thermalState, state) << code;
    }
}

// Each fixture machine: the sensors chosen, the temperature and the thermal state.
TEST(TemperatureProviderTest, FixtureMachinesReadTheDieTemperatureAndState) {
    struct Case {
        const char* machine;
        std::optional<double> temperature;
        ThermalState state;
        const char* log;
    };
    const char* const one = "Resolved 1 temperature SMC key(s)";
    for (const Case& c : std::initializer_list<Case>{
             // coretemp "Package id 0"; the x86_pkg_temp zone has only placeholder trips
             {"desktop-intel", 45.0, ThermalState::nominal, one},
             // k10temp Tctl, Tccd1, Tccd2 (no Tdie on Zen 3); the GPU and Super I/O do not count
             {"amd-desktop", (52.875 + 47.25 + 44.0) / 3, ThermalState::nominal,
              "Resolved 3 temperature SMC key(s)"},
             // the cpu-thermal zone, not its hwmon twin; above the lowest fan trip
             {"raspberry-pi", 55.6, ThermalState::fair, one},
             // Asahi: no Apple Silicon die key in the device tree, so "SoC Backside Temp"
             {"apple-laptop", 41.25, ThermalState::nominal, one},
             {"no-sensors-vm", std::nullopt, ThermalState::nominal,
              "No plausible Apple Silicon temperature SMC keys found on this machine"}}) {
        SCOPED_TRACE(c.machine);
        SensorLog log;
        AppleSiliconTemperatureProvider provider(KernelRoots(fixtureRoot(c.machine)));
        for (int i = 0; i < 3; ++i) {
            const TemperatureReading reading = provider.currentReading();
            ASSERT_EQ(reading.temperature.has_value(), c.temperature.has_value());
            if (c.temperature) {
                EXPECT_NEAR(*reading.temperature, *c.temperature, 1e-4);
            }
            EXPECT_EQ(reading.availability, c.temperature
                                                ? TemperatureAvailability::exactTemperature
                                                : TemperatureAvailability::unavailable);
            EXPECT_EQ(reading.thermalState, c.state);
        }
        EXPECT_EQ(log.lines(), QStringList{c.log});
    }
}

// This machine: a VM without sensors, read many times through the thermal monitor's thread.
TEST(TemperatureProviderTest, LiveMachineWithoutSensorsLogsOnce) {
    if (QFile::exists("/sys/class/hwmon") ||
        !QDir("/sys/class/thermal").entryList({"thermal_zone*"}, QDir::AllEntries).isEmpty())
        GTEST_SKIP() << "this machine has temperature sensors";
    SensorLog log;
    ThermalMonitor monitor(std::make_shared<AppleSiliconTemperatureProvider>());
    for (int i = 0; i < 20; ++i) {
        const TemperatureReading reading = monitor.currentReading().get();
        EXPECT_FALSE(reading.temperature);
        EXPECT_EQ(reading.availability, TemperatureAvailability::unavailable);
        EXPECT_EQ(reading.thermalState, ThermalState::nominal);
    }
    EXPECT_EQ(log.lines().size(), 1) << log.lines().join('\n').toStdString();
}

// The monitor runs every reading on its own thread, one at a time, and hands results back.
class RecordingProvider final : public TemperatureProviding {
public:
    TemperatureReading currentReading() override {
        const int now = ++inside_;
        maxInside_ = std::max(maxInside_.load(), now);
        threads_.insert(std::this_thread::get_id());
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        --inside_;
        TemperatureReading reading;
        reading.temperature = ++count_;
        return reading;
    }
    std::atomic<int> inside_{0};
    std::atomic<int> maxInside_{0};
    int count_ = 0;
    std::set<std::thread::id> threads_;
};

TEST(ThermalMonitorTest, SerialisesReadingsOnOneThread) {
    auto provider = std::make_shared<RecordingProvider>();
    {
        ThermalMonitor monitor(provider);
        std::vector<std::future<TemperatureReading>> futures;
        for (int i = 0; i < 10; ++i)
            futures.push_back(monitor.currentReading());
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(futures[i].get().temperature, i + 1.0); // in order, unchanged
    }
    EXPECT_EQ(provider->maxInside_, 1);
    ASSERT_EQ(provider->threads_.size(), 1u);
    EXPECT_NE(*provider->threads_.begin(), std::this_thread::get_id());
}

} // namespace
