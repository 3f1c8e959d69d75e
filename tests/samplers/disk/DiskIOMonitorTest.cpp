#include "samplers/disk/DiskIOMonitor.h"
#include "model/Logging.h"
#include "samplers/disk/DiskStats.h"
#include "support/FixtureTree.h"
#include "support/LogCapture.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::LogCapture;
using lumetra::testing::ScratchTree;

namespace {

constexpr std::uint64_t kSector = 512;

TEST(DiskStatsTest, ReadsTheSectorCountsOfEveryKernelsLineFormat) {
    const std::tuple<const char*, std::uint64_t, std::uint64_t, DiskStatsLineError> cases[] = {
        // Linux 2.6 to 4.17: 11 counters
        {"   8       0 sda 1 2 3 4 5 6 7 8 9 10 11", 3, 7, DiskStatsLineError::none},
        // 4.18: discard counters; 5.5: flush counters; later columns are ignored
        {"   8       0 sda 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15", 3, 7, DiskStatsLineError::none},
        {" 259 0 nvme0n1 1 2 30 4 5 6 70 8 9 10 11 12 13 14 15 16 17", 30, 70,
         DiskStatsLineError::none},
        {"8 0 sda 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20", 3, 7,
         DiskStatsLineError::none},
        {"\t8\t0\tsda\t1 2 3 4 5 6 7 8 9 10 11", 3, 7, DiskStatsLineError::none},
        {"8 0 sda 0 0 18446744073709551615 0 0 0 1 0 0 0 0", UINT64_MAX, 1,
         DiskStatsLineError::none},
        // Linux 2.6.24 and older: a partition's line had 4 counters
        {"   8       1 sda1 100 200 300 400", 200, 0, DiskStatsLineError::tooFewFields},
        {"   8       0 sda 1 2 3 4 5 6 7 8 9 10", 3, 7, DiskStatsLineError::tooFewFields},
        {"   8       0 sda", 0, 0, DiskStatsLineError::tooFewFields},
        {"8 0", 0, 0, DiskStatsLineError::tooFewFields},
        {"8 0 sda 1 2 x 4 5 6 7 8 9 10 11", 0, 7, DiskStatsLineError::badNumber},
        {"8 0 sda 1 2 3 4 5 6 -7 8 9 10 11", 3, 0, DiskStatsLineError::badNumber},
        {"8 0 sda 1 2 99999999999999999999 4 5 6 7 8 9 10 11", 0, 7, DiskStatsLineError::badNumber},
        {"a b sda 1 2 3 4 5 6 7 8 9 10 11", 3, 7, DiskStatsLineError::badNumber}};
    for (const auto& [text, read, written, error] : cases) {
        const DiskStatsLineParse parse = parseDiskStatsLine(text);
        EXPECT_EQ(parse.error, error) << text;
        if (error == DiskStatsLineError::none) {
            EXPECT_EQ(std::pair(parse.line.sectorsRead, parse.line.sectorsWritten),
                      std::pair(read, written))
                << text;
        }
    }
}

TEST(DiskStatsTest, NamesTellVirtualDevicesAndPartitionsApart) {
    const std::tuple<const char*, bool, bool> cases[] = {
        // name, virtual, partition by its name
        {"sda", false, false},         {"sda1", false, true},      {"sdaa12", false, true},
        {"nvme0n1", false, false},     {"nvme0n1p2", false, true}, {"mmcblk0", false, false},
        {"mmcblk0p1", false, true},    {"vda", false, false},      {"xvda3", false, true},
        {"hdc", false, false},         {"loop0", true, false},     {"loop12p1", true, true},
        {"dm-0", true, false},         {"zram0", true, false},     {"ram15", true, false},
        {"md127", true, false},        {"nbd3", true, false},      {"sr0", false, false},
        {"mmcblk0boot0", false, false}};
    for (const auto& [name, isVirtual, isPartition] : cases) {
        EXPECT_EQ(isVirtualBlockDeviceName(name), isVirtual) << name;
        EXPECT_EQ(looksLikePartitionName(name), isPartition) << name;
    }
}

TEST(DiskIOMonitorTest, CountsOnlyTheWholePhysicalDisksOfAMachine) {
    // desktop-intel: an NVMe disk with three partitions, SATA and USB disks (one with the
    // 14-field lines of an older kernel), an SD card; a loop device, device mapper over the
    // NVMe partition, zram and software RAID that must not count a second time.
    DiskIOMonitor monitor(KernelRoots(fixtureRoot("desktop-intel")));
    const std::optional<DiskIOCounterSample> sample = monitor.currentCounters();
    ASSERT_TRUE(sample);
    EXPECT_EQ(sample->devices,
              (QStringList{"mmcblk0", "nvme0n1", "sda", "sdb", "sdc", "sdd", "sde", "sdf", "sdg"}));
    EXPECT_EQ(sample->bytesRead,
              (120000000ull + 8000000 + 2000 + 1000 + 0 + 400 + 600 + 800 + 480) * kSector);
    EXPECT_EQ(sample->bytesWritten,
              (80000000ull + 6000000 + 0 + 80 + 0 + 800 + 1600 + 2400) * kSector);
}

TEST(DiskIOMonitorTest, RatesFollowTheNetworkRules) {
    const auto at = [](double seconds, std::uint64_t read, std::uint64_t written) {
        return DiskIOCounterSample{
            Instant(std::chrono::milliseconds(static_cast<long long>(seconds * 1000))),
            read,
            written,
            {"sda"}};
    };
    const std::tuple<DiskIOCounterSample, DiskIOCounterSample, std::optional<DiskIORates>> cases[] =
        {{at(1, 1000, 5000), at(3, 3000, 9000), DiskIORates{1000, 2000, {"sda"}}},
         // a counter that went back (a disk removed, reset or wrapped): 0 for that direction
         {at(1, 5000, 5000), at(2, 1000, 6000), DiskIORates{0, 1000, {"sda"}}},
         // a long interval (a suspend, a stop) is averaged over its whole length
         {at(0, 0, 0), at(600, 600000, 0), DiskIORates{1000, 0, {"sda"}}},
         {at(2, 0, 0), at(2, 100, 100), std::nullopt},
         {at(3, 0, 0), at(2, 100, 100), std::nullopt}};
    for (const auto& [from, to, rates] : cases)
        EXPECT_EQ(DiskIOProviding::rates(from, to), rates);
}

QByteArray statsLine(const char* name, std::uint64_t read, std::uint64_t written) {
    return QByteArray("   8       0 ") + name + " 1 0 " + QByteArray::number(quint64(read)) +
           " 1 1 0 " + QByteArray::number(quint64(written)) + " 1 0 1 1 0 0 0 0\n";
}

// A disk that vanishes, one that comes back with fresh counters, a line cut short, an
// unreadable file: a sane sample each time (or none), and one log line per change.
TEST(DiskIOMonitorTest, SurvivesDisksComingAndGoingAndBadLines) {
    ScratchTree tree;
    for (const char* disk : {"sda", "sdb"})
        tree.write(QString("sys/block/%1/device/vendor").arg(disk), "ATA\n");
    tree.makeDirectory("sys/block/zd0"); // a ZFS volume: no device behind it, not counted
    tree.write("proc/diskstats",
               statsLine("sda", 100, 200) + statsLine("sdb", 10, 20) + statsLine("zd0", 5, 5));
    LogCapture log(logMonitoring());
    DiskIOMonitor monitor(KernelRoots(tree.root()));
    auto sample = monitor.currentCounters();
    ASSERT_TRUE(sample);
    EXPECT_EQ(std::tuple(sample->bytesRead, sample->bytesWritten, sample->devices),
              std::tuple(110 * kSector, 220 * kSector, QStringList{"sda", "sdb"}));
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join('\n').toStdString();

    // sdb unplugged
    QDir(QString::fromStdString(tree.path("sys/block/sdb"))).removeRecursively();
    tree.write("proc/diskstats", statsLine("sda", 150, 250));
    sample = monitor.currentCounters();
    ASSERT_TRUE(sample);
    EXPECT_EQ(std::tuple(sample->bytesRead, sample->devices),
              std::tuple(150 * kSector, QStringList{"sda"}));
    EXPECT_EQ(log.lines(), QStringList{"Disk throughput now counts: sda"});

    // A counted disk's line cut short: left out, said once however long it lasts.
    for (int tick = 0; tick < 3; ++tick) {
        tree.write("proc/diskstats", "   8       0 sda 1 0 160 1 1\n");
        sample = monitor.currentCounters();
        ASSERT_TRUE(sample);
        EXPECT_EQ(sample->bytesRead, 0u);
    }
    EXPECT_EQ(log.lines().filter("a line with 8 fields, at least 14 expected").size(), 1)
        << log.lines().join('\n').toStdString();

    // Missing, then a directory in its place: no sample, one line for the outage.
    tree.remove("proc/diskstats");
    EXPECT_FALSE(monitor.currentCounters());
    tree.makeDirectory("proc/diskstats");
    EXPECT_FALSE(monitor.currentCounters());
    EXPECT_EQ(log.lines().filter("diskstats: No such file or directory").size(), 1);
    QDir(QString::fromStdString(tree.path("proc/diskstats"))).removeRecursively();

    // Garbage and an empty file read as no disks, not as a failure.
    for (const QByteArray& odd : {QByteArray("\x01\x02garbage\n\n"), QByteArray()}) {
        tree.write("proc/diskstats", odd);
        sample = monitor.currentCounters();
        ASSERT_TRUE(sample);
        EXPECT_EQ(std::tuple(sample->bytesRead, sample->bytesWritten), std::tuple(0u, 0u));
    }
}

// In a container without /sys/block the names decide, and the reader says so once.
TEST(DiskIOMonitorTest, WithoutSysfsPartitionsAreToldByName) {
    ScratchTree tree;
    tree.write("proc/diskstats", statsLine("vda", 10, 20) + statsLine("vda1", 10, 20) +
                                     statsLine("nvme0n1", 1, 2) + statsLine("nvme0n1p1", 1, 2) +
                                     statsLine("loop0", 5, 5) + statsLine("dm-0", 5, 5));
    LogCapture log(logMonitoring());
    DiskIOMonitor monitor(KernelRoots(tree.root()));
    for (int tick = 0; tick < 2; ++tick) {
        const auto sample = monitor.currentCounters();
        ASSERT_TRUE(sample);
        EXPECT_EQ(sample->devices, (QStringList{"nvme0n1", "vda"}));
        EXPECT_EQ(sample->bytesWritten, 22 * kSector);
    }
    EXPECT_EQ(log.lines().filter("telling disks from partitions by their names").size(), 1);
}

} // namespace
