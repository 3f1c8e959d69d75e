#include "samplers/cpu/CPUMonitor.h"

#include "model/Logging.h"

namespace lumetra {

namespace {

// The cpu lines come first; a line is under 100 bytes, so this holds about 40 cores and
// grows on machines with more.
constexpr std::size_t kInitialReadLimit = 4096;
// 4096 cores and their lines, far beyond any machine, bound the growth.
constexpr std::size_t kReadLimitCap = 1 << 20;

} // namespace

CPUMonitor::CPUMonitor(const KernelRoots& roots)
    : stat_(roots.proc("stat"), kReadLimitCap), readLimit_(kInitialReadLimit) {}

// Called with lock_ held.
bool CPUMonitor::readLines(ProcStatCPULines& lines) {
    KernelFileRead read = stat_.readPrefix(readLimit_);
    if (read.ok())
        parseProcStatCPULines(read.text, lines);
    // A read that filled its limit inside the cpu lines was cut: read more next time and now.
    while (read.ok() && lines.total && !lines.complete && read.text.size() >= readLimit_ &&
           readLimit_ < kReadLimitCap) {
        readLimit_ *= 2;
        read = stat_.readPrefix(readLimit_);
        if (read.ok())
            parseProcStatCPULines(read.text, lines);
    }
    if (read.ok() && lines.total) {
        failure_.recovered();
        return true;
    }
    stat_.reopenNextTime();
    if (failure_.failed())
        qCCritical(logMonitoring, "%s: %s", stat_.path().c_str(),
                   read.ok() ? "no readable aggregate cpu line" : read.reason());
    return false;
}

std::optional<CPUUsage> CPUMonitor::currentUsage() {
    std::lock_guard guard(lock_);
    if (!readLines(current_))
        return std::nullopt;
    std::optional<CPUUsage> usage;
    if (previousTotal_)
        usage = CPUUsage{usageBetween(*previousTotal_, *current_.total),
                         coreUsagesBetween(previousCores_, current_.cores)};
    previousTotal_ = current_.total;
    previousCores_.swap(current_.cores); // the old baseline's storage is reused next read
    return usage;
}

} // namespace lumetra
