#pragma once

#include "model/TopApplication.h"
#include "model/TopApplicationOrder.h"

#include <QList>
#include <QMetaType>

namespace lumetra {

// One reading of what is using the machine: the leading groups by CPU and by memory (the
// union of both, so either order can be shown without another reading).
struct TopApplications {
    QList<TopApplication> groups;
    // False on the first reading after the list was opened: no CPU baseline yet.
    bool cpuValid = false;
    // /proc hides other users' processes (hidepid): the list shows only the user's own.
    bool onlyOwnProcessesVisible = false;
    int processCount = 0; // processes read, kernel threads and zombies left out
    int logicalCpuCount = 1;

    // The first `count` groups by `order`, largest first; ties by name.
    QList<TopApplication> top(TopApplicationOrder order, int count) const;

    bool operator==(const TopApplications&) const = default;
};

} // namespace lumetra

Q_DECLARE_METATYPE(lumetra::TopApplications)
