#include "samplers/disk/DiskMonitor.h"
#include "samplers/disk/DiskMountFilter.h"
#include "samplers/disk/DiskVolumeOrder.h"
#include "samplers/disk/MountTable.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <QTemporaryFile>

#include <atomic>
#include <cstring>
#include <future>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::ScratchTree;

namespace {

constexpr std::int64_t kGB = 1'000'000'000;

// --- the mount table ------------------------------------------------------------------------

TEST(MountTableTest, ParsesFieldsDecodesEscapesAndSkipsMalformedLines) {
    std::vector<MountTable::Entry> entries;
    MountTable::parse("36 35 98:0 /mnt1 /mnt/parent rw,noatime master:1 shared:4 - ext3 "
                      "/dev/root rw,errors=continue\n",
                      entries);
    ASSERT_EQ(entries.size(), 1u);
    const MountTable::Entry& e = entries[0];
    EXPECT_EQ(std::tuple(e.id, e.parentId, e.major, e.minor), std::tuple(36, 35, 98u, 0u));
    EXPECT_EQ(std::tuple(e.root, e.fsType), std::tuple("/mnt1", "ext3"));
    EXPECT_TRUE(e.hasOption("noatime") && e.hasOption("errors") && !e.hasOption("error"));
    EXPECT_TRUE(e.hasBlockDevice());

    // The line, then its decoded mount point and source; no mount point: skipped.
    const std::tuple<const char*, const char*, const char*> cases[] = {
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
        entries.clear();
        EXPECT_EQ(MountTable::parse(line, entries), mountPoint ? 0u : 1u) << line;
        ASSERT_EQ(entries.size(), mountPoint ? 1u : 0u) << line;
        if (mountPoint) {
            EXPECT_EQ(MountTable::decode(entries[0].mountPoint), mountPoint);
            EXPECT_EQ(entries[0].source, source);
        }
    }
}

// Each case of the file opens with "== Name: the mount points shown, in table order".
TEST(DiskMountFilterTest, ShowsEachLocalFileSystemOnce) {
    QFile file(QString::fromStdString(fixtureRoot("mount-tables.txt")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList cases = QString::fromUtf8(file.readAll()).split("== ", Qt::SkipEmptyParts);
    ASSERT_EQ(cases.size(), 9);
    const auto hidden = [](const MountTable::Entry& entry) {
        return entry.mountPoint == "/mnt/private";
    };
    for (const QString& c : cases) {
        const std::string table = c.section('\n', 1).toStdString();
        std::vector<MountTable::Entry> entries;
        MountTable::parse(table, entries);
        QStringList shown;
        for (const std::size_t index : DiskMountFilter::select(entries, hidden))
            shown << QString::fromUtf8(entries[index].mountPoint);
        EXPECT_EQ(shown.join(' '), c.section('\n', 0, 0).section(':', 1).trimmed())
            << c.section(':', 0, 0).toStdString();
    }
}

// --- display order --------------------------------------------------------------------------

DiskVolume volumeNamed(const char* name, bool internal = true, bool boot = false,
                       const char* id = nullptr) {
    return DiskVolume{id ? id : QString("/v/") + name, name, 1, 0, internal, false, false, boot};
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

TEST(DiskMonitorTest, FixtureMachinesListTheirLocalVolumesInOrder) {
    // A volume as measured and as listed; flags: Internal, Removable, Ejectable, Boot.
    struct Row {
        const char *mountPoint, *name;
        std::int64_t total, available;
        const char* flags;
    };
    // Every mount point without a row measures as 1 GB on desktop-intel, but /mnt/empty (no
    // capacity) and /mnt/unreadable: so the rules alone leave network, pseudo, snap, bind and
    // hidden mounts out. Elsewhere they cannot be measured. The Pi: the root by its label, a
    // whole-disk USB stick, removable on its own device. The container: the overlay root by the
    // host name; /etc/hostname, a bind-mounted file, is no volume.
    const std::pair<const char*, std::vector<Row>> cases[] = {
        {"desktop-intel",
         {{"/", "zephyr", 500 * kGB, 120 * kGB, "IB"},
          {"/mnt/data", "Data", 2000 * kGB, 1500 * kGB, "I"},
          {"/boot/efi", "efi", 536'870'912, 530'000'000, "I"},
          {"/home", "Home", 1000 * kGB, -5, "I"},         // a negative available reads as 0
          {"/tank", "tank", 8000 * kGB, 4000 * kGB, "I"}, // no device
          {"/media/alex/Archive", "Archive", 5000 * kGB, 200 * kGB, "E"},
          {"/media/alex/backup", "backup", 4000 * kGB, 100 * kGB, "E"},
          {"/media/alex/My Stick", "My Stick", 32 * kGB, 30 * kGB, "RE"},
          {"/media/alex/3A1C-88F0", "PHOTOS 2024", 64 * kGB, 10 * kGB, "RE"}}},
        {"raspberry-pi",
         {{"/", "rootfs", 30 * kGB, 20 * kGB, "IB"},
          {"/boot/firmware", "bootfs", 500'000'000, 400'000'000, "I"},
          {"/media/pi/KINGSTON", "KINGSTON", 16 * kGB, 2 * kGB, "RE"}}},
        {"container-lxcfs",
         {{"/", "web-1", 100 * kGB, 60 * kGB, "IB"}, {"/data", "data", 200 * kGB, 1, "I"}}}};
    for (const auto& [machine, rows] : cases) {
        const std::string root = fixtureRoot(machine);
        DiskVolumeList expected;
        for (const Row& r : rows) {
            const auto has = [&](char flag) { return std::strchr(r.flags, flag) != nullptr; };
            expected.push_back({r.mountPoint, r.name, r.total,
                                std::max<std::int64_t>(r.available, 0), has('I'), has('R'),
                                has('E'), has('B')});
        }
        DiskMonitor::Options options;
        options.locale = QLocale(QLocale::English, QLocale::UnitedStates);
        options.measure = [&](const std::string& path) -> std::optional<VolumeCapacity> {
            const std::string mountPoint =
                path.size() > root.size() ? path.substr(root.size()) : "/";
            for (const Row& r : rows)
                if (mountPoint == r.mountPoint)
                    return VolumeCapacity{r.total, r.available};
            if (mountPoint == "/mnt/empty")
                return VolumeCapacity{0, 0};
            if (mountPoint == "/mnt/unreadable" || root != fixtureRoot("desktop-intel"))
                return std::nullopt;
            return VolumeCapacity{kGB, kGB};
        };
        DiskMonitor monitor(KernelRoots(root), options);
        EXPECT_EQ(monitor.currentVolumes(), expected) << machine;
        EXPECT_EQ(monitor.currentVolumes(), expected) << machine << ", a second listing";
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
              (DiskVolumeList{{"/", "/", 10, 5, true, false, false, true}}))
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
    EXPECT_TRUE(volumes[0].id == "/" && volumes[0].isBootVolume && !volumes[0].name.isEmpty());
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
struct Gate {
    std::promise<void> opener;
    std::shared_future<void> opened = opener.get_future().share();
    void pass() const { opened.wait(); }
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

    gate->opener.set_value();
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
    gate->opener.set_value();
    waitUntil([&] { return *blocked == 0; });
    EXPECT_EQ(*blocked, 0);
}

} // namespace
