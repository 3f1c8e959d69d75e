#include "samplers/HwmonKeyReader.h"
#include "samplers/AppleSiliconTemperatureKeys.h"
#include "samplers/AppleSiliconTemperatureProvider.h"
#include "samplers/SMCClient.h"
#include "support/Cases.h"
#include "support/FixtureTree.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::ScratchTree;
using lumetra::testing::thrown;
using Groups = std::vector<std::vector<std::string>>;

namespace {

Groups groupsOf(const std::string& root) {
    return HwmonKeyReader(KernelRoots(root)).candidateGroups(kAppleSiliconTemperatureKeys);
}

std::optional<double> degrees(HwmonKeyReader& reader, const std::string& key) {
    const SMCKeyValue value = reader.readKey(key);
    return SMCClient::decodeValue(value.dataType, value.bytes());
}

void writeChannel(const ScratchTree& tree, const QString& chipDir, int channel,
                  const QByteArray& label, const QByteArray& millidegrees) {
    const QString base = chipDir + "/temp" + QString::number(channel);
    if (!label.isEmpty())
        tree.write(base + "_label", label + "\n");
    tree.write(base + "_input", millidegrees + "\n");
}

// The fixture machines: an Intel desktop (i7-7700: coretemp, acpitz, PCH and x86_pkg_temp
// zones, throttle counters), an AMD desktop (Ryzen 9 5900X: k10temp with two CCDs, amdgpu,
// nct6798, NVMe), a Raspberry Pi 5 (cpu-thermal zone with fan trips), a MacBook Air M2 under
// Asahi Linux (macsmc_hwmon, sensors named by the device tree under the SMC node: Asahi
// exercises the SMC-key rule, which an Intel Mac's applesmc keys never match), and a cloud VM
// without any sensor.
TEST(HwmonKeyReaderTest, FixtureMachinesOfferCandidatesByTheRulesInOrder) {
    const std::pair<const char*, Groups> cases[] = {
        {"desktop-intel",
         {{"coretemp/Package id 0"},
          {"coretemp/Core 0", "coretemp/Core 1", "coretemp/Core 2", "coretemp/Core 3"},
          {"x86_pkg_temp/thermal_zone2"},
          {"acpitz/thermal_zone0"}}},
        {"amd-desktop", {{"k10temp/Tctl", "k10temp/Tccd1", "k10temp/Tccd2"}}},
        {"raspberry-pi", {{"cpu-thermal/thermal_zone0"}}},
        {"apple-laptop", {{"macsmc_hwmon/SoC Backside Temp"}}},
        {"no-sensors-vm", {}}};
    for (const auto& [machine, groups] : cases)
        EXPECT_EQ(groupsOf(fixtureRoot(machine)), groups) << machine;
}

TEST(HwmonKeyReaderTest, ReadsMillidegreesAsFloatDegrees) {
    HwmonKeyReader reader(KernelRoots(fixtureRoot("desktop-intel")));
    const SMCKeyValue value = reader.readKey("coretemp/Package id 0");
    EXPECT_EQ(value.dataType, "flt ");
    EXPECT_EQ(value.size, 4u);
    EXPECT_EQ(SMCClient::decodeValue(value.dataType, value.bytes()), 45.0);
    EXPECT_NEAR(*degrees(reader, "nvme/Composite"), 38.85, 1e-5);
    EXPECT_NEAR(*degrees(reader, "acpitz/temp1"), 27.8, 1e-5); // no label: the channel
    EXPECT_EQ(thrown<SMCError>([&] { reader.readKey("Tp01"); }), SMCError::keyNotFound());
}

// Asahi trees that name Apple Silicon die keys: those come first, in the key table's order.
TEST(HwmonKeyReaderTest, MacsmcSensorsFollowTheSMCKeyTable) {
    ScratchTree tree;
    const QString chip = "sys/devices/platform/soc/23e400000.smc/macsmc-hwmon";
    const QString node = "sys/firmware/devicetree/base/soc/smc@23e400000/hwmon";
    tree.write(chip + "/hwmon/hwmon0/name", "macsmc_hwmon\n");
    const std::vector<std::pair<QByteArray, QByteArray>> sensors{{"Tp05", "CPU Core 2 Temp"},
                                                                 {"Tp01", "CPU Core 1 Temp"},
                                                                 {"TSCD", "SoC Backside Temp"},
                                                                 {"TB0T", "Battery Hotspot Temp"}};
    for (std::size_t i = 0; i < sensors.size(); ++i) {
        const auto& [key, label] = sensors[i];
        tree.write(node + "/temperature-" + key + "/apple,key-id", key + '\0');
        tree.write(node + "/temperature-" + key + "/label", label + '\0');
        writeChannel(tree, chip + "/hwmon/hwmon0", int(i) + 1, label, "40000");
    }
    tree.makeDirectory("sys/class/hwmon");
    ASSERT_TRUE(QFile::link("../../devices/platform/soc/23e400000.smc/macsmc-hwmon/hwmon/hwmon0",
                            QString::fromStdString(tree.path("sys/class/hwmon/hwmon0"))));
    ASSERT_TRUE(QFile::link("../../../macsmc-hwmon",
                            QString::fromStdString(tree.path(chip + "/hwmon/hwmon0/device"))));
    ASSERT_TRUE(QFile::link("../../../../../firmware/devicetree/base/soc/smc@23e400000/hwmon",
                            QString::fromStdString(tree.path(chip + "/of_node"))));
    EXPECT_EQ(groupsOf(tree.root()),
              (Groups{{"macsmc_hwmon/CPU Core 1 Temp", "macsmc_hwmon/CPU Core 2 Temp"},
                      {"macsmc_hwmon/CPU Core 2 Temp", "macsmc_hwmon/CPU Core 1 Temp",
                       "macsmc_hwmon/SoC Backside Temp"}}));
}

TEST(HwmonKeyReaderTest, VendorRulesAndOldLayouts) {
    ScratchTree tree;
    // Threadripper-style k10temp: Tdie is the die, Tctl carries an offset.
    writeChannel(tree, "sys/class/hwmon/hwmon0", 1, "Tctl", "77000");
    writeChannel(tree, "sys/class/hwmon/hwmon0", 2, "Tdie", "50000");
    writeChannel(tree, "sys/class/hwmon/hwmon0", 3, "Tccd1", "48000");
    tree.write("sys/class/hwmon/hwmon0/name", "k10temp\n");
    // An old kernel: coretemp's attributes on the parent device, "Physical id".
    tree.write("sys/class/hwmon/hwmon10/device/name", "coretemp\n");
    writeChannel(tree, "sys/class/hwmon/hwmon10/device", 1, "Physical id 0", "41000");
    writeChannel(tree, "sys/class/hwmon/hwmon10/device", 2, "Core 0", "40000");
    // A second coretemp (another socket) repeats the core labels.
    tree.write("sys/class/hwmon/hwmon2/name", "coretemp\n");
    writeChannel(tree, "sys/class/hwmon/hwmon2", 1, "Physical id 1", "42000");
    writeChannel(tree, "sys/class/hwmon/hwmon2", 2, "Core 0", "43000");
    // Zone types: case-insensitive cpu/soc, the Pi's bcm2835; not the GPU, not a chip.
    const std::vector<QByteArray> zones{"TCPU",   "soc-thermal", "gpu-thermal", "bcm2835_thermal",
                                        "acpitz", "x86_pkg_temp"};
    for (std::size_t i = 0; i < zones.size(); ++i) {
        const QString zone = "sys/class/thermal/thermal_zone" + QString::number(i);
        tree.write(zone + "/type", zones[i] + "\n");
        tree.write(zone + "/temp", "50000\n");
    }
    tree.write("sys/class/thermal/cooling_device0/type", "Processor\n");
    EXPECT_EQ(groupsOf(tree.root()),
              (Groups{{"coretemp/Physical id 1", "coretemp/Physical id 0"},
                      {"coretemp/Core 0", "coretemp/Core 0 (hwmon10)"},
                      {"k10temp/Tdie", "k10temp/Tccd1"},
                      {"TCPU/thermal_zone0", "soc-thermal/thermal_zone1",
                       "bcm2835_thermal/thermal_zone3", "x86_pkg_temp/thermal_zone5"},
                      {"acpitz/thermal_zone4"}}));
}

TEST(HwmonKeyReaderTest, BadInputsFailTheReadNotTheProgram) {
    ScratchTree tree;
    tree.write("sys/class/hwmon/hwmon0/name", "coretemp\n");
    const QString chip = "sys/class/hwmon/hwmon0";
    writeChannel(tree, chip, 1, "Package id 0", "garbage");
    writeChannel(tree, chip, 2, "Core 0", "");
    writeChannel(tree, chip, 3, "Core 1", "-5000");
    writeChannel(tree, chip, 4, "Core 2", "45000");
    writeChannel(tree, chip, 5, "Core 3", QByteArray(100000, '7'));
    tree.makeDirectory(chip + "/temp6_input");
    tree.write(chip + "/temp6_label", "Core 4\n");
    HwmonKeyReader reader(KernelRoots(tree.root()));
    EXPECT_EQ(thrown<SMCError>([&] { reader.readKey("coretemp/Package id 0"); }),
              SMCError::callFailed(0));
    EXPECT_EQ(thrown<SMCError>([&] { reader.readKey("coretemp/Core 0"); }),
              SMCError::callFailed(0));
    EXPECT_EQ(degrees(reader, "coretemp/Core 1"), -5.0);
    EXPECT_EQ(thrown<SMCError>([&] { reader.readKey("coretemp/Core 3"); }),
              SMCError::callFailed(0));
    EXPECT_EQ(thrown<SMCError>([&] { reader.readKey("coretemp/Core 4"); }),
              SMCError::callFailed(EISDIR));
    tree.remove(chip + "/temp4_input");
    EXPECT_EQ(thrown<SMCError>([&] { reader.readKey("coretemp/Core 2"); }),
              SMCError::callFailed(ENOENT));
    // A file that is fixed after a bad read is read again.
    tree.write(chip + "/temp1_input", "47000\n");
    EXPECT_EQ(degrees(reader, "coretemp/Package id 0"), 47.0);
}

// A package sensor that reads nonsense gives way to the cores; a rule is kept once it
// yields a plausible sensor, so the zones below it are never used.
TEST(HwmonKeyReaderTest, ProviderFallsThroughToTheNextRule) {
    ScratchTree tree;
    tree.write("sys/class/hwmon/hwmon0/name", "coretemp\n");
    writeChannel(tree, "sys/class/hwmon/hwmon0", 1, "Package id 0", "0");
    writeChannel(tree, "sys/class/hwmon/hwmon0", 2, "Core 0", "40000");
    writeChannel(tree, "sys/class/hwmon/hwmon0", 3, "Core 1", "50000");
    tree.write("sys/class/thermal/thermal_zone0/type", "x86_pkg_temp\n");
    tree.write("sys/class/thermal/thermal_zone0/temp", "90000\n");
    AppleSiliconTemperatureProvider provider(KernelRoots(tree.root()));
    EXPECT_EQ(provider.currentReading().temperature, 45.0);
}

} // namespace
