#include "samplers/process/ProcessTable.h"

#include "model/Logging.h"
#include "support/Cases.h"
#include "support/FixtureTree.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace lumetra;
using lumetra::testing::fixtureRoot;
using lumetra::testing::LogCapture;
using lumetra::testing::ScratchTree;

namespace {

const std::uint64_t kPage = std::uint64_t(::sysconf(_SC_PAGESIZE));

uid_t ownerOf(const std::string& path) {
    struct stat info {};
    ::stat(path.c_str(), &info);
    return info.st_uid;
}

std::vector<std::string> dataDirsOf(const std::string& tree) {
    return {tree + "/home/.local/share", tree + "/usr/share",
            tree + "/var/lib/flatpak/exports/share", tree + "/var/lib/snapd/desktop"};
}

std::unique_ptr<ProcessTable> tableOver(const std::string& tree) {
    return std::make_unique<ProcessTable>(KernelRoots(tree), DesktopEntries(dataDirsOf(tree)),
                                          ownerOf(tree + "/proc"));
}

struct Row {
    std::string name;
    std::string icon;
    std::string appId;
    int processes;
    std::uint64_t pages;
};

struct DesktopCase {
    std::string machine;
    int processCount;
    std::vector<Row> byMemory;
};

class ProcessGroupingTest : public ::testing::TestWithParam<DesktopCase> {};

TEST_P(ProcessGroupingTest, GroupsByApplicationScopeAndNamesFromDesktopEntries) {
    auto table = tableOver(fixtureRoot("processes/" + GetParam().machine));
    const TopApplications reading = table->refresh(50);
    EXPECT_FALSE(reading.cpuValid) << "the first reading is only a baseline";
    EXPECT_FALSE(reading.onlyOwnProcessesVisible);
    EXPECT_EQ(reading.processCount, GetParam().processCount)
        << "kernel threads and zombies are not counted";
    const QList<TopApplication> rows = reading.top(TopApplicationOrder::memory, 50);
    ASSERT_EQ(rows.size(), qsizetype(GetParam().byMemory.size()));
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const Row& e = GetParam().byMemory[std::size_t(i)];
        EXPECT_EQ(std::tuple(rows[i].name.toStdString(), rows[i].icon.toStdString(),
                             rows[i].appId.toStdString(), rows[i].processCount(),
                             rows[i].residentBytes, rows[i].ownedByUser),
                  std::tuple(e.name, e.icon, e.appId, e.processes, e.pages * kPage, true))
            << i;
    }
}

const DesktopCase kDesktops[] = {
    {"gnome",
     15,
     {{"Firefox", "firefox", "firefox", 3, 170000},
      {"gnome-shell", "", "", 1, 80000},
      {"org.gnome.TextEditor", "", "org.gnome.TextEditor", 1, 30000},        // no desktop entry
      {"My Terminal", "utilities-terminal", "org.gnome.Terminal", 2, 16200}, // ~/.local first
      {"gnome-shell-calendar-server", "", "", 1, 9000}, // comm cut at 15, cmdline completes
      {"pipewire", "", "", 1, 5000},
      {"systemd", "", "", 1, 3000},
      {"(sd-pam)", "", "", 1, 1000},
      {"org.example.Broken", "", "org.example.Broken", 1, 300},            // unreadable entry
      {"org.example.Nameless", "mystery", "org.example.Nameless", 1, 200}, // no Name=
      {"Isolated Servic", "", "", 1, 100}, // cut, but cmdline names something else
      {"a)b)", "", "", 1, 10}}},
    {"kde",
     5,
     {{"plasmashell", "", "", 1, 250000},
      {"Dolphin", "system-file-manager", "org.kde.dolphin", 1, 60000},
      {"Konsole", "utilities-terminal", "org.kde.konsole", 2, 42000},
      {"systemd", "", "", 1, 3000}}},
    {"flatpak",
     5,
     {{"GNU Image Manipulation Program", "org.gimp.GIMP", "org.gimp.GIMP", 3, 320500},
      {"flatpak-portal", "", "", 1, 3000},
      {"systemd", "", "", 1, 3000}}},
    {"snap",
     4,
     {{"Visual Studio Code", "/snap/code/190/meta/gui/vscode.png", "snap.code_code", 2, 350000},
      {"snapd", "", "", 1, 30000},
      {"systemd", "", "", 1, 3000}}},
    {"services",
     6,
     {{"firefox", "", "firefox", 2, 100000},
      {"thunderbird", "", "thunderbird", 1, 70000},
      {"nginx", "", "", 1, 4000}, // a service's processes stay processes
      {"nginx", "", "", 1, 3000},
      {"systemd", "", "", 1, 3000}}},
};

