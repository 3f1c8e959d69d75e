#include "samplers/NetworkMonitor.h"
#include "samplers/NetworkInterfaceState.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <QDir>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::ScratchTree;

namespace {

using namespace std::chrono_literals;

const Instant kStart = Instant(std::chrono::seconds(1'700'000'000));

NetworkCounterSample sampleAt(Instant when, std::uint64_t received, std::uint64_t sent) {
    return {when, received, sent};
}

// --- rates ----------------------------------------------------------------------------------

struct RatesCase {
    const char* name;
    NetworkCounterSample from;
    NetworkCounterSample to;
    std::optional<NetworkRates> expected;
};

class NetworkRatesTest : public ::testing::TestWithParam<RatesCase> {};

TEST_P(NetworkRatesTest, FollowsTheCounters) {
    EXPECT_EQ(NetworkProviding::rates(GetParam().from, GetParam().to), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Intervals, NetworkRatesTest,
    ::testing::Values(
        RatesCase{"OneSecond", sampleAt(kStart, 1000, 500), sampleAt(kStart + 1s, 3000, 1500),
                  NetworkRates{2000, 1000}},
        RatesCase{"HalfSecondDoubles", sampleAt(kStart, 0, 0), sampleAt(kStart + 500ms, 1000, 10),
                  NetworkRates{2000, 20}},
        RatesCase{"EqualTimestamps", sampleAt(kStart, 0, 0), sampleAt(kStart, 1000, 1000),
                  std::nullopt},
        RatesCase{"ClockWentBack", sampleAt(kStart, 0, 0), sampleAt(kStart - 1s, 1000, 1000),
                  std::nullopt},
        // An interface vanished (or its counter reset): that direction reads 0, not 2^64.
        RatesCase{"ReceivedWentDown", sampleAt(kStart, 5000, 100), sampleAt(kStart + 2s, 1000, 300),
                  NetworkRates{0, 100}},
        RatesCase{"BothWentDown", sampleAt(kStart, 5000, 5000), sampleAt(kStart + 1s, 0, 0),
                  NetworkRates{0, 0}},
        RatesCase{"NothingMoved", sampleAt(kStart, 7, 7), sampleAt(kStart + 5s, 7, 7),
                  NetworkRates{0, 0}},
        RatesCase{"FullRange", sampleAt(kStart, 0, 0),
                  sampleAt(kStart + 1s, UINT64_MAX, UINT64_MAX),
                  NetworkRates{static_cast<double>(UINT64_MAX), static_cast<double>(UINT64_MAX)}}),
    [](const auto& info) { return std::string(info.param.name); });

// --- attributes -----------------------------------------------------------------------------

TEST(NetworkInterfaceStateTest, ParsesTheSysfsAttributes) {
    EXPECT_EQ(NetworkInterfaceState::parseFlags("0x1003\n"), 0x1003u);
    EXPECT_EQ(NetworkInterfaceState::parseFlags("0x9"), 0x9u);
    EXPECT_EQ(NetworkInterfaceState::parseFlags("1003"), 0x1003u);
    EXPECT_FALSE(NetworkInterfaceState::parseFlags("0x"));
    EXPECT_FALSE(NetworkInterfaceState::parseFlags(""));
    EXPECT_FALSE(NetworkInterfaceState::parseFlags("0x10zz"));
    EXPECT_FALSE(NetworkInterfaceState::parseFlags("0x123456789"));

    EXPECT_EQ(NetworkInterfaceState::parseRunning("up\n"), true);
    EXPECT_EQ(NetworkInterfaceState::parseRunning("unknown\n"), true);
    EXPECT_EQ(NetworkInterfaceState::parseRunning("down\n"), false);
    EXPECT_EQ(NetworkInterfaceState::parseRunning("dormant"), false);
    EXPECT_EQ(NetworkInterfaceState::parseRunning("lowerlayerdown\n"), false);
    EXPECT_FALSE(NetworkInterfaceState::parseRunning(""));
    EXPECT_FALSE(NetworkInterfaceState::parseRunning("upp"));

    EXPECT_EQ(NetworkInterfaceState::parseCounter("18446744073709551615\n"), UINT64_MAX);
    EXPECT_FALSE(NetworkInterfaceState::parseCounter("18446744073709551616"));
    EXPECT_FALSE(NetworkInterfaceState::parseCounter("-1"));
}

struct CountingCase {
    std::uint32_t flags;
    bool running;
    bool counted;
};

class NetworkCountingRuleTest : public ::testing::TestWithParam<CountingCase> {};

TEST_P(NetworkCountingRuleTest, UpRunningAndNotLoopback) {
    const NetworkInterfaceState state{GetParam().flags, GetParam().running};
    EXPECT_EQ(state.isCounted(), GetParam().counted);
}

INSTANTIATE_TEST_SUITE_P(Flags, NetworkCountingRuleTest,
                         ::testing::Values(CountingCase{0x1003, true, true},
                                           CountingCase{0x1003, false, false}, // no carrier
                                           CountingCase{0x1002, true, false},  // down
                                           CountingCase{0x9, true, false},     // loopback
                                           CountingCase{0x49, true, false},    // lo, running bit
                                           CountingCase{0x91, true, true},     // tunnel
                                           CountingCase{0x0, false, false}));

// --- readings -------------------------------------------------------------------------------

struct FixtureCase {
    const char* machine;
    std::uint64_t received;
    std::uint64_t sent;
};

class NetworkFixtureTest : public ::testing::TestWithParam<FixtureCase> {};

TEST_P(NetworkFixtureTest, SumsTheCountedInterfaces) {
    NetworkMonitor monitor(KernelRoots(fixtureRoot(GetParam().machine)), [] { return kStart; });
    const auto sample = monitor.currentCounters();
    ASSERT_TRUE(sample);
    EXPECT_EQ(sample->timestamp, kStart);
    EXPECT_EQ(sample->bytesReceived, GetParam().received);
    EXPECT_EQ(sample->bytesSent, GetParam().sent);
    EXPECT_EQ(monitor.currentCounters(), sample) << "a second reading from the kept-open files";
}

INSTANTIATE_TEST_SUITE_P(
    Machines, NetworkFixtureTest,
    ::testing::Values(
        // enp3s0 + wlp2s0 + wg0 (operstate unknown). Not: lo, docker0 (no carrier), virbr0
        // (down), veth9c1 (lower layer down), an entry with garbage flags, one with an empty
        // counter, and bonding_masters, a file.
        FixtureCase{"desktop-intel", 123456789012ull + 5000 + 300, 9876543210ull + 4000 + 200},
        // wlan0 + usb0 received overflows 64 bits: it saturates instead of wrapping.
        FixtureCase{"raspberry-pi", UINT64_MAX, 5000 + 6000},
        // Only a loopback: a reading of nothing, not a failure.
        FixtureCase{"container-lxcfs", 0, 0}),
    [](const auto& info) {
        std::string name = info.param.machine;
        std::erase(name, '-');
        return name;
    });

void writeInterface(const ScratchTree& tree, const QString& name, const char* flags,
                    const char* operstate, std::uint64_t received, std::uint64_t sent) {
    const QString base = "sys/class/net/" + name + "/";
    tree.write(base + "flags", flags);
    tree.write(base + "operstate", operstate);
    tree.write(base + "statistics/rx_bytes", QByteArray::number(received) + "\n");
    tree.write(base + "statistics/tx_bytes", QByteArray::number(sent) + "\n");
}

TEST(NetworkMonitorTest, FollowsInterfacesThatComeGoAndReset) {
    ScratchTree tree;
    writeInterface(tree, "lo", "0x9\n", "unknown\n", 50, 50);
    writeInterface(tree, "eth0", "0x1003\n", "up\n", 1000, 100);
    writeInterface(tree, "wlan0", "0x1003\n", "up\n", 2000, 200);
    NetworkMonitor monitor{KernelRoots(tree.root())};

    auto sample = monitor.currentCounters();
    ASSERT_TRUE(sample);
    EXPECT_EQ(sample->bytesReceived, 3000u);

    // wlan0 vanishes: its bytes leave the total at once.
    QDir(QString::fromStdString(tree.path("sys/class/net/wlan0"))).removeRecursively();
    sample = monitor.currentCounters();
    ASSERT_TRUE(sample);
    EXPECT_EQ(sample->bytesReceived, 1000u);
    EXPECT_EQ(sample->bytesSent, 100u);

    // It comes back with reset counters, and a new interface appears.
    writeInterface(tree, "wlan0", "0x1003\n", "up\n", 10, 1);
    writeInterface(tree, "usb0", "0x1003\n", "unknown\n", 5, 5);
    sample = monitor.currentCounters();
    ASSERT_TRUE(sample);
    EXPECT_EQ(sample->bytesReceived, 1015u);
    EXPECT_EQ(sample->bytesSent, 106u);

    // eth0 loses its carrier, then its counters turn to garbage mid-read.
    tree.write("sys/class/net/eth0/operstate", "down\n");
    EXPECT_EQ(monitor.currentCounters()->bytesReceived, 15u);
    tree.write("sys/class/net/eth0/operstate", "up\n");
    tree.write("sys/class/net/eth0/statistics/rx_bytes", "12ab\n");
    EXPECT_EQ(monitor.currentCounters()->bytesReceived, 15u);
    tree.write("sys/class/net/eth0/statistics/rx_bytes", "4000\n");
    EXPECT_EQ(monitor.currentCounters()->bytesReceived, 4015u);
}

TEST(NetworkMonitorTest, NoInterfacesIsAFailedReadingThatRecovers) {
    ScratchTree tree;
    NetworkMonitor monitor{KernelRoots(tree.root())};
    EXPECT_FALSE(monitor.currentCounters()) << "no directory";
    tree.makeDirectory("sys/class/net");
    EXPECT_FALSE(monitor.currentCounters()) << "an empty directory";
    EXPECT_FALSE(monitor.currentCounters()) << "still empty (logged once)";
    writeInterface(tree, "eth0", "0x1003\n", "up\n", 7, 8);
    const auto sample = monitor.currentCounters();
    ASSERT_TRUE(sample);
    EXPECT_EQ(sample->bytesReceived, 7u);
    EXPECT_EQ(sample->bytesSent, 8u);
}

TEST(NetworkMonitorTest, ManyInterfacesAreReadWithoutKeepingTheirFilesOpen) {
    ScratchTree tree;
    for (int index = 0; index < 40; ++index)
        writeInterface(tree, QString("veth%1").arg(index), "0x1003\n", "up\n", 1, 2);
    NetworkMonitor monitor{KernelRoots(tree.root())};
    for (int reading = 0; reading < 3; ++reading) {
        const auto sample = monitor.currentCounters();
        ASSERT_TRUE(sample);
        EXPECT_EQ(sample->bytesReceived, 40u);
        EXPECT_EQ(sample->bytesSent, 80u);
    }
}

TEST(NetworkMonitorTest, LiveReadingMatchesProcNetDev) {
    // /proc/net/dev lists the same counters; sum its non-loopback lines whose interface is
    // counted, then check the monitor lands between two such sums taken around it.
    auto sumProcNetDev = [] {
        QFile file("/proc/net/dev");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        std::uint64_t received = 0;
        const QList<QByteArray> lines = file.readAll().split('\n');
        for (const QByteArray& line : lines.mid(2)) {
            const auto colon = line.indexOf(':');
            if (colon < 0)
                continue;
            const QByteArray name = line.left(colon).trimmed();
            QFile flags("/sys/class/net/" + name + "/flags");
            QFile operstate("/sys/class/net/" + name + "/operstate");
            if (!flags.open(QIODevice::ReadOnly) || !operstate.open(QIODevice::ReadOnly))
                continue;
            const auto state = NetworkInterfaceState{
                *NetworkInterfaceState::parseFlags(flags.readAll().toStdString()),
                NetworkInterfaceState::parseRunning(operstate.readAll().toStdString())
                    .value_or(false)};
            if (state.isCounted())
                received += line.mid(colon + 1).simplified().split(' ').value(0).toULongLong();
        }
        return received;
    };
    NetworkMonitor monitor;
    const std::uint64_t before = sumProcNetDev();
    const auto sample = monitor.currentCounters();
    const std::uint64_t after = sumProcNetDev();
    ASSERT_TRUE(sample);
    EXPECT_GE(sample->bytesReceived, before);
    EXPECT_LE(sample->bytesReceived, after);
}

} // namespace
