#include "BenchMain.h"

#include "samplers/process/ProcessTable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

using namespace lumetra;

namespace {

constexpr int kProcesses = 1000;

// A /proc of 1,000 processes, made once per run in a temporary directory: a desktop's mix of
// applications (20 with a few processes each), services and a terminal's children.
struct ProcessTree {
    QTemporaryDir dir;
    std::vector<int> pids;

    ProcessTree() {
        const QString proc = dir.path() + "/proc/";
        const auto write = [](const QString& path, const QByteArray& text) {
            QFile file(path);
            file.open(QIODevice::WriteOnly);
            file.write(text);
        };
        for (int i = 0; i < kProcesses; ++i) {
            const int pid = i == 0 ? 1 : 1000 + i * 3;
            pids.push_back(pid);
            const QString base = proc + QString::number(pid);
            QDir().mkpath(base);
            const QByteArray comm =
                i % 7 == 0 ? "Isolated Web Co" : "worker-" + QByteArray::number(i);
            write(base + "/stat",
                  QByteArray::number(pid) + " (" + comm + ") S 1 1 1 0 -1 4194560 4125 0 12 0 " +
                      QByteArray::number(i * 13) + " " + QByteArray::number(i * 3) +
                      " 0 0 20 0 9 0 " + QByteArray::number(5000 + i) + " 2203484160 " +
                      QByteArray::number(1000 + i * 17) +
                      " 18446744073709551615 1 1 0 0 0 0 0 4096 17 1 0 0 0 0 0 0 0 0 0 0 0 0\n");
            const QByteArray scope =
                i % 3 == 0
                    ? "/user.slice/user-1000.slice/user@1000.service/app.slice/"
                      "app-gnome-org.example.App" +
                          QByteArray::number(i % 20) + "-" + QByteArray::number(i % 20) + ".scope"
                    : "/system.slice/service" + QByteArray::number(i) + ".service";
            write(base + "/cgroup", "0::" + scope + "\n");
            write(base + "/cmdline", "/usr/lib/example/" + comm + QByteArray("\0--flag\0", 8));
        }
    }

    static const ProcessTree& shared() {
        static const ProcessTree tree;
        return tree;
    }
};

// One refresh of the dashboard's list: list proc/, read each stat, group, pick the leaders.
void BM_ProcessTableRefresh(benchmark::State& state) {
    const ProcessTree& tree = ProcessTree::shared();
    ProcessTable table(KernelRoots(tree.dir.path().toStdString()), DesktopEntries({}));
    table.refresh(); // the first refresh learns each process's application and name
    for (auto _ : state)
        benchmark::DoNotOptimize(table.refresh(5));
    state.SetItemsProcessed(state.iterations() * kProcesses);
}
LUMETRA_BENCHMARK(BM_ProcessTableRefresh);

// The floor under any process list: open, read and close each process's stat once.
void BM_ProcessStatBaseline(benchmark::State& state) {
    const ProcessTree& tree = ProcessTree::shared();
    const int procFd =
        ::open((tree.dir.path() + "/proc").toLocal8Bit().constData(), O_RDONLY | O_DIRECTORY);
    char path[32];
    char buffer[2048];
    for (auto _ : state) {
        for (int pid : tree.pids) {
            std::snprintf(path, sizeof path, "%d/stat", pid);
            const int fd = ::openat(procFd, path, O_RDONLY | O_CLOEXEC);
            benchmark::DoNotOptimize(::read(fd, buffer, sizeof buffer));
            ::close(fd);
        }
    }
    ::close(procFd);
    state.SetItemsProcessed(state.iterations() * kProcesses);
}
LUMETRA_BENCHMARK(BM_ProcessStatBaseline);

// The same two over the live /proc of this machine, for its own figure per process.
void BM_ProcessTableRefreshLive(benchmark::State& state) {
    ProcessTable table(KernelRoots(), DesktopEntries(DesktopEntries::xdgDataDirs()));
    const int processes = table.refresh().processCount;
    for (auto _ : state)
        benchmark::DoNotOptimize(table.refresh(5));
    state.counters["processes"] = processes;
}
LUMETRA_BENCHMARK(BM_ProcessTableRefreshLive);

void BM_ProcessStatBaselineLive(benchmark::State& state) {
    // Every pid directory, kernel threads included: a list must read those too to know them.
    std::vector<int> pids;
    for (const QString& name : QDir("/proc").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool number = false;
        const int pid = name.toInt(&number);
        if (number)
            pids.push_back(pid);
    }
    const int procFd = ::open("/proc", O_RDONLY | O_DIRECTORY);
    char path[32];
    char buffer[2048];
    for (auto _ : state) {
        for (int pid : pids) {
            std::snprintf(path, sizeof path, "%d/stat", pid);
            const int fd = ::openat(procFd, path, O_RDONLY | O_CLOEXEC);
            benchmark::DoNotOptimize(::read(fd, buffer, sizeof buffer));
            ::close(fd);
        }
    }
    ::close(procFd);
    state.counters["processes"] = double(pids.size());
}
LUMETRA_BENCHMARK(BM_ProcessStatBaselineLive);

} // namespace
