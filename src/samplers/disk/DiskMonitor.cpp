#include "samplers/disk/DiskMonitor.h"

#include "model/HexDigit.h"

#include "model/Logging.h"
#include "samplers/disk/DiskMountFilter.h"
#include "samplers/kernel/TextScan.h"

#include <QSysInfo>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace lumetra {

namespace {

// A mount table with thousands of snaps and containers is a few MiB.
constexpr std::size_t kMountTableCap = 16 << 20;
constexpr std::size_t kConfigFileLimit = 1 << 20;

std::string_view lastComponent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

bool readLink(const std::string& path, std::string& target) {
    char buffer[4096];
    const ssize_t length = ::readlink(path.c_str(), buffer, sizeof buffer);
    if (length <= 0 || static_cast<std::size_t>(length) >= sizeof buffer)
        return false;
    target.assign(buffer, static_cast<std::size_t>(length));
    return true;
}

// Escaped mount points of fstab(5) lines whose options carry `option`.
void collectFstabMountPoints(std::string_view text, std::string_view option,
                             std::vector<std::string>& mountPoints) {
    while (!text.empty()) {
        std::string_view line = textscan::nextLine(text);
        if (textscan::trim(line).starts_with('#'))
            continue;
        textscan::nextField(line); // the device
        const std::string_view mountPoint = textscan::nextField(line);
        textscan::nextField(line); // the type
        const std::string_view options = textscan::nextField(line);
        if (!mountPoint.empty() && options.find(option) != std::string_view::npos)
            mountPoints.emplace_back(mountPoint);
    }
}

// util-linux's /run/mount/utab: "ID=… SRC=… TARGET=/mnt/x ROOT=/ OPTS=x-gvfs-hide".
void collectUtabMountPoints(std::string_view text, std::string_view option,
                            std::vector<std::string>& mountPoints) {
    while (!text.empty()) {
        std::string_view line = textscan::nextLine(text);
        std::string_view target;
        bool hidden = false;
        for (std::string_view field = textscan::nextField(line); !field.empty();
             field = textscan::nextField(line)) {
            if (field.starts_with("TARGET="))
                target = field.substr(7);
            else if (field.starts_with("OPTS=") && field.find(option) != std::string_view::npos)
                hidden = true;
        }
        if (hidden && !target.empty())
            mountPoints.emplace_back(target);
    }
}

constexpr std::string_view kHideOption = "x-gvfs-hide";

} // namespace

struct DiskMonitor::Device {
    bool known = false;
    bool removable = false;
    bool onUsb = false;
    std::string kernelName;
};

DiskMonitor::DiskMonitor(const KernelRoots& roots) : DiskMonitor(roots, Options()) {}

DiskMonitor::DiskMonitor(const KernelRoots& roots, Options options)
    : roots_(roots), mountTable_(roots.mountTable(), kMountTableCap),
      fstab_(roots.at("etc/fstab"), kConfigFileLimit),
      utab_(roots.at("run/mount/utab"), kConfigFileLimit), order_(options.locale),
      probe_(std::move(options.measure), options.deadline) {}

DiskMonitor::~DiskMonitor() = default;

QString DiskMonitor::decodeLabel(std::string_view entryName) {
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(entryName.size()));
    for (std::size_t i = 0; i < entryName.size(); ++i) {
        if (entryName[i] == '\\' && i + 3 < entryName.size() && entryName[i + 1] == 'x') {
            const int high = hexDigitValue(entryName[i + 2]);
            const int low = hexDigitValue(entryName[i + 3]);
            if (high >= 0 && low >= 0) {
                bytes.append(static_cast<char>(high * 16 + low));
                i += 3;
                continue;
            }
        }
        bytes.append(entryName[i]);
    }
    return QString::fromUtf8(bytes);
}

// Whether the file system sits on a block device, and what kind: /sys/dev/block/MAJ:MIN
// links to the device, below its bus (…/usb1/1-2/…/block/sdb/sdb1, …/nvme/nvme0/nvme0n1/…).
DiskMonitor::Device DiskMonitor::describeDevice(const MountTable::Entry& entry) {
    Device device;
    if (!entry.hasBlockDevice())
        return device;
    const std::string link =
        roots_.sys("dev/block/" + std::to_string(entry.major) + ':' + std::to_string(entry.minor));
    if (!readLink(link, scratch_))
        return device;
    device.known = true;
    device.kernelName = lastComponent(scratch_);
    device.onUsb = scratch_.find("/usb") != std::string::npos;
    // A partition's removable flag lives on its disk, the directory above it.
    std::string disk = device.kernelName;
    if (::access((link + "/partition").c_str(), F_OK) == 0) {
        std::string_view parent = scratch_;
        parent.remove_suffix(device.kernelName.size());
        disk = lastComponent(parent);
    }
    const KernelFileRead removable =
        KernelFile::readOnce(roots_.sys("block/" + disk + "/removable"), scratch_, 16);
    device.removable = removable.ok() && textscan::trim(removable.text) == "1";
    return device;
}

