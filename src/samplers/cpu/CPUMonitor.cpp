#include "samplers/cpu/CPUMonitor.h"

#include "model/Logging.h"

namespace lumetra {

namespace {

// The aggregate line comes first and is far shorter than this, whatever the core count.
constexpr std::size_t kFirstLineLimit = 1024;

} // namespace

CPUMonitor::CPUMonitor(const KernelRoots& roots) : stat_(roots.proc("stat")) {}

std::optional<CPUTicks> CPUMonitor::readTicks() {
    std::lock_guard guard(readLock_);
    const KernelFileRead read = stat_.readPrefix(kFirstLineLimit);
    std::optional<CPUTicks> ticks;
    if (read.ok())
        ticks = parseProcStatCPULine(read.text);
    if (ticks) {
        failure_.recovered();
        return ticks;
    }
    stat_.reopenNextTime();
    if (failure_.failed())
        qCCritical(logMonitoring, "%s: %s", stat_.path().c_str(),
                   read.ok() ? "no readable aggregate cpu line" : read.reason());
    return std::nullopt;
}

std::optional<double> CPUMonitor::currentUsage() {
    const std::optional<CPUTicks> sample = readTicks();
    if (!sample)
        return std::nullopt;
    std::lock_guard guard(lock_);
    std::optional<double> usage;
    if (previousSample_)
        usage = usageBetween(*previousSample_, *sample);
    previousSample_ = sample;
    return usage;
}

} // namespace lumetra
