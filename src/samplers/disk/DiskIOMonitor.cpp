#include "samplers/disk/DiskIOMonitor.h"

#include "model/Logging.h"
#include "samplers/disk/DiskStats.h"
#include "samplers/kernel/TextScan.h"

#include <algorithm>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace lumetra {

namespace {

constexpr std::uint64_t kSectorBytes = 512; // the unit of /proc/diskstats, on every disk

// A machine with thousands of disks has a few hundred kilobytes of lines.
constexpr std::size_t kDiskstatsCap = 4 << 20;

bool exists(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

} // namespace

DiskIOMonitor::DiskIOMonitor(const KernelRoots& roots, Clock now)
    : blockDirectory_(roots.sys("block/")), now_(std::move(now)),
      diskstats_(roots.proc("diskstats"), kDiskstatsCap) {}

bool DiskIOMonitor::isWholeDisk(std::string_view name, bool sysfsReadable) const {
    if (isVirtualBlockDeviceName(name))
        return false;
    if (!sysfsReadable)
        return !looksLikePartitionName(name);
    const std::string directory = blockDirectory_ + std::string(name);
    return exists(directory) && exists(directory + "/device");
}

// True when the lines name the known devices in the same order: the usual case, checked on
// every reading without touching sysfs.
bool DiskIOMonitor::devicesMatch(std::string_view text) const {
    std::size_t index = 0;
    while (!text.empty()) {
        const std::string_view name = diskStatsDeviceName(textscan::nextLine(text));
        if (name.empty())
            continue;
        if (index >= devices_.size() || devices_[index].name != name)
            return false;
        ++index;
    }
    return index == devices_.size();
}

// Decides once per device set which lines are whole disks, and says so when the set of
// counted disks changed (a disk plugged in or removed).
void DiskIOMonitor::learnDevices(std::string_view text) {
    const bool sysfsReadable = ::access(blockDirectory_.c_str(), R_OK | X_OK) == 0;
    if (!sysfsReadable && noSysfs_.failed())
        qCWarning(logMonitoring, "%.*s: %s; telling disks from partitions by their names",
                  static_cast<int>(blockDirectory_.size() - 1), blockDirectory_.c_str(),
                  std::strerror(errno));
    else if (sysfsReadable)
        noSysfs_.recovered();

    std::vector<Device> devices;
    QStringList counted;
    while (!text.empty()) {
        const std::string_view name = diskStatsDeviceName(textscan::nextLine(text));
        if (name.empty())
            continue;
        const bool whole = isWholeDisk(name, sysfsReadable);
        devices.push_back({std::string(name), whole});
        if (whole)
            counted.append(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    }
    counted.sort();
    if (learned_ && counted != countedNames_)
        qCInfo(logMonitoring, "Disk throughput now counts: %s",
               qUtf8Printable(counted.isEmpty() ? QStringLiteral("no disks")
                                                : counted.join(QStringLiteral(", "))));
    devices_ = std::move(devices);
    countedNames_ = std::move(counted);
    learned_ = true;
}

void DiskIOMonitor::reportBadLine(std::string_view line, int fields, bool tooFew) {
    if (!badLine_.failed())
        return;
    if (tooFew)
        qCWarning(logMonitoring, "%s: a line with %d fields, at least 14 expected: \"%.*s\"",
                  diskstats_.path().c_str(), fields,
                  static_cast<int>(std::min<std::size_t>(line.size(), 120)), line.data());
    else
        qCWarning(logMonitoring, "%s: a line that does not read as numbers: \"%.*s\"",
                  diskstats_.path().c_str(),
                  static_cast<int>(std::min<std::size_t>(line.size(), 120)), line.data());
}

std::optional<DiskIOCounterSample> DiskIOMonitor::currentCounters() {
    std::lock_guard guard(lock_);
    const KernelFileRead read = diskstats_.readAll();
    if (!read.ok() && read.error != KernelFileError::tooLarge) {
        diskstats_.reopenNextTime();
        if (failure_.failed())
            qCCritical(logMonitoring, "%s: %s", diskstats_.path().c_str(), read.reason());
        return std::nullopt;
    }
    failure_.recovered();
    if (!devicesMatch(read.text))
        learnDevices(read.text);

    DiskIOCounterSample sample;
    sample.timestamp = now_();
    std::string_view text = read.text;
    std::size_t index = 0;
    bool allLinesGood = true;
    while (!text.empty()) {
        const std::string_view line = textscan::nextLine(text);
        if (diskStatsDeviceName(line).empty())
            continue; // a blank line, or one without a device name, as learnDevices skips
        // Only the counted disks' lines are parsed: loop, RAM, zram and partition lines are
        // most of the file on a typical machine.
        if (!devices_[index++].counted)
            continue;
        const DiskStatsLineParse parse = parseDiskStatsLine(line);
        if (parse.error != DiskStatsLineError::none) {
            // A disk whose line cannot be read is left out of this sample; the others count.
            allLinesGood = false;
            reportBadLine(line, parse.fields, parse.error == DiskStatsLineError::tooFewFields);
            continue;
        }
        sample.bytesRead = textscan::saturatingAdd(
            sample.bytesRead, textscan::saturatingMultiply(parse.line.sectorsRead, kSectorBytes));
        sample.bytesWritten = textscan::saturatingAdd(
            sample.bytesWritten,
            textscan::saturatingMultiply(parse.line.sectorsWritten, kSectorBytes));
    }
    if (allLinesGood)
        badLine_.recovered();
    sample.devices = countedNames_;
    return sample;
}

} // namespace lumetra
