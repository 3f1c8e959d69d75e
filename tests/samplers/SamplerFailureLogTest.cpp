#include "model/Logging.h"
#include "samplers/cpu/CPUMonitor.h"
#include "samplers/disk/DiskIOMonitor.h"
#include "samplers/disk/DiskMonitor.h"
#include "samplers/memory/MemoryMonitor.h"
#include "samplers/network/NetworkMonitor.h"
#include "support/FixtureTree.h"
#include "support/LogCapture.h"

#include <QDir>

#include <gtest/gtest.h>

#include <functional>

using namespace lumetra;
using lumetra::testing::ScratchTree;

namespace {

// A source a sampler reads: where it lives, what makes it readable, and a reading.
struct Source {
    const char* name;
    QString relative;
    QString goodFile;
    QByteArray goodContent;
    std::function<std::function<void()>(const KernelRoots&)> reader;
};

template <typename Monitor, typename Read>
std::function<std::function<void()>(const KernelRoots&)> readerOf(Read read) {
    return [read](const KernelRoots& roots) {
        auto monitor = std::make_shared<Monitor>(roots);
        return std::function<void()>([monitor, read] { read(*monitor); });
    };
}

// Every sampler names the Linux file it read and the system's reason, logs a failure once
// however many ticks it lasts, and logs it again only after the source had recovered.
TEST(SamplerFailureLogTest, FailureNamesTheFileAndIsLoggedOncePerOutage) {
    const Source sources[] = {
        {"cpu", "proc/stat", "proc/stat", "cpu  1 2 3 4 5 6 7 8 0 0\n",
         readerOf<CPUMonitor>([](CPUMonitor& m) { m.currentUsage(); })},
        {"memory", "proc/meminfo", "proc/meminfo",
         "MemTotal: 1000 kB\nMemAvailable: 500 kB\nSwapTotal: 0 kB\nSwapFree: 0 kB\n",
         readerOf<MemoryMonitor>([](MemoryMonitor& m) { m.currentSnapshot(); })},
        {"disk", "proc/1/mountinfo", "proc/1/mountinfo",
         "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n",
         readerOf<DiskMonitor>([](DiskMonitor& m) { m.currentVolumes(); })},
        {"disk throughput", "proc/diskstats", "proc/diskstats",
         "   8       0 sda 1 2 3 4 5 6 7 8 9 10 11\n",
         readerOf<DiskIOMonitor>([](DiskIOMonitor& m) { m.currentCounters(); })},
        {"network", "sys/class/net", "sys/class/net/eth0/statistics/rx_bytes", "1\n",
         readerOf<NetworkMonitor>([](NetworkMonitor& m) { m.currentCounters(); })},
    };
    for (const Source& source : sources) {
        SCOPED_TRACE(source.name);
        ScratchTree tree;
        tree.makeDirectory("proc");
        tree.makeDirectory("sys");
        const QString path = QString::fromStdString(tree.path(source.relative));
        lumetra::testing::LogCapture log(logMonitoring());
        const std::function<void()> read = source.reader(KernelRoots(tree.root()));
        read();
        read();
        tree.write(source.goodFile, source.goodContent);
        read();
        QDir(path).removeRecursively();
        QFile::remove(path);
        read();
        read();
        const QString line = path + ": No such file or directory";
        EXPECT_EQ(log.lines().filter(path + ':'), (QStringList{line, line}))
            << log.lines().join('\n').toStdString();
    }
}

} // namespace
