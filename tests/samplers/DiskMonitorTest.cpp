#include "samplers/DiskMonitor.h"
#include "samplers/DiskMountFilter.h"
#include "samplers/DiskVolumeOrder.h"
#include "samplers/MountTable.h"
#include "support/Cases.h"
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
    EXPECT_EQ(MountTable::parse("36 35 98:0 /mnt1 /mnt/parent rw,noatime master:1 shared:4 - ext3 "
                                "/dev/root rw,errors=continue\n",
                                entries),
              0u);
    ASSERT_EQ(entries.size(), 1u);
    const MountTable::Entry& e = entries[0];
    EXPECT_EQ(std::tuple(e.id, e.parentId, e.major, e.minor), std::tuple(36, 35, 98u, 0u));
    EXPECT_EQ(std::tuple(e.root, e.mountPoint, e.fsType, e.source),
              std::tuple("/mnt1", "/mnt/parent", "ext3", "/dev/root"));
    EXPECT_TRUE(e.hasOption("noatime") && e.hasOption("errors") && !e.hasOption("error"));
    EXPECT_TRUE(e.hasBlockDevice());
}

TEST(MountTableTest, DecodesEscapesAndSkipsMalformedLines) {
    // The line, then its decoded mount point and source; no mount point: skipped.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"29 1 259:2 / / rw - ext4 /dev/nvme0n1p2 rw", "/", "/dev/nvme0n1p2"},
        {"64 27 8:49 / /media/alex/My\\040Stick rw shared:44 - vfat /dev/sdd1 rw",
         "/media/alex/My Stick", "/dev/sdd1"},
        {"64 27 8:49 / /mnt/a\\011b\\134c\\012d rw - vfat x rw", "/mnt/a\tb\\c\nd", "x"},
        {"64 27 8:49 / /mnt/a\\04 rw - vfat x rw", "/mnt/a\\04", "x"}, // unfinished escape kept
        {"64 27 8:49 / /media/Fotos\\040Å rw - vfat x rw", "/media/Fotos Å", "x"},
        {"90 29 0:70 / /mnt/odd rw - tmpfs  rw", "/mnt/odd", ""},
        {"29 1 259:2 / / rw shared:1 ext4 /dev/vda rw", nullptr, nullptr}, // no separator
        {"29 1 259 / / rw - ext4 /dev/vda rw", nullptr, nullptr},
        {"x 1 259:2 / / rw - ext4 /dev/vda rw", nullptr, nullptr},
        {"29 1 259:2 /", nullptr, nullptr},
        {"29 1 259:2 / / rw -", nullptr, nullptr}};
    for (const auto& [line, mountPoint, source] : cases) {
        std::vector<MountTable::Entry> entries;
        EXPECT_EQ(MountTable::parse(line, entries), mountPoint ? 0u : 1u) << line;
        ASSERT_EQ(entries.size(), mountPoint ? 1u : 0u) << line;
        if (mountPoint) {
            EXPECT_EQ(MountTable::decode(entries[0].mountPoint), mountPoint);
            EXPECT_EQ(entries[0].source, source);
        }
    }
}

// --- which mounts are volumes ---------------------------------------------------------------

struct FilterCase {
    const char* name;
    const char* table;
    std::vector<std::string> shown; // escaped mount points in table order
};

void PrintTo(const FilterCase& c, std::ostream* os) {
    *os << c.name;
}

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
                   "5 1 0:24 / /run rw - tmpfs tmpfs rw\n"
                   "6 2 0:27 / /sys/fs/cgroup rw - cgroup2 cgroup2 rw\n"
                   "8 1 0:31 / /proc/sys/fs/binfmt_misc rw - autofs systemd-1 rw\n"
                   "10 1 0:63 / /var/lib/docker/overlay2/3f/merged rw - overlay overlay rw\n"
                   "11 5 0:70 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
                   // A kernel file system we have never heard of, without a device.
                   "12 1 0:71 / /sys/fs/newfs rw - newfs none rw\n",
                   {"/"}},
        FilterCase{"NetworkMounts",
                   "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                   "2 1 0:60 / /mnt/nas rw - nfs4 nas:/export rw\n"
                   "4 1 0:62 / /mnt/share rw - cifs //nas/share rw\n"
                   "5 1 0:63 / /home/a/remote rw - fuse.sshfs a@host:/home/a rw\n"
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
    lumetra::testing::byName);

// --- display order --------------------------------------------------------------------------

DiskVolume volumeNamed(const char* name, bool internal = true, bool boot = false,
                       const char* id = nullptr) {
    DiskVolume volume;
    volume.id = id ? id : QString("/v/") + name;
    volume.name = name;
    volume.isInternal = internal;
    volume.isBootVolume = boot;
    return volume;
}