void DiskMonitor::readLabels() {
    labels_.clear();
    const std::string directory = roots_.at("dev/disk/by-label");
    DIR* listing = ::opendir(directory.c_str());
    if (!listing)
        return; // no udev (containers, minimal systems): volumes go by their paths
    while (const dirent* entry = ::readdir(listing)) {
        if (entry->d_name[0] == '.')
            continue;
        if (!readLink(directory + '/' + entry->d_name, scratch_))
            continue;
        labels_.push_back({std::string(lastComponent(scratch_)), decodeLabel(entry->d_name)});
    }
    ::closedir(listing);
}

QString DiskMonitor::labelOf(const std::string& kernelName) const {
    for (const Label& label : labels_) {
        if (label.kernelName == kernelName)
            return label.label;
    }
    return {};
}

QString DiskMonitor::hostName() {
    const KernelFileRead read =
        KernelFile::readOnce(roots_.proc("sys/kernel/hostname"), scratch_, 256);
    const std::string_view name = read.ok() ? textscan::trim(read.text) : std::string_view();
    if (!name.empty())
        return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
    const QString live = roots_.isLiveSystem() ? QSysInfo::machineHostName() : QString();
    return live.isEmpty() ? QStringLiteral("/") : live;
}

void DiskMonitor::readUserHiddenMountPoints() {
    hiddenMountPoints_.clear();
    // Opened afresh each time: editors replace fstab by renaming a new file over it.
    KernelFileRead read = fstab_.readAll();
    fstab_.reopenNextTime();
    if (read.ok() && read.text.find(kHideOption) != std::string_view::npos)
        collectFstabMountPoints(read.text, kHideOption, hiddenMountPoints_);
    read = utab_.readAll();
    utab_.reopenNextTime();
    if (read.ok() && read.text.find(kHideOption) != std::string_view::npos)
        collectUtabMountPoints(read.text, kHideOption, hiddenMountPoints_);
}

bool DiskMonitor::isHiddenByUser(const MountTable::Entry& entry) const {
    return std::find(hiddenMountPoints_.begin(), hiddenMountPoints_.end(), entry.mountPoint) !=
           hiddenMountPoints_.end();
}

DiskVolumeList DiskMonitor::currentVolumes() {
    std::lock_guard guard(lock_);
    const KernelFileRead read = mountTable_.readAll();
    if (read.ok() || read.error == KernelFileError::tooLarge)
        MountTable::parse(read.text, entries_);
    else
        entries_.clear();
    if (entries_.empty()) {
        mountTable_.reopenNextTime();
        if (failure_.failed())
            qCCritical(logMonitoring, "%s: %s", mountTable_.path().c_str(),
                       read.ok() ? "no mounts listed" : read.reason());
        return {};
    }
    failure_.recovered();

    readUserHiddenMountPoints();
    const std::vector<std::size_t> chosen = DiskMountFilter::select(
        entries_, [this](const MountTable::Entry& entry) { return isHiddenByUser(entry); });

    std::vector<std::string> mountPoints;
    std::vector<std::string> paths;
    mountPoints.reserve(chosen.size());
    paths.reserve(chosen.size());
    for (const std::size_t index : chosen) {
        mountPoints.push_back(MountTable::decode(entries_[index].mountPoint));
        // Below another root the host's mount points are measured inside that root.
        const std::string& mountPoint = mountPoints.back();
        paths.push_back(roots_.at(mountPoint.starts_with('/') ? mountPoint.substr(1) : mountPoint));
    }
    const std::vector<std::optional<VolumeCapacity>> capacities = probe_.measureAll(paths);

    DiskVolumeList volumes;
    volumes.reserve(chosen.size());
    bool labelsRead = false;
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        const std::optional<VolumeCapacity>& capacity = capacities[i];
        if (!capacity || capacity->total < 1)
            continue;
        const MountTable::Entry& entry = entries_[chosen[i]];
        const Device device = describeDevice(entry);
        DiskVolume volume;
        volume.id = QString::fromStdString(mountPoints[i]);
        volume.totalCapacity = capacity->total;
        volume.availableCapacity = std::max<std::int64_t>(capacity->available, 0);
        volume.isBootVolume = mountPoints[i] == "/";
        // Without a block device there is nothing to say otherwise: internal.
        volume.isRemovable = device.removable;
        volume.isEjectable = device.removable || device.onUsb;
        volume.isInternal = !volume.isEjectable;
        if (device.known) {
            if (!labelsRead) {
                readLabels();
                labelsRead = true;
            }
            volume.name = labelOf(device.kernelName);
        }
        if (volume.name.isEmpty()) {
            if (volume.isBootVolume) {
                volume.name = hostName();
            } else {
                const std::string_view last = lastComponent(mountPoints[i]);
                volume.name = QString::fromUtf8(last.data(), static_cast<qsizetype>(last.size()));
            }
        }
        volumes.push_back(std::move(volume));
    }
    order_.sort(volumes);
    return volumes;
}

} // namespace lumetra
