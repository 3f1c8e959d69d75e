#include "samplers/network/NetworkMonitor.h"
#include "samplers/network/NetworkInterfaceState.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <QDir>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::ScratchTree;
using namespace std::chrono_literals;

namespace {

const Instant kStart = Instant(std::chrono::seconds(1'700'000'000));

TEST(NetworkRatesTest, FollowTheCountersAndReadZeroWhenOneWentDown) {
    using Sample = NetworkCounterSample;
    const std::tuple<Sample, Sample, std::optional<NetworkRates>> cases[] = {
        {{kStart, 1000, 500}, {kStart + 1s, 3000, 1500}, NetworkRates{2000, 1000}},
        {{kStart, 0, 0}, {kStart + 500ms, 1000, 10}, NetworkRates{2000, 20}},
        {{kStart, 0, 0}, {kStart, 1000, 1000}, std::nullopt}, // equal timestamps
        {{kStart, 0, 0}, {kStart - 1s, 1000, 1000}, std::nullopt},
        // An interface vanished (or its counter reset): that direction reads 0, not 2^64.
        {{kStart, 5000, 100}, {kStart + 2s, 1000, 300}, NetworkRates{0, 100}},
        {{kStart, 5000, 5000}, {kStart + 1s, 0, 0}, NetworkRates{0, 0}},
        {{kStart, 7, 7}, {kStart + 5s, 7, 7}, NetworkRates{0, 0}},
        {{kStart, 0, 0},
         {kStart + 1s, UINT64_MAX, UINT64_MAX},
         NetworkRates{double(UINT64_MAX), double(UINT64_MAX)}}};
    for (const auto& [from, to, rates] : cases)
        EXPECT_EQ(NetworkProviding::rates(from, to), rates)
            << from.bytesReceived << " -> " << to.bytesReceived;
}

TEST(NetworkInterfaceStateTest, ParsesAttributesAndCountsUpRunningNonLoopback) {
    using State = NetworkInterfaceState;
    for (const auto& [text, flags] :
         {std::pair<const char*, std::optional<std::uint32_t>>{"0x1003\n", 0x1003},
          {"0x9", 0x9},
          {"1003", 0x1003},
          {"0x", std::nullopt},
          {"", std::nullopt},
          {"0x10zz", std::nullopt},
          {"0x123456789", std::nullopt}})
        EXPECT_EQ(State::parseFlags(text), flags) << text;
    for (const auto& [text, running] : {std::pair<const char*, std::optional<bool>>{"up\n", true},
                                        {"unknown\n", true},
                                        {"down\n", false},
                                        {"dormant", false},
                                        {"lowerlayerdown\n", false},
                                        {"", std::nullopt},
                                        {"upp", std::nullopt}})
        EXPECT_EQ(State::parseRunning(text), running) << text;
    EXPECT_EQ(State::parseCounter("18446744073709551615\n"), UINT64_MAX);
    EXPECT_FALSE(State::parseCounter("18446744073709551616"));
    EXPECT_FALSE(State::parseCounter("-1"));

    const std::tuple<std::uint32_t, bool, bool> rules[] = {
        {0x1003, true, true},  {0x1003, false, false}, // no carrier
        {0x1002, true, false},                         // down
        {0x9, true, false},    {0x49, true, false},    // loopback
        {0x91, true, true},                            // a tunnel
        {0x0, false, false}};
    for (const auto& [flags, running, counted] : rules)
        EXPECT_EQ((State{flags, running}.isCounted()), counted) << flags << running;
}

TEST(NetworkMonitorTest, FixtureMachinesSumTheCountedInterfaces) {
    const std::tuple<const char*, std::uint64_t, std::uint64_t, QStringList> cases[] = {
        // enp3s0 + wlp2s0 + wg0 (operstate unknown). Not: lo, docker0 (no carrier), virbr0
        // (down), veth9c1 (lower layer down), an entry with garbage flags, one with an empty
        // counter, and bonding_masters, a file.
        {"desktop-intel",
         123456789012ull + 5000 + 300,
         9876543210ull + 4000 + 200,
         {"enp3s0", "wg0", "wlp2s0"}},
        // wlan0 + usb0 received overflows 64 bits: it saturates instead of wrapping.
        {"raspberry-pi", UINT64_MAX, 5000 + 6000, {"usb0", "wlan0"}},
        // Only a loopback: a reading of nothing, not a failure.
        {"container-lxcfs", 0, 0, {}}};
    for (const auto& [machine, received, sent, names] : cases) {
        NetworkMonitor monitor(KernelRoots(fixtureRoot(machine)), [] { return kStart; });
        for (const char* pass : {"first", "from the kept-open files"}) {
            const auto sample = monitor.currentCounters();
            ASSERT_TRUE(sample) << machine;
            EXPECT_EQ(*sample, (NetworkCounterSample{kStart, received, sent, names}))
                << machine << ", " << pass;
        }
    }
}

void writeInterface(const ScratchTree& tree, const QString& name, const char* flags,
                    const char* operstate, std::uint64_t received, std::uint64_t sent) {
    const QString base = "sys/class/net/" + name + "/";
    tree.write(base + "flags", flags);
    tree.write(base + "operstate", operstate);
    tree.write(base + "statistics/rx_bytes", QByteArray::number(received) + "\n");
    tree.write(base + "statistics/tx_bytes", QByteArray::number(sent) + "\n");
}

// Received and sent bytes, or none.
using Totals = std::pair<std::uint64_t, std::uint64_t>;
std::optional<Totals> totals(NetworkMonitor& monitor) {
    const auto sample = monitor.currentCounters();
    return sample ? std::optional(Totals(sample->bytesReceived, sample->bytesSent)) : std::nullopt;
}

TEST(NetworkMonitorTest, FollowsInterfacesThatComeGoAndReset) {
    ScratchTree tree;
    NetworkMonitor monitor{KernelRoots(tree.root())};
    EXPECT_FALSE(totals(monitor)) << "no directory";
    tree.makeDirectory("sys/class/net");
    EXPECT_FALSE(totals(monitor)) << "an empty directory";
    writeInterface(tree, "lo", "0x9\n", "unknown\n", 50, 50);
    writeInterface(tree, "eth0", "0x1003\n", "up\n", 1000, 100);
    writeInterface(tree, "wlan0", "0x1003\n", "up\n", 2000, 200);
    EXPECT_EQ(totals(monitor), Totals(3000, 300));

    // wlan0 vanishes: its bytes leave the total at once.
    QDir(QString::fromStdString(tree.path("sys/class/net/wlan0"))).removeRecursively();
    EXPECT_EQ(totals(monitor), Totals(1000, 100));

    // It comes back with reset counters, and a new interface appears.
    writeInterface(tree, "wlan0", "0x1003\n", "up\n", 10, 1);
    writeInterface(tree, "usb0", "0x1003\n", "unknown\n", 5, 5);
    EXPECT_EQ(totals(monitor), Totals(1015, 106));

    // eth0 loses its carrier, then its counters turn to garbage mid-read.
    tree.write("sys/class/net/eth0/operstate", "down\n");
    EXPECT_EQ(totals(monitor), Totals(15, 6));
    tree.write("sys/class/net/eth0/operstate", "up\n");
    tree.write("sys/class/net/eth0/statistics/rx_bytes", "12ab\n");
    EXPECT_EQ(totals(monitor), Totals(15, 6));
    tree.write("sys/class/net/eth0/statistics/rx_bytes", "4000\n");
    EXPECT_EQ(totals(monitor), Totals(4015, 106));
}

// Past the first 32 interfaces the files are opened for each reading: still fresh values.
TEST(NetworkMonitorTest, ManyInterfacesAreAllReadAfresh) {
    ScratchTree tree;
    for (int index = 0; index < 40; ++index)
        writeInterface(tree, QString("veth%1").arg(index), "0x1003\n", "up\n", 1, 2);
    NetworkMonitor monitor{KernelRoots(tree.root())};
    EXPECT_EQ(totals(monitor), Totals(40, 80));
    for (const std::uint64_t last : {101u, 201u}) {
        writeInterface(tree, "veth39", "0x1003\n", "up\n", last, 2);
        EXPECT_EQ(totals(monitor), Totals(39 + last, 80));
    }
}

// With physicalOnly, only interfaces with a device link count; the switch applies from the
// next reading, and the sample names what it counted.
TEST(NetworkMonitorTest, PhysicalOnlyCountsInterfacesWithADevice) {
    ScratchTree tree;
    const struct {
        const char* name;
        bool device;
        std::uint64_t received;
    } interfaces[] = {{"eth0", true, 1},
                      {"wlan0", true, 10},
                      {"veth0", false, 100},
                      {"wg0", false, 1000},
                      {"br0", false, 10000}};
    for (const auto& interface : interfaces) {
        writeInterface(tree, interface.name, "0x1003\n", "up\n", interface.received, 0);
        if (interface.device) // a dangling link counts as well: only its presence matters
            QFile::link("../../../devices/pci0000:00",
                        QString::fromStdString(
                            tree.path(QString("sys/class/net/%1/device").arg(interface.name))));
    }
    NetworkMonitor monitor{KernelRoots(tree.root())};
    const std::tuple<bool, std::uint64_t, QStringList> steps[] = {
        {false, 11111, {"br0", "eth0", "veth0", "wg0", "wlan0"}},
        {true, 11, {"eth0", "wlan0"}},
        {false, 11111, {"br0", "eth0", "veth0", "wg0", "wlan0"}}};
    for (const auto& [physicalOnly, received, names] : steps) {
        monitor.setPhysicalOnly(physicalOnly);
        const auto sample = monitor.currentCounters();
        ASSERT_TRUE(sample);
        EXPECT_EQ(sample->bytesReceived, received) << physicalOnly;
        EXPECT_EQ(sample->interfaces, names) << physicalOnly;
    }
}

} // namespace