TEST(DiskVolumeOrderTest, BootThenInternalThenNameIgnoringCaseInEveryLocale) {
    const std::pair<DiskVolumeList, std::vector<QString>> cases[] = {
        {{volumeNamed("backup", false), volumeNamed("Archive", false)},
         {"/v/Archive", "/v/backup"}},
        {{volumeNamed("Aardvark"), volumeNamed("Zulu", true, true), volumeNamed("alpha", false)},
         {"/v/Zulu", "/v/Aardvark", "/v/alpha"}},
        {{volumeNamed("Ant", false), volumeNamed("zebra"), volumeNamed("Bee", false),
          volumeNamed("Yak")},
         {"/v/Yak", "/v/zebra", "/v/Ant", "/v/Bee"}},
        // Equal names keep the table's order.
        {{volumeNamed("Backup", false, false, "/first"), volumeNamed("backup", false, false, "/2"),
          volumeNamed("BACKUP", false, false, "/3")},
         {"/first", "/2", "/3"}},
        {{}, {}}};
    for (const QLocale& locale : {QLocale(QLocale::English, QLocale::UnitedStates),
                                  QLocale(QLocale::German, QLocale::Germany), QLocale::c()}) {
        for (const auto& [unsorted, expectedIds] : cases) {
            DiskVolumeList volumes = unsorted;
            DiskVolumeOrder(locale).sort(volumes);
            std::vector<QString> ids;
            for (const DiskVolume& volume : volumes)
                ids.push_back(volume.id);
            EXPECT_EQ(ids, expectedIds) << locale.name().toStdString();
        }
    }
}

// --- listings of fixture machines -----------------------------------------------------------

DiskVolume volume(const char* id, const char* name, std::int64_t total, std::int64_t available,
                  bool internal, bool removable, bool ejectable, bool boot = false) {
    return DiskVolume{id, name, total, available, internal, removable, ejectable, boot};
}

TEST(DiskMonitorTest, FixtureMachinesListTheirLocalVolumesInOrder) {
    struct Case {
        const char* machine;
        std::map<std::string, VolumeCapacity> sizes; // by mount point
        std::optional<VolumeCapacity> others;        // every other mount point
        DiskVolumeList expected;
    };
    const Case cases[] = {
        // Every other mount point of the table measures as 1 GB (but /mnt/unreadable), so the
        // rules alone leave network, pseudo, snap, bind and hidden mounts out.
        {"desktop-intel",
         {{"/", {500 * kGB, 120 * kGB}},
          {"/boot/efi", {536'870'912, 530'000'000}},
          {"/home", {1000 * kGB, -5}}, // a negative available reads as 0
          {"/mnt/data", {2000 * kGB, 1500 * kGB}},
          {"/tank", {8000 * kGB, 4000 * kGB}},
          {"/mnt/empty", {0, 0}}, // no capacity: left out
          {"/media/alex/backup", {4000 * kGB, 100 * kGB}},
          {"/media/alex/Archive", {5000 * kGB, 200 * kGB}},
          {"/media/alex/My Stick", {32 * kGB, 30 * kGB}},
          {"/media/alex/3A1C-88F0", {64 * kGB, 10 * kGB}}},
         VolumeCapacity{kGB, kGB},
         {volume("/", "zephyr", 500 * kGB, 120 * kGB, true, false, false, true),
          volume("/mnt/data", "Data", 2000 * kGB, 1500 * kGB, true, false, false),
          volume("/boot/efi", "efi", 536'870'912, 530'000'000, true, false, false),
          volume("/home", "Home", 1000 * kGB, 0, true, false, false),
          volume("/tank", "tank", 8000 * kGB, 4000 * kGB, true, false, false), // no device
          volume("/media/alex/Archive", "Archive", 5000 * kGB, 200 * kGB, false, false, true),
          volume("/media/alex/backup", "backup", 4000 * kGB, 100 * kGB, false, false, true),
          volume("/media/alex/My Stick", "My Stick", 32 * kGB, 30 * kGB, false, true, true),
          volume("/media/alex/3A1C-88F0", "PHOTOS 2024", 64 * kGB, 10 * kGB, false, true, true)}},
        // The root by its label; a whole-disk USB stick, removable on its own device.
        {"raspberry-pi",
         {{"/", {30 * kGB, 20 * kGB}},
          {"/boot/firmware", {500'000'000, 400'000'000}},
          {"/media/pi/KINGSTON", {16 * kGB, 2 * kGB}}},
         std::nullopt,
         {volume("/", "rootfs", 30 * kGB, 20 * kGB, true, false, false, true),
          volume("/boot/firmware", "bootfs", 500'000'000, 400'000'000, true, false, false),
          volume("/media/pi/KINGSTON", "KINGSTON", 16 * kGB, 2 * kGB, false, true, true)}},
        // The overlay root by the host name; /etc/hostname, a bind-mounted file, is no volume.
        {"container-lxcfs",
         {{"/", {100 * kGB, 60 * kGB}}, {"/data", {200 * kGB, 1}}},
         std::nullopt,
         {volume("/", "web-1", 100 * kGB, 60 * kGB, true, false, false, true),
          volume("/data", "data", 200 * kGB, 1, true, false, false)}}};
    for (const Case& c : cases) {
        const std::string root = fixtureRoot(c.machine);
        DiskMonitor::Options options;
        options.locale = QLocale(QLocale::English, QLocale::UnitedStates);
        options.measure = [&](const std::string& path) -> std::optional<VolumeCapacity> {
            const std::string mountPoint =
                path.size() > root.size() ? path.substr(root.size()) : "/";
            const auto found = c.sizes.find(mountPoint);
            if (found != c.sizes.end())
                return found->second;
            return mountPoint == "/mnt/unreadable" ? std::nullopt : c.others;
        };
        DiskMonitor monitor(KernelRoots(root), options);
        EXPECT_EQ(monitor.currentVolumes(), c.expected) << c.machine;
        EXPECT_EQ(monitor.currentVolumes(), c.expected) << c.machine << ", a second listing";
    }
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
    EXPECT_EQ(monitor.currentVolumes(),
              DiskVolumeList{volume("/", "/", 10, 5, true, false, false, true)})
        << "named / below a root without a host name";
}

