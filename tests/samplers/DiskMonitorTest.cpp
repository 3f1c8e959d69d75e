#include "samplers/DiskMonitor.h"
#include "samplers/DiskMountFilter.h"
#include "samplers/DiskVolumeOrder.h"
#include "samplers/MountTable.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <QTemporaryFile>

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::ScratchTree;

namespace {

constexpr std::int64_t kGB = 1'000'000'000;

// --- the mount table ------------------------------------------------------------------------

TEST(MountTableTest, ReadsEveryFieldOfALine) {
    std::vector<MountTable::Entry> entries;
    const std::size_t malformed = MountTable::parse(
        "36 35 98:0 /mnt1 /mnt/parent rw,noatime master:1 shared:4 - ext3 /dev/root "
        "rw,errors=continue\n",
        entries);
    EXPECT_EQ(malformed, 0u);
    ASSERT_EQ(entries.size(), 1u);
    const MountTable::Entry& entry = entries[0];
    EXPECT_EQ(entry.id, 36);
    EXPECT_EQ(entry.parentId, 35);
    EXPECT_EQ(entry.major, 98u);
    EXPECT_EQ(entry.minor, 0u);
    EXPECT_EQ(entry.root, "/mnt1");
    EXPECT_EQ(entry.mountPoint, "/mnt/parent");
    EXPECT_EQ(entry.fsType, "ext3");
    EXPECT_EQ(entry.source, "/dev/root");
    EXPECT_TRUE(entry.hasOption("noatime"));
    EXPECT_TRUE(entry.hasOption("errors"));
    EXPECT_FALSE(entry.hasOption("error"));
    EXPECT_TRUE(entry.hasBlockDevice());
}

struct LineCase {
    const char* name;
    const char* line;
    bool parses;
    const char* mountPoint; // decoded
    const char* source;
};

class MountTableLineTest : public ::testing::TestWithParam<LineCase> {};

TEST_P(MountTableLineTest, ParsesOrSkips) {
    std::vector<MountTable::Entry> entries;
    const std::size_t malformed = MountTable::parse(GetParam().line, entries);
    ASSERT_EQ(entries.size(), GetParam().parses ? 1u : 0u);
    EXPECT_EQ(malformed, GetParam().parses ? 0u : 1u);
    if (GetParam().parses) {
        EXPECT_EQ(MountTable::decode(entries[0].mountPoint), GetParam().mountPoint);
        EXPECT_EQ(entries[0].source, GetParam().source);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lines, MountTableLineTest,
    ::testing::Values(
        LineCase{"NoOptionalFields", "29 1 259:2 / / rw - ext4 /dev/nvme0n1p2 rw", true, "/",
                 "/dev/nvme0n1p2"},
        LineCase{"SpaceInMountPoint",
                 "64 27 8:49 / /media/alex/My\\040Stick rw shared:44 - vfat /dev/sdd1 rw", true,
                 "/media/alex/My Stick", "/dev/sdd1"},
        LineCase{"TabBackslashAndNewline", "64 27 8:49 / /mnt/a\\011b\\134c\\012d rw - vfat x rw",
                 true, "/mnt/a\tb\\c\nd", "x"},
        LineCase{"UnfinishedEscapeKept", "64 27 8:49 / /mnt/a\\04 rw - vfat x rw", true,
                 "/mnt/a\\04", "x"},
        LineCase{"Utf8MountPoint", "64 27 8:49 / /media/Fotos\\040Å rw - vfat x rw", true,
                 "/media/Fotos Å", "x"},
        LineCase{"EmptySource", "90 29 0:70 / /mnt/odd rw - tmpfs  rw", true, "/mnt/odd", ""},
        LineCase{"NoSeparator", "29 1 259:2 / / rw shared:1 ext4 /dev/vda rw", false, "", ""},
        LineCase{"NoDevice", "29 1 259 / / rw - ext4 /dev/vda rw", false, "", ""},
        LineCase{"TextForId", "x 1 259:2 / / rw - ext4 /dev/vda rw", false, "", ""},
        LineCase{"CutShort", "29 1 259:2 /", false, "", ""},
        LineCase{"NoType", "29 1 259:2 / / rw -", false, "", ""}),
    [](const auto& info) { return std::string(info.param.name); });

// --- which mounts are volumes ---------------------------------------------------------------

struct FilterCase {
    const char* name;
    const char* table;
    std::vector<std::string> shown; // escaped mount points in table order
};

class DiskMountFilterTest : public ::testing::TestWithParam<FilterCase> {};

TEST_P(DiskMountFilterTest, ShowsEachLocalFileSystemOnce) {
    std::vector<MountTable::Entry> entries;
    MountTable::parse(GetParam().table, entries);
    std::vector<std::string> shown;
    const auto hidden = [](const MountTable::Entry& entry) {
        return entry.mountPoint == "/mnt/private";
    };
    for (const std::size_t index : DiskMountFilter::select(entries, hidden))
        shown.emplace_back(entries[index].mountPoint);
    EXPECT_EQ(shown, GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Tables, DiskMountFilterTest,
    ::testing::Values(
        FilterCase{"PseudoFileSystems",
                   "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                   "2 1 0:21 / /sys rw - sysfs sysfs rw\n"
                   "3 1 0:22 / /proc rw - proc proc rw\n"
                   "4 1 0:5 / /dev rw - devtmpfs udev rw\n"
                   "5 1 0:24 / /run rw - tmpfs tmpfs rw\n"
                   "6 2 0:27 / /sys/fs/cgroup rw - cgroup2 cgroup2 rw\n"
                   "7 2 0:28 / /sys/fs/cgroup/cpu rw - cgroup cgroup rw,cpu\n"
                   "8 1 0:31 / /proc/sys/fs/binfmt_misc rw - autofs systemd-1 rw\n"
                   "9 2 0:7 / /sys/kernel/debug rw - debugfs debugfs rw\n"
                   "10 1 0:63 / /var/lib/docker/overlay2/3f/merged rw - overlay overlay rw\n"
                   "11 5 0:70 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
                   // A kernel file system we have never heard of, without a device.
                   "12 1 0:71 / /sys/fs/newfs rw - newfs none rw\n",
                   {"/"}},
        FilterCase{"NetworkMounts",
                   "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                   "2 1 0:60 / /mnt/nas rw - nfs4 nas:/export rw\n"
                   "3 1 0:61 / /mnt/old rw - nfs nas:/old rw\n"
                   "4 1 0:62 / /mnt/share rw - cifs //nas/share rw\n"
                   "5 1 0:63 / /home/a/remote rw - fuse.sshfs a@host:/home/a rw\n"
                   "6 1 0:64 / /mnt/vm rw - 9p hostshare rw\n"
                   "7 1 0:65 / /mnt/ceph rw - ceph 10.0.0.1:/ rw\n",
                   {"/"}},
        FilterCase{"SnapImagesAndFuseDisks",
                   "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                   "2 1 7:0 / /snap/core22/1122 ro - squashfs /dev/loop0 ro\n"
                   "3 1 7:1 / /snap/firefox/3836 ro - squashfs /dev/loop1 ro\n"
                   "4 1 0:50 / /media/a/WIN rw - fuseblk /dev/sdb1 rw\n"
                   "5 1 0:51 / /tank rw - zfs tank rw\n"
                   "6 1 7:2 / /mnt/image rw - ext4 /dev/loop2 rw\n",
                   {"/", "/media/a/WIN", "/tank", "/mnt/image"}},
        FilterCase{"BindMountsKeepTheFileSystemRoot",
                   "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                   "2 1 8:17 /photos /srv/photos rw - ext4 /dev/sdb1 rw\n"
                   "3 1 8:17 / /mnt/data rw - ext4 /dev/sdb1 rw\n"
                   "4 1 8:17 /music /srv/music rw - ext4 /dev/sdb1 rw\n"
                   "5 1 8:1 /srv /srv/www rw - ext4 /dev/sda1 rw\n"
                   "6 1 8:33 /docs /srv/docs rw - ext4 /dev/sdc1 rw\n"
                   "7 1 8:33 /more /srv/more rw - ext4 /dev/sdc1 rw\n",
                   {"/", "/mnt/data", "/srv/docs"}},
        // Subvolumes of one btrfs share a device: its space shows once, at "/".
        FilterCase{"BtrfsSubvolumes",
                   "1 0 0:31 /@home /home rw - btrfs /dev/nvme0n1p2 rw,subvol=/@home\n"
                   "2 0 0:31 /@ / rw - btrfs /dev/nvme0n1p2 rw,subvol=/@\n",
                   {"/"}},
        FilterCase{"OverlayRootIsAlwaysShown",
                   "1 0 0:120 / / rw - overlay overlay rw,lowerdir=/a\n"
                   "2 1 0:123 / /proc rw - proc proc rw\n"
                   "3 1 254:1 /volumes/data /data rw - ext4 /dev/vdb1 rw\n",
                   {"/", "/data"}},
        // A second mount on the same point covers the first; systemd's automount points
        // work this way too.
        FilterCase{"CoveredMounts",
                   "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                   "2 1 8:17 / /mnt/usb rw - ext4 /dev/sdb1 rw\n"
                   "3 2 8:33 / /mnt/usb rw - vfat /dev/sdc1 rw\n"
                   "4 1 0:40 / /boot rw - autofs systemd-1 rw\n"
                   "5 4 8:2 / /boot rw - ext4 /dev/sda2 rw\n",
                   {"/", "/mnt/usb", "/boot"}},
        FilterCase{"HiddenByTheUser",
                   "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                   "2 1 8:17 / /mnt/private rw - ext4 /dev/sdb1 rw\n"
                   "3 1 8:33 / /mnt/tagged rw,x-gvfs-hide - ext4 /dev/sdc1 rw\n",
                   {"/"}},
        FilterCase{"NoMounts", "", {}}),
    [](const auto& info) { return std::string(info.param.name); });

// --- display order --------------------------------------------------------------------------

DiskVolume volumeNamed(const char* name, bool internal = true, bool boot = false) {
    DiskVolume volume;
    volume.id = QString("/v/") + name;
    volume.name = name;
    volume.isInternal = internal;
    volume.isBootVolume = boot;
    return volume;
}

struct OrderCase {
    const char* name;
    std::vector<DiskVolume> volumes;
    std::vector<QString> expectedIds;
};

class DiskVolumeOrderTest : public ::testing::TestWithParam<std::tuple<OrderCase, QLocale>> {};

TEST_P(DiskVolumeOrderTest, BootThenInternalThenNameIgnoringCase) {
    const auto& [order, locale] = GetParam();
    DiskVolumeList volumes = order.volumes;
    DiskVolumeOrder(locale).sort(volumes);
    std::vector<QString> ids;
    for (const DiskVolume& volume : volumes)
        ids.push_back(volume.id);
    EXPECT_EQ(ids, order.expectedIds);
}

DiskVolume withId(DiskVolume volume, const char* id) {
    volume.id = id;
    return volume;
}

INSTANTIATE_TEST_SUITE_P(
    Examples, DiskVolumeOrderTest,
    ::testing::Combine(
        ::testing::Values(OrderCase{"ExternalBackupAndArchive",
                                    {volumeNamed("backup", false), volumeNamed("Archive", false)},
                                    {"/v/Archive", "/v/backup"}},
                          OrderCase{"BootFirstEvenIfItSortsLast",
                                    {volumeNamed("Aardvark"), volumeNamed("Zulu", true, true),
                                     volumeNamed("alpha", false)},
                                    {"/v/Zulu", "/v/Aardvark", "/v/alpha"}},
                          OrderCase{"InternalBeforeExternal",
                                    {volumeNamed("Ant", false), volumeNamed("zebra"),
                                     volumeNamed("Bee", false), volumeNamed("Yak")},
                                    {"/v/Yak", "/v/zebra", "/v/Ant", "/v/Bee"}},
                          OrderCase{"EqualNamesKeepTableOrder",
                                    {withId(volumeNamed("Backup", false), "/first"),
                                     withId(volumeNamed("backup", false), "/second"),
                                     withId(volumeNamed("BACKUP", false), "/third")},
                                    {"/first", "/second", "/third"}},
                          OrderCase{"Empty", {}, {}}),
        ::testing::Values(QLocale(QLocale::English, QLocale::UnitedStates),
                          QLocale(QLocale::German, QLocale::Germany), QLocale::c())),
    [](const auto& info) {
        return std::string(std::get<0>(info.param).name) + "_" +
               std::get<1>(info.param).name().remove('_').toStdString();
    });

// --- listings of fixture machines -----------------------------------------------------------

// Fixed capacities by mount point, measured below the fixture's root.
DiskCapacityProbe::Measure capacities(std::string root,
                                      std::map<std::string, VolumeCapacity> byMountPoint) {
    return [root = std::move(root),
            byMountPoint](const std::string& path) -> std::optional<VolumeCapacity> {
        std::string mountPoint = path.substr(root.size());
        if (mountPoint.empty() || mountPoint.front() != '/')
            mountPoint.insert(0, "/");
        const auto found = byMountPoint.find(mountPoint);
        if (found == byMountPoint.end())
            return std::nullopt;
        return found->second;
    };
}

DiskMonitor::Options fixtureOptions(const std::string& root,
                                    std::map<std::string, VolumeCapacity> byMountPoint) {
    DiskMonitor::Options options;
    options.measure = capacities(root, std::move(byMountPoint));
    options.locale = QLocale(QLocale::English, QLocale::UnitedStates);
    return options;
}

DiskVolume volume(const char* id, const char* name, std::int64_t total, std::int64_t available,
                  bool internal, bool removable, bool ejectable, bool boot = false) {
    return DiskVolume{id, name, total, available, internal, removable, ejectable, boot};
}

TEST(DiskMonitorFixtureTest, DesktopWithDisksSticksAndShares) {
    const std::string root = fixtureRoot("desktop-intel");
    // Every mount point of the table can be measured, so only the rules leave volumes out.
    std::map<std::string, VolumeCapacity> sizes = {
        {"/", {500 * kGB, 120 * kGB}},
        {"/boot/efi", {536'870'912, 530'000'000}},
        {"/home", {1000 * kGB, -5}}, // a negative available reads as 0
        {"/srv/photos", {2000 * kGB, 1500 * kGB}},
        {"/mnt/data", {2000 * kGB, 1500 * kGB}},
        {"/srv/shared", {1000 * kGB, 0}},
        {"/tank", {8000 * kGB, 4000 * kGB}},
        {"/mnt/hidden", {100 * kGB, 1 * kGB}},
        {"/mnt/empty", {0, 0}}, // no capacity: left out
        {"/media/alex/backup", {4000 * kGB, 100 * kGB}},
        {"/media/alex/Archive", {5000 * kGB, 200 * kGB}},
        {"/media/alex/My Stick", {32 * kGB, 30 * kGB}},
        {"/media/alex/3A1C-88F0", {64 * kGB, 10 * kGB}},
        {"/mnt/nas", {9000 * kGB, 1 * kGB}},
        {"/mnt/share", {9000 * kGB, 1 * kGB}},
        {"/home/alex/remote", {9000 * kGB, 1 * kGB}},
        {"/snap/core22/1122", {77'000'000, 0}},
        {"/run", {3 * kGB, 3 * kGB}},
        {"/dev", {16 * kGB, 16 * kGB}},
        {"/run/user/1000/gvfs", {1, 1}},
        {"/var/lib/docker/overlay2/3f2a/merged", {500 * kGB, 120 * kGB}},
    }; // "/mnt/unreadable" cannot be measured: left out
    DiskMonitor monitor(KernelRoots(root), fixtureOptions(root, sizes));
    const DiskVolumeList expected = {
        volume("/", "zephyr", 500 * kGB, 120 * kGB, true, false, false, true),
        volume("/mnt/data", "Data", 2000 * kGB, 1500 * kGB, true, false, false),
        volume("/boot/efi", "efi", 536'870'912, 530'000'000, true, false, false),
        volume("/home", "Home", 1000 * kGB, 0, true, false, false),
        volume("/tank", "tank", 8000 * kGB, 4000 * kGB, true, false, false), // no device
        volume("/media/alex/Archive", "Archive", 5000 * kGB, 200 * kGB, false, false, true),
        volume("/media/alex/backup", "backup", 4000 * kGB, 100 * kGB, false, false, true),
        volume("/media/alex/My Stick", "My Stick", 32 * kGB, 30 * kGB, false, true, true),
        volume("/media/alex/3A1C-88F0", "PHOTOS 2024", 64 * kGB, 10 * kGB, false, true, true),
    };
    EXPECT_EQ(monitor.currentVolumes(), expected);
    EXPECT_EQ(monitor.currentVolumes(), expected) << "a second listing";
}

TEST(DiskMonitorFixtureTest, RaspberryPiNamesTheRootByItsLabel) {
    const std::string root = fixtureRoot("raspberry-pi");
    DiskMonitor monitor(KernelRoots(root),
                        fixtureOptions(root, {{"/", {30 * kGB, 20 * kGB}},
                                              {"/boot/firmware", {500'000'000, 400'000'000}},
                                              {"/media/pi/KINGSTON", {16 * kGB, 2 * kGB}}}));
    const DiskVolumeList expected = {
        volume("/", "rootfs", 30 * kGB, 20 * kGB, true, false, false, true),
        volume("/boot/firmware", "bootfs", 500'000'000, 400'000'000, true, false, false),
        // A whole-disk USB stick: no partition, removable on its own device.
        volume("/media/pi/KINGSTON", "KINGSTON", 16 * kGB, 2 * kGB, false, true, true),
    };
    EXPECT_EQ(monitor.currentVolumes(), expected);
}

TEST(DiskMonitorFixtureTest, ContainerShowsItsOverlayRootByHostName) {
    const std::string root = fixtureRoot("container-lxcfs");
    // /etc/hostname is a bind-mounted file: the real measurement refuses non-directories.
    DiskMonitor monitor(KernelRoots(root), fixtureOptions(root, {{"/", {100 * kGB, 60 * kGB}},
                                                                 {"/data", {200 * kGB, 1}}}));
    const DiskVolumeList expected = {
        volume("/", "web-1", 100 * kGB, 60 * kGB, true, false, false, true),
        volume("/data", "data", 200 * kGB, 1, true, false, false),
    };
    EXPECT_EQ(monitor.currentVolumes(), expected);
}

TEST(DiskMonitorTest, UnreadableMountTableGivesNothingAndRecovers) {
    ScratchTree tree;
    DiskMonitor::Options options;
    options.measure = [](const std::string&) { return VolumeCapacity{10, 5}; };
    DiskMonitor monitor(KernelRoots(tree.root()), options);
    EXPECT_TRUE(monitor.currentVolumes().empty()) << "no table";
    tree.write("proc/1/mountinfo", "garbage\n");
    EXPECT_TRUE(monitor.currentVolumes().empty()) << "no mount in it";
    tree.write("proc/1/mountinfo", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n");
    const DiskVolumeList volumes = monitor.currentVolumes();
    ASSERT_EQ(volumes.size(), 1u);
    EXPECT_EQ(volumes[0].id, "/");
    EXPECT_EQ(volumes[0].name, "/") << "no host name below a root without one";
    EXPECT_TRUE(volumes[0].isInternal);
}

TEST(DiskMonitorTest, LabelsDecodeUdevEscapes) {
    EXPECT_EQ(DiskMonitor::decodeLabel("My\\x20Disk"), "My Disk");
    EXPECT_EQ(DiskMonitor::decodeLabel("a\\x2fb"), "a/b");
    EXPECT_EQ(DiskMonitor::decodeLabel("Fotos\\xc3\\xa5"), QString::fromUtf8("Fotos\xc3\xa5"));
    EXPECT_EQ(DiskMonitor::decodeLabel("odd\\x2"), "odd\\x2");
    EXPECT_EQ(DiskMonitor::decodeLabel("odd\\xzz"), "odd\\xzz");
}

// --- measuring under a deadline -------------------------------------------------------------

// A measurement that blocks on one path until released, as statvfs does on a dead mount.
class StuckMount {
public:
    explicit StuckMount(std::string stuckPath) : stuckPath_(std::move(stuckPath)) {}
    ~StuckMount() { release(); }

    DiskCapacityProbe::Measure measure() {
        return [this](const std::string& path) -> std::optional<VolumeCapacity> {
            {
                std::lock_guard guard(doneLock_);
                ++calls_[path];
            }
            if (path == stuckPath_) {
                std::unique_lock guard(lock_);
                released_.wait(guard, [&] { return isReleased_; });
                std::lock_guard doneGuard(doneLock_);
                ++answered_;
            }
            return VolumeCapacity{100, 50};
        };
    }
    void release() {
        {
            std::lock_guard guard(lock_);
            isReleased_ = true;
        }
        released_.notify_all();
    }
    int callsFor(const std::string& path) {
        std::lock_guard guard(doneLock_);
        return calls_[path];
    }
    bool answered() {
        std::lock_guard guard(doneLock_);
        return answered_ > 0;
    }

private:
    std::string stuckPath_;
    std::map<std::string, int> calls_;
    std::mutex lock_;
    std::condition_variable released_;
    bool isReleased_ = false;
    std::mutex doneLock_; // guards calls_ and answered_
    int answered_ = 0;
};

TEST(DiskCapacityProbeTest, StuckMountIsLeftOutUntilItAnswers) {
    auto stuck = std::make_shared<StuckMount>("/stuck");
    {
        DiskCapacityProbe probe(stuck->measure(), std::chrono::milliseconds(100));
        const std::vector<std::string> paths = {"/a", "/stuck", "/b"};

        auto results = probe.measureAll(paths);
        ASSERT_EQ(results.size(), 3u);
        EXPECT_TRUE(results[0]);
        EXPECT_FALSE(results[1]) << "missed the deadline";
        EXPECT_TRUE(results[2]) << "measured on a fresh thread";
        EXPECT_EQ(probe.stuckCount(), 1u);

        results = probe.measureAll(paths);
        EXPECT_TRUE(results[0] && results[2] && !results[1]);
        EXPECT_EQ(stuck->callsFor("/stuck"), 1) << "not asked again while still stuck";

        stuck->release();
        for (int wait = 0; wait < 200 && probe.stuckCount() > 0; ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(probe.stuckCount(), 0u);
        results = probe.measureAll(paths);
        EXPECT_TRUE(results[0] && results[1] && results[2]) << "back once it answered";
        EXPECT_EQ(stuck->callsFor("/stuck"), 2);
    }
}

TEST(DiskCapacityProbeTest, StopsAskingWhenTooManyMountsAreStuck) {
    std::mutex lock;
    std::condition_variable released;
    bool isReleased = false;
    std::atomic<int> blocked = 0;
    {
        DiskCapacityProbe probe(
            [&](const std::string&) -> std::optional<VolumeCapacity> {
                ++blocked;
                std::unique_lock guard(lock);
                released.wait(guard, [&] { return isReleased; });
                --blocked;
                return VolumeCapacity{1, 1};
            },
            std::chrono::milliseconds(20), 2);
        const auto results = probe.measureAll({"/1", "/2", "/3", "/4"});
        EXPECT_EQ(std::count(results.begin(), results.end(), std::nullopt), 4);
        EXPECT_EQ(probe.stuckCount(), 2u);
        EXPECT_EQ(blocked.load(), 2) << "no more threads than the limit";
        {
            std::lock_guard guard(lock);
            isReleased = true;
        }
        released.notify_all();
        for (int wait = 0; wait < 200 && blocked.load() > 0; ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(blocked.load(), 0);
}

TEST(DiskCapacityProbeTest, StatvfsMeasuresDirectoriesOnly) {
    const auto root = statvfsCapacity("/");
    ASSERT_TRUE(root);
    EXPECT_GT(root->total, 0);
    EXPECT_LE(root->available, root->total);
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    EXPECT_FALSE(statvfsCapacity(file.fileName().toStdString()));
    EXPECT_FALSE(statvfsCapacity("/no/such/directory"));
}

TEST(DiskMonitorTest, LiveListingStartsWithTheRootFileSystem) {
    DiskMonitor monitor;
    const DiskVolumeList volumes = monitor.currentVolumes();
    ASSERT_FALSE(volumes.empty());
    EXPECT_EQ(volumes[0].id, "/");
    EXPECT_TRUE(volumes[0].isBootVolume);
    EXPECT_FALSE(volumes[0].name.isEmpty());
    const auto root = statvfsCapacity("/");
    ASSERT_TRUE(root);
    EXPECT_EQ(volumes[0].totalCapacity, root->total);
    for (const DiskVolume& volume : volumes) {
        EXPECT_GE(volume.totalCapacity, 1);
        EXPECT_GE(volume.availableCapacity, 0);
    }
}

} // namespace
