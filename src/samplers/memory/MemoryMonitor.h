#pragma once

#include "model/LogOnce.h"
#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"
#include "samplers/memory/MemoryProviding.h"
#include "samplers/memory/PressureLevelRule.h"
#include "samplers/memory/PressureWatcher.h"

#include <functional>
#include <memory>
#include <mutex>

namespace lumetra {

// Memory use from /proc/meminfo and the pressure level from PSI.
class MemoryMonitor final : public MemoryProviding {
public:
    using TriggerArming =
        std::function<std::vector<PressureTrigger>(const std::string& path, std::string& whyNot)>;
    using SteadyClock = std::function<PressureLevelRule::Clock::time_point()>;

    struct Options {
        TriggerArming armTriggers = armPressureTriggers;
        SteadyClock now = [] { return PressureLevelRule::Clock::now(); };
        PressureWatcher::WakeFdMaker makeWakeFd = PressureWatcher::makeEventFd;
    };

    explicit MemoryMonitor(const KernelRoots& roots = KernelRoots());
    MemoryMonitor(const KernelRoots& roots, Options options);
    ~MemoryMonitor() override;

    std::optional<MemorySnapshot> currentSnapshot() override;
    MemoryPressureLevel pressure() override;

    // Whether PSI triggers are being watched (false: the level comes from the averages).
    bool triggersArmed() const;

private:
    void onTriggerEvent(PressureEvent event);
    void onTriggersLost();
    std::optional<PressureAverages> readAverages();

    Options options_;

    std::mutex meminfoLock_; // the file's buffer is shared by overlapping callers
    KernelFile meminfo_;
    LogOnce snapshotFailure_;
    LogOnce swapMissing_;

    mutable std::mutex lock_; // guards everything below
    KernelFile pressureFile_;
    PressureLevelRule rule_;
    bool armed_ = false;
    bool pressureFileMissing_ = false;
    LogOnce pressureFailure_;
    std::unique_ptr<PressureWatcher> watcher_; // last: stopped before the rest goes
};

} // namespace lumetra