INSTANTIATE_TEST_SUITE_P(Desktops, ProcessGroupingTest, ::testing::ValuesIn(kDesktops),
                         lumetra::testing::byMachine);

TEST(ProcessTableTest, HiddenProcessesOfOtherUsersAreReported) {
    const std::pair<std::string, bool> cases[] = {{"hidepid", true}, {"gnome", false}};
    for (const auto& [machine, hidden] : cases) {
        auto table = tableOver(fixtureRoot("processes/" + machine));
        EXPECT_EQ(table->refresh().onlyOwnProcessesVisible, hidden) << machine;
    }
}

TEST(ProcessTableTest, VanishedAndBrokenProcessesAreSkippedWithOneLogLine) {
    LogCapture log(logMonitoring());
    auto table = tableOver(fixtureRoot("processes/broken"));
    for (int refresh = 0; refresh < 3; ++refresh) {
        const TopApplications reading = table->refresh();
        EXPECT_EQ(reading.processCount, 2) << "systemd and the one good process";
    }
    EXPECT_EQ(log.lines().size(), 1) << log.lines().join('\n').toStdString();
    EXPECT_TRUE(log.lines().value(0).contains("/stat: ")) << log.lines().value(0).toStdString();

    ScratchTree empty;
    empty.makeDirectory("x");
    ProcessTable missing(KernelRoots(empty.root()), DesktopEntries({}));
    EXPECT_EQ(missing.refresh().processCount, 0);
    EXPECT_EQ(log.lines().size(), 2) << "a missing proc/ is said once";
    missing.refresh();
    EXPECT_EQ(log.lines().size(), 2);
}

QByteArray statLine(int pid, const char* comm, std::uint64_t ticks, std::uint64_t start,
                    std::uint64_t pages = 100) {
    return QString("%1 (%2) R 1 %1 %1 0 -1 4194304 0 0 0 0 %3 %4 0 0 20 0 1 0 %5 1000 %6 0\n")
        .arg(pid)
        .arg(comm)
        .arg(ticks - ticks / 4)
        .arg(ticks / 4)
        .arg(start)
        .arg(pages)
        .toUtf8();
}

void addProcess(const ScratchTree& tree, int pid, const char* comm, std::uint64_t ticks,
                std::uint64_t start, const QByteArray& cgroup = "0::/system.slice/x.service\n") {
    const QString dir = QString("proc/%1/").arg(pid);
    tree.write(dir + "stat", statLine(pid, comm, ticks, start));
    tree.write(dir + "cgroup", cgroup);
}

