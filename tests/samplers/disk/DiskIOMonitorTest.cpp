#include "samplers/disk/DiskIOMonitor.h"
#include "model/Logging.h"
#include "samplers/disk/DiskStats.h"
#include "support/FixtureTree.h"
#include "support/LogCapture.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

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
    tree.write("proc/diskstats", statsLine("sda", 100, 200) + statsLine("sdb", 10, 20));
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

// The kernel's own counters of this machine's disks, summed the plain way: every
// /proc/diskstats line whose device has a `device` link under /sys/block.
std::pair<std::uint64_t, std::uint64_t> kernelWholeDiskBytes(const QString& onlyDevice = {}) {
    QFile file("/proc/diskstats");
    if (!file.open(QIODevice::ReadOnly))
        return {};
    std::uint64_t read = 0;
    std::uint64_t written = 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 14)
            continue;
        const QString name = QString::fromUtf8(fields[2]);
        const bool wanted = onlyDevice.isEmpty()
                                ? QFileInfo::exists("/sys/block/" + name + "/device")
                                : name == onlyDevice;
        if (!wanted)
            continue;
        read += fields[5].toULongLong() * kSector;
        written += fields[9].toULongLong() * kSector;
    }
    return {read, written};
}

// A known write through a loop device and its partition, over a file on this machine's disk:
// the throughput counts what the physical disk did (the kernel's own counters, within 1 %),
// and the loop device and its partition, which saw the same bytes, not a second time.
class LoopDeviceTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "needs root to attach a loop device";
        if (QStandardPaths::findExecutable("losetup", {"/usr/sbin", "/sbin", "/usr/bin"}).isEmpty())
            GTEST_SKIP() << "needs losetup (util-linux)";
        // On the build tree's disk, not in a tmpfs /tmp: the writes must reach a disk.
        ASSERT_TRUE(dir_.isValid());
        QFile file(image_);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        // One MBR partition from sector 2048 to the end, so the kernel makes loopNp1.
        QByteArray mbr(512, '\0');
        const quint32 start = 2048;
        const quint32 sectors = (kImageBytes / kSector) - start;
        mbr[446 + 4] = char(0x83);
        for (int i = 0; i < 4; ++i) {
            mbr[446 + 8 + i] = char((start >> (8 * i)) & 0xff);
            mbr[446 + 12 + i] = char((sectors >> (8 * i)) & 0xff);
        }
        mbr[510] = char(0x55);
        mbr[511] = char(0xaa);
        file.write(mbr);
        // Allocated, not sparse: the writes below then change no file-system metadata.
        file.write(QByteArray(kImageBytes - 512, '\0'));
        file.close();
        ::sync();
        QProcess losetup;
        losetup.start("losetup", {"--direct-io=on", "--partscan", "--find", "--show", image_});
        losetup.waitForFinished(10000);
        device_ = QString::fromUtf8(losetup.readAllStandardOutput()).trimmed();
        if (losetup.exitCode() != 0 || device_.isEmpty())
            GTEST_SKIP() << "no loop device: " << losetup.readAllStandardError().toStdString();
        partition_ = device_ + "p1";
        for (int wait = 0; wait < 20 && !QFileInfo::exists(partition_); ++wait)
            ::usleep(100'000);
        // A kernel without MBR support in its partition scan: partx reads the table itself.
        if (!QFileInfo::exists(partition_))
            QProcess::execute("partx", {"--add", device_});
    }

    void TearDown() override {
        if (!device_.isEmpty())
            QProcess::execute("losetup", {"--detach", device_});
    }

    static constexpr qint64 kImageBytes = 48 << 20;
    QTemporaryDir dir_{QDir::currentPath() + "/lumetra-diskio-XXXXXX"};
    QString image_ = dir_.filePath("disk.img");
    QString device_;
    QString partition_;
};

TEST_F(LoopDeviceTest, AKnownWriteCountsOnceOnThePhysicalDisk) {
    ASSERT_TRUE(QFileInfo::exists(partition_)) << "the kernel made no partition device";
    const QString loopName = QFileInfo(device_).fileName();
    DiskIOMonitor monitor;
    const auto loopBefore = kernelWholeDiskBytes(loopName);
    const auto partitionBefore = kernelWholeDiskBytes(loopName + "p1");
    const auto kernelBefore = kernelWholeDiskBytes();
    const auto before = monitor.currentCounters();

    constexpr int kMiB = 32;
    ASSERT_EQ(
        QProcess::execute("dd", {"if=/dev/zero", "of=" + partition_, "bs=1M",
                                 QString("count=%1").arg(kMiB), "oflag=direct", "status=none"}),
        0);

    const auto after = monitor.currentCounters();
    const auto kernelAfter = kernelWholeDiskBytes();
    const auto loopAfter = kernelWholeDiskBytes(loopName);
    const auto partitionAfter = kernelWholeDiskBytes(loopName + "p1");
    ASSERT_TRUE(before && after);
    EXPECT_FALSE(after->devices.contains(loopName));

    constexpr std::uint64_t kBytes = std::uint64_t(kMiB) << 20;
    // The loop device and its partition each saw the bytes...
    EXPECT_GE(loopAfter.second - loopBefore.second, kBytes);
    EXPECT_GE(partitionAfter.second - partitionBefore.second, kBytes);
    // ...the physical disk saw them once, and we count what it counted.
    const double ours = static_cast<double>(after->bytesWritten - before->bytesWritten);
    const double kernel = static_cast<double>(kernelAfter.second - kernelBefore.second);
    EXPECT_GE(ours, static_cast<double>(kBytes));
    EXPECT_NEAR(ours, kernel, kernel * 0.01);
    EXPECT_LT(ours, static_cast<double>(kBytes) * 1.5) << "counted more than once";
}

} // namespace
