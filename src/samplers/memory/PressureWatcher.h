#pragma once

#include "samplers/memory/PressureLevelRule.h"

#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace lumetra {

// One armed trigger: a descriptor that polls ready with `events` when the kernel reports a
// pressure event of its kind. The watcher owns and closes the descriptor.
struct PressureTrigger {
    int fd = -1;
    PressureEvent event = PressureEvent::warning;
    short events = 0;
};

// Arms the two PSI triggers on a live /proc/pressure/memory: "some 200000 2000000" for the
// warning event and "full 200000 2000000" for the critical one (two-second windows, which an
// unprivileged user may arm on current kernels). Empty when they cannot be armed; `whyNot`
// then says why. Never writes to a file that is not on procfs.
std::vector<PressureTrigger> armPressureTriggers(const std::string& path, std::string& whyNot);

// Waits for trigger events on a private thread and reports them. A trigger that reports an
// error has gone away: the watcher stops and reports the loss once.
class PressureWatcher {
public:
    using EventHandler = std::function<void(PressureEvent)>;
    using LossHandler = std::function<void()>;
    // Makes the descriptor that wakes the thread to stop it: a descriptor, or -1 with errno.
    using WakeFdMaker = std::function<int()>;

    // Starts the thread. Null, with the triggers closed and `whyNot` set, when the wake-up
    // descriptor cannot be made (EMFILE, ENFILE, ENOMEM): a thread blocked in poll() without
    // one could never be stopped, so the caller reads the file instead.
    static std::unique_ptr<PressureWatcher> start(std::vector<PressureTrigger> triggers,
                                                  EventHandler onEvent, LossHandler onLost,
                                                  std::string& whyNot,
                                                  const WakeFdMaker& makeWakeFd = makeEventFd);
    static int makeEventFd();

    ~PressureWatcher(); // wakes the thread and joins it; never waits on anything else
    PressureWatcher(const PressureWatcher&) = delete;
    PressureWatcher& operator=(const PressureWatcher&) = delete;

    static QString threadName();

private:
    PressureWatcher(std::vector<PressureTrigger> triggers, EventHandler onEvent, LossHandler onLost,
                    int wakeFd);
    void run();

    std::vector<PressureTrigger> triggers_;
    EventHandler onEvent_;
    LossHandler onLost_;
    int wakeFd_ = -1;
    std::thread thread_;
};

} // namespace lumetra