TEST(ProcessTableTest, CpuIsTheTicksSinceTheLastRefreshAndAReusedPidStartsAfresh) {
    ScratchTree tree;
    addProcess(tree, 1, "systemd", 0, 1);
    addProcess(tree, 10, "spin", 1000, 500);
    addProcess(tree, 20, "old", 5000, 600);
    addProcess(tree, 30, "steady", 100, 700);
    ProcessTable table(KernelRoots(tree.root()), DesktopEntries({}), ownerOf(tree.root()));
    double now = 100;
    table.setClock([&] { return now; });
    table.setTicksPerSecond(100);
    table.refresh();

    now += 2;
    // One thread cannot run more than the interval: 205 ticks over 2 s is read jitter.
    addProcess(tree, 10, "spin", 1000 + 205, 500);
    addProcess(tree, 20, "new", 30, 900);  // pid reused: 30 ticks, not 30 − 5000
    addProcess(tree, 40, "born", 50, 950); // appeared since: all its ticks count
    tree.write("proc/30/stat", statLine(30, "steady", 90, 700)); // a counter went back: 0
    const TopApplications reading = table.refresh();
    ASSERT_TRUE(reading.cpuValid);
    const QList<TopApplication> rows = reading.top(TopApplicationOrder::cpu, 10);
    const std::vector<std::pair<QString, double>> expected = {
        {"spin", 100}, {"born", 25}, {"new", 15}, {"steady", 0}, {"systemd", 0}};
    ASSERT_EQ(rows.size(), qsizetype(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(rows[qsizetype(i)].name, expected[i].first) << i;
        EXPECT_DOUBLE_EQ(rows[qsizetype(i)].cpuPercent, expected[i].second) << i;
    }
    EXPECT_EQ(rows[2].processes, (QList<ProcessRef>{{20, 900}})) << "the new start time";

    // Closed and opened again: the first reading after is a baseline again.
    table.forgetBaseline();
    now += 60;
    EXPECT_FALSE(table.refresh().cpuValid);
}

TEST(ProcessTableTest, ReadsOneFilePerProcessOnceItKnowsThem) {
    ScratchTree tree;
    for (int pid = 1; pid <= 40; ++pid)
        addProcess(tree, pid, pid == 7 ? "exactly15chars." : "p", 10, 100 + pid);
    tree.write("proc/7/cmdline", QByteArray("/usr/bin/exactly15chars.long\0--flag\0", 36));
    ProcessTable table(KernelRoots(tree.root()), DesktopEntries({}));
    EXPECT_EQ(table.filesOpened(), 0u) << "nothing is opened before the first refresh";
    const TopApplications first = table.refresh(100);
    // proc/ itself, then each stat and cgroup, and one cmdline for the cut name.
    EXPECT_EQ(table.filesOpened(), 1u + 40 * 2 + 1);
    const auto named = std::find_if(first.groups.begin(), first.groups.end(),
                                    [](const auto& row) { return row.processes[0].pid == 7; });
    ASSERT_NE(named, first.groups.end());
    EXPECT_EQ(named->name, "exactly15chars.long");
    for (int refresh = 0; refresh < 3; ++refresh) {
        const std::uint64_t before = table.filesOpened();
        table.refresh();
        EXPECT_EQ(table.filesOpened() - before, 40u);
    }
}

TEST(ProcessTableTest, FiveThousandProcessesInFiftyApplications) {
    ScratchTree tree;
    addProcess(tree, 1, "systemd", 0, 1);
    for (int i = 0; i < 5000; ++i) {
        const QByteArray cgroup = "0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
                                  "app-gnome-org.example.App" +
                                  QByteArray::number(i % 50) + "-" + QByteArray::number(i % 50) +
                                  ".scope\n";
        addProcess(tree, 1000 + i, "worker", std::uint64_t(i), std::uint64_t(i), cgroup);
    }
    ProcessTable table(KernelRoots(tree.root()), DesktopEntries({}));
    double now = 0;
    table.setClock([&] { return now; });
    table.setTicksPerSecond(100);
    table.refresh(5);
    now = 1;
    const TopApplications reading = table.refresh(5);
    EXPECT_EQ(reading.processCount, 5001);
    const QList<TopApplication> rows = reading.top(TopApplicationOrder::memory, 3);
    ASSERT_EQ(rows.size(), 3);
    for (const TopApplication& row : rows)
        EXPECT_EQ(row.processCount(), 100) << row.name.toStdString();
    EXPECT_LE(reading.groups.size(), 10) << "only the leaders become rows";
}

} // namespace
