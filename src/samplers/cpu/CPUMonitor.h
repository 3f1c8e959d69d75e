#pragma once

#include "model/LogOnce.h"
#include "samplers/cpu/CPUProviding.h"
#include "samplers/cpu/CPUTicks.h"
#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"

#include <mutex>
#include <optional>

namespace lumetra {

// Whole-machine CPU usage from the aggregate line of /proc/stat.
class CPUMonitor final : public CPUProviding {
public:
    explicit CPUMonitor(const KernelRoots& roots = KernelRoots());

    std::optional<double> currentUsage() override;

private:
    std::optional<CPUTicks> readTicks();

    std::mutex readLock_; // the file's buffer is shared by overlapping callers
    KernelFile stat_;
    LogOnce failure_;

    std::mutex lock_; // guards previousSample_
    std::optional<CPUTicks> previousSample_;
};

} // namespace lumetra
