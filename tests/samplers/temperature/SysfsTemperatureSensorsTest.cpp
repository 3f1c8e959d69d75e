#include "samplers/temperature/SysfsTemperatureSensors.h"
#include "samplers/temperature/TemperatureProvider.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::ScratchTree;
using Groups = std::vector<std::vector<std::string>>;

namespace {

// Two layouts beside the fixture machines: an Asahi tree that names Apple Silicon die keys
// (those come first, in the key table's order), and a mix of vendors and old kernels: a
// Threadripper-style k10temp (Tdie is the die, Tctl carries an offset), coretemp's attributes
// on the parent device with "Physical id", a second socket repeating the core labels, and zone
// types (case-insensitive cpu/soc, the Pi's bcm2835; not the GPU, not a cooling device).
TEST(SysfsTemperatureSensorsTest, LayoutsOfferCandidatesByTheRulesInOrder) {
    const std::pair<const char*, Groups> cases[] = {
        {"hwmon-layouts/asahi-die-keys",
         {{"macsmc_hwmon/CPU Core 1 Temp", "macsmc_hwmon/CPU Core 2 Temp"},
          {"macsmc_hwmon/CPU Core 2 Temp", "macsmc_hwmon/CPU Core 1 Temp",
           "macsmc_hwmon/SoC Backside Temp"}}},
        {"hwmon-layouts/mixed-vendors",
         {{"coretemp/Physical id 1", "coretemp/Physical id 0"},
          {"coretemp/Core 0", "coretemp/Core 0 (hwmon10)"},
          {"k10temp/Tdie", "k10temp/Tccd1"},
          {"thermal_zone0/TCPU", "thermal_zone1/soc-thermal", "thermal_zone3/bcm2835_thermal",
           "thermal_zone5/x86_pkg_temp"},
          {"thermal_zone4/acpitz"}}}};
    for (const auto& [layout, groups] : cases)
        EXPECT_EQ(SysfsTemperatureSensors(KernelRoots(fixtureRoot(layout))).candidateGroups(),
                  groups)
            << layout;
}

TEST(SysfsTemperatureSensorsTest, ReadsMillidegreesAsDegrees) {
    SysfsTemperatureSensors sensors(KernelRoots(fixtureRoot("desktop-intel")));
    EXPECT_EQ(sensors.readCelsius("nvme/Composite"), 38.85);
    EXPECT_EQ(sensors.readCelsius("acpitz/temp1"), 27.8); // no label: the channel
    EXPECT_EQ(sensors.readCelsius("Tp01"), std::nullopt);
}

TEST(SysfsTemperatureSensorsTest, BadInputsFailTheReadNotTheProgram) {
    ScratchTree tree;
    const QString chip = "sys/class/hwmon/hwmon0";
    tree.write(chip + "/name", "coretemp\n");
    // Core 4's input is a directory, Core 2's goes away before the read.
    const std::tuple<const char*, QByteArray, std::optional<double>> cases[] = {
        {"Package id 0", "garbage", std::nullopt},
        {"Core 0", "", std::nullopt},
        {"Core 1", "-5000", -5.0},
        {"Core 2", "45000", std::nullopt},
        {"Core 3", QByteArray(100000, '7'), std::nullopt},
        {"Core 4", "", std::nullopt}};
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const QString channel = chip + "/temp" + QString::number(i + 1);
        tree.write(channel + "_label", std::get<0>(cases[i]) + QByteArray("\n"));
        tree.write(channel + "_input", std::get<1>(cases[i]) + "\n");
    }
    tree.remove(chip + "/temp6_input");
    tree.makeDirectory(chip + "/temp6_input");
    SysfsTemperatureSensors sensors(KernelRoots(tree.root()));
    tree.remove(chip + "/temp4_input");
    for (const auto& [label, input, value] : cases)
        EXPECT_EQ(sensors.readCelsius("coretemp/" + std::string(label)), value) << label;
    // A file that is fixed after a bad read is read again.
    tree.write(chip + "/temp1_input", "47000\n");
    EXPECT_EQ(sensors.readCelsius("coretemp/Package id 0"), 47.0);
}

// A package sensor that reads nonsense gives way to the cores; a rule is kept once it
// yields a plausible sensor, so the zones below it are never used.
TEST(SysfsTemperatureSensorsTest, ProviderFallsThroughToTheNextRule) {
    ScratchTree tree;
    const QString chip = "sys/class/hwmon/hwmon0/";
    tree.write(chip + "name", "coretemp\n");
    for (const auto& [channel, label, input] : {std::tuple{"1", "Package id 0", "0"},
                                                {"2", "Core 0", "40000"},
                                                {"3", "Core 1", "50000"}}) {
        tree.write(chip + "temp" + channel + "_label", QByteArray(label) + "\n");
        tree.write(chip + "temp" + channel + "_input", QByteArray(input) + "\n");
    }
    tree.write("sys/class/thermal/thermal_zone0/type", "x86_pkg_temp\n");
    tree.write("sys/class/thermal/thermal_zone0/temp", "90000\n");
    TemperatureProvider provider(KernelRoots(tree.root()));
    const TemperatureReading reading = provider.currentReading();
    EXPECT_EQ(reading.temperature, 45.0);
    EXPECT_EQ(reading.sources, (QStringList{"coretemp/Core 0", "coretemp/Core 1"}));
}

} // namespace
