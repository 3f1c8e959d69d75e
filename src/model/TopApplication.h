#pragma once

#include <QList>
#include <QString>

#include <cstdint>

namespace lumetra {

// One process as a signal may reach it: the start time tells a reused pid from the original.
struct ProcessRef {
    int pid = 0;
    std::uint64_t startTime = 0; // clock ticks after boot, field 22 of /proc/PID/stat

    bool operator==(const ProcessRef&) const = default;
};

// An application and the processes it launched, or one process that belongs to none.
struct TopApplication {
    QString name;  // the desktop entry's Name, else the process's own name
    QString icon;  // the desktop entry's Icon (a theme name or a path); empty for none
    QString appId; // the application id from its scope; empty for a lone process
    QList<ProcessRef> processes;
    double cpuPercent = 0; // of one core, as top shows it; 200 is two cores busy
    std::uint64_t residentBytes = 0;
    bool ownedByUser = false; // every process is the user's own, so they may be stopped

    bool isApplication() const { return !appId.isEmpty(); }
    int processCount() const { return int(processes.size()); }

    bool operator==(const TopApplication&) const = default;
};

} // namespace lumetra
