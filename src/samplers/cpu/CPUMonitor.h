#pragma once

#include "model/LogOnce.h"
#include "samplers/cpu/CPUProviding.h"
#include "samplers/cpu/CPUTicks.h"
#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"

#include <mutex>
#include <optional>

namespace lumetra {

// Whole-machine and per-core CPU usage from the cpu lines at the start of /proc/stat, all
// from one read.
class CPUMonitor final : public CPUProviding {
public:
    explicit CPUMonitor(const KernelRoots& roots = KernelRoots());

    std::optional<CPUUsage> currentUsage() override;

private:
    bool readLines(ProcStatCPULines& lines);

    std::mutex lock_; // overlapping callers share the file's buffer and the baseline
    KernelFile stat_;
    std::size_t readLimit_; // grows until one read holds every cpu line
    LogOnce failure_;
    ProcStatCPULines current_;
    std::optional<CPUTicks> previousTotal_;
    std::vector<CoreTicks> previousCores_;
};

} // namespace lumetra
