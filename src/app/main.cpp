#include "model/AppId.h"
#include "samplers/CPUMonitor.h"
#include "samplers/MemoryMonitor.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

// For now lumetra prints one line with CPU and memory figures every second.
int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumetra"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(lumetra::kAppVersion));

    lumetra::CPUMonitor cpu;
    lumetra::MemoryMonitor memory;

    auto printLine = [&] {
        const double usage = cpu.currentUsage();
        const auto snapshot = memory.currentSnapshot();
        const double gib = 1024.0 * 1024.0 * 1024.0;
        if (snapshot) {
            std::printf("CPU %.0f%%  MEM %.1f/%.1f GiB  pressure %s\n", usage,
                        static_cast<double>(snapshot->used) / gib,
                        static_cast<double>(snapshot->total) / gib,
                        std::string(lumetra::rawValue(memory.pressure())).c_str());
        } else {
            std::printf("CPU %.0f%%  MEM unavailable\n", usage);
        }
        std::fflush(stdout);
    };
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, printLine);
    printLine();
    timer.start(1000);
    return app.exec();
}
