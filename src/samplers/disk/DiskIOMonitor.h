#pragma once

#include "model/LogOnce.h"
#include "samplers/disk/DiskIOProviding.h"
#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace lumetra {

// Bytes read and written, summed over the whole physical disks of /proc/diskstats: the
// entries of /sys/block with a device behind them. Partitions (not in /sys/block), loop, RAM,
// zram, device-mapper and RAID devices are left out, so no I/O is counted twice.
class DiskIOMonitor final : public DiskIOProviding {
public:
    using Clock = std::function<Instant()>;

    explicit DiskIOMonitor(
        const KernelRoots& roots = KernelRoots(), Clock now = [] { return WallClock::now(); });

    std::optional<DiskIOCounterSample> currentCounters() override;

private:
    struct Device {
        std::string name;
        bool counted = false;
    };

    bool isWholeDisk(std::string_view name, bool sysfsReadable) const;
    void learnDevices(std::string_view text);
    bool devicesMatch(std::string_view text) const;
    void reportBadLine(std::string_view line, int fields, bool tooFew);

    std::string blockDirectory_;
    Clock now_;

    std::mutex lock_; // the file's buffer and the device list are shared by callers
    KernelFile diskstats_;
    std::vector<Device> devices_; // every line's device, in the file's order
    QStringList countedNames_;
    bool learned_ = false; // the first listing is not a change worth a log line
    LogOnce failure_;
    LogOnce badLine_;
    LogOnce noSysfs_;
};

} // namespace lumetra
