#pragma once

#include "model/TopApplication.h"
#include "samplers/kernel/KernelRoots.h"

#include <sys/types.h>
#include <unistd.h>

namespace lumetra {

// What happened to a group's processes when asked to stop.
struct StopOutcome {
    int signalled = 0;
    int gone = 0;         // had exited, or the pid belongs to another process now
    int notPermitted = 0; // EPERM, or not the user's own process
    int failed = 0;       // any other error

    bool operator==(const StopOutcome&) const = default;
};

// Sends a signal to each process of a group, only to the user's own and only to the process
// that was listed: a pid whose start time changed since is another process and is left alone.
class ProcessSignaller {
public:
    explicit ProcessSignaller(const KernelRoots& roots = KernelRoots(), uid_t user = ::geteuid());

    StopOutcome send(const QList<ProcessRef>& processes, int signal) const;

private:
    KernelRoots roots_;
    uid_t user_;
};

} // namespace lumetra