TEST(DiskMonitorTest, LabelsDecodeUdevEscapes) {
    for (const auto& [label, decoded] : {std::pair{"My\\x20Disk", "My Disk"},
                                         {"a\\x2fb", "a/b"},
                                         {"Fotos\\xc3\\xa5", "Fotos\xc3\xa5"},
                                         {"odd\\x2", "odd\\x2"},
                                         {"odd\\xzz", "odd\\xzz"}})
        EXPECT_EQ(DiskMonitor::decodeLabel(label), QString::fromUtf8(decoded));
}

TEST(DiskMonitorTest, LiveListingStartsWithTheRootFileSystem) {
    const DiskVolumeList volumes = DiskMonitor().currentVolumes();
    ASSERT_FALSE(volumes.empty());
    EXPECT_EQ(volumes[0].id, "/");
    EXPECT_TRUE(volumes[0].isBootVolume);
    EXPECT_FALSE(volumes[0].name.isEmpty());
    const auto root = statvfsCapacity("/");
    ASSERT_TRUE(root && root->total > 0 && root->available <= root->total);
    EXPECT_EQ(volumes[0].totalCapacity, root->total);
    for (const DiskVolume& volume : volumes)
        EXPECT_TRUE(volume.totalCapacity >= 1 && volume.availableCapacity >= 0);
    // Only directories are measured.
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    EXPECT_FALSE(statvfsCapacity(file.fileName().toStdString()));
    EXPECT_FALSE(statvfsCapacity("/no/such/directory"));
}

// --- measuring under a deadline -------------------------------------------------------------

// Holds callers until opened, as statvfs does on a dead mount.
class Gate {
public:
    void pass() {
        std::unique_lock guard(lock_);
        opened_.wait(guard, [&] { return open_; });
    }
    void open() {
        std::lock_guard guard(lock_);
        open_ = true;
        opened_.notify_all();
    }

private:
    std::mutex lock_;
    std::condition_variable opened_;
    bool open_ = false;
};

template <typename Predicate>
void waitUntil(Predicate done) {
    for (int wait = 0; wait < 200 && !done(); ++wait)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

TEST(DiskCapacityProbeTest, StuckMountIsLeftOutUntilItAnswers) {
    auto gate = std::make_shared<Gate>();
    auto stuckCalls = std::make_shared<std::atomic<int>>(0);
    DiskCapacityProbe probe(
        [gate, stuckCalls](const std::string& path) {
            if (path == "/stuck") {
                ++*stuckCalls;
                gate->pass();
            }
            return std::optional(VolumeCapacity{100, 50});
        },
        std::chrono::milliseconds(100));
    const std::vector<std::string> paths = {"/a", "/stuck", "/b"};
    using Results = std::vector<std::optional<VolumeCapacity>>;
    const Results missing = {VolumeCapacity{100, 50}, std::nullopt, VolumeCapacity{100, 50}};
    EXPECT_EQ(probe.measureAll(paths), missing) << "/b measured on a fresh thread";
    EXPECT_EQ(probe.stuckCount(), 1u);
    EXPECT_EQ(probe.measureAll(paths), missing);
    EXPECT_EQ(*stuckCalls, 1) << "not asked again while still stuck";

    gate->open();
    waitUntil([&] { return probe.stuckCount() == 0; });
    EXPECT_EQ(probe.measureAll(paths), Results(3, VolumeCapacity{100, 50}))
        << "back once it answered";
    EXPECT_EQ(*stuckCalls, 2);
}

TEST(DiskCapacityProbeTest, StopsAskingWhenTooManyMountsAreStuck) {
    auto gate = std::make_shared<Gate>();
    auto blocked = std::make_shared<std::atomic<int>>(0);
    {
        DiskCapacityProbe probe(
            [gate, blocked](const std::string&) {
                ++*blocked;
                gate->pass();
                --*blocked;
                return std::optional(VolumeCapacity{1, 1});
            },
            std::chrono::milliseconds(20), 2);
        EXPECT_EQ(probe.measureAll({"/1", "/2", "/3", "/4"}),
                  std::vector<std::optional<VolumeCapacity>>(4));
        EXPECT_EQ(probe.stuckCount(), 2u);
        EXPECT_EQ(*blocked, 2) << "no more threads than the limit";
    }
    gate->open();
    waitUntil([&] { return *blocked == 0; });
    EXPECT_EQ(*blocked, 0);
}

} // namespace
