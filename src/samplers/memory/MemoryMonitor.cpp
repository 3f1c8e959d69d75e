#include "samplers/memory/MemoryMonitor.h"

#include "model/Logging.h"

namespace lumetra {

MemoryMonitor::MemoryMonitor(const KernelRoots& roots) : MemoryMonitor(roots, Options()) {}

MemoryMonitor::MemoryMonitor(const KernelRoots& roots, Options options)
    : options_(std::move(options)), meminfo_(roots.proc("meminfo"), 256 * 1024),
      pressureFile_(roots.proc("pressure/memory"), 64 * 1024) {
    std::string whyNot;
    std::vector<PressureTrigger> triggers = options_.armTriggers(pressureFile_.path(), whyNot);
    if (!triggers.empty()) {
        armed_ = true; // before the thread starts, which may report the triggers lost
        watcher_ = PressureWatcher::start(
            std::move(triggers), [this](PressureEvent event) { onTriggerEvent(event); },
            [this] { onTriggersLost(); }, whyNot, options_.makeWakeFd);
        if (!watcher_)
            armed_ = false; // no thread was started
    }
    if (!armed_)
        qCInfo(logMonitoring, "Memory pressure triggers not armed (%s); reading %s instead",
               whyNot.c_str(), pressureFile_.path().c_str());
}

MemoryMonitor::~MemoryMonitor() {
    watcher_.reset(); // join the watcher before the state it writes goes away
}

bool MemoryMonitor::triggersArmed() const {
    std::lock_guard guard(lock_);
    return armed_;
}

void MemoryMonitor::onTriggerEvent(PressureEvent event) {
    std::lock_guard guard(lock_);
    rule_.onEvent(event, options_.now());
}

void MemoryMonitor::onTriggersLost() {
    std::lock_guard guard(lock_);
    armed_ = false;
    qCWarning(logMonitoring, "Memory pressure trigger lost; reading %s instead",
              pressureFile_.path().c_str());
}

std::optional<MemorySnapshot> MemoryMonitor::currentSnapshot() {
    std::lock_guard guard(meminfoLock_);
    const KernelFileRead read = meminfo_.readAll();
    MeminfoParse parsed;
    if (read.ok() || read.error == KernelFileError::tooLarge)
        parsed = parseMeminfo(read.text);
    if (parsed.snapshot) {
        snapshotFailure_.recovered();
        // Kernels built without swap support have no swap lines: say so once, not per tick.
        if (!parsed.snapshot->swapTotal) {
            if (swapMissing_.failed())
                qCInfo(logMonitoring, "%s: no SwapTotal or SwapFree; swap is not shown",
                       meminfo_.path().c_str());
        } else {
            swapMissing_.recovered();
        }
        return parsed.snapshot;
    }
    meminfo_.reopenNextTime();
    if (snapshotFailure_.failed()) {
        const bool readFailed = !read.ok() && read.error != KernelFileError::tooLarge;
        const char* reason = readFailed ? read.reason()
                             : parsed.error == MeminfoError::noTotal
                                 ? "no MemTotal"
                                 : "neither MemAvailable nor MemFree";
        qCCritical(logMonitoring, "%s: %s", meminfo_.path().c_str(), reason);
    }
    return std::nullopt;
}

// Called with lock_ held.
std::optional<PressureAverages> MemoryMonitor::readAverages() {
    if (pressureFileMissing_)
        return std::nullopt;
    const KernelFileRead read = pressureFile_.readAll();
    std::optional<PressureAverages> averages;
    if (read.ok())
        averages = parsePressureAverages(read.text);
    if (averages) {
        pressureFailure_.recovered();
        return averages;
    }
    pressureFile_.reopenNextTime();
    if (read.error == KernelFileError::missing) {
        // Kernels before 4.20, or built without PSI: there is nothing to watch.
        pressureFileMissing_ = true;
        qCWarning(logMonitoring, "No memory pressure information (%s: %s); reporting normal",
                  pressureFile_.path().c_str(), read.reason());
    } else if (pressureFailure_.failed()) {
        qCWarning(logMonitoring, "%s: %s; reporting normal memory pressure",
                  pressureFile_.path().c_str(), read.ok() ? "no readable averages" : read.reason());
    }
    return std::nullopt;
}

MemoryPressureLevel MemoryMonitor::pressure() {
    std::lock_guard guard(lock_);
    const auto now = options_.now();
    if (armed_) {
        if (rule_.needsAverages(now)) {
            if (const auto averages = readAverages())
                rule_.settle(*averages, now);
        }
        return rule_.level();
    }
    const auto averages = readAverages();
    return averages ? PressureLevelRule::levelFromAverages(*averages) : MemoryPressureLevel::normal;
}

} // namespace lumetra
