#pragma once

#include "model/LogOnce.h"
#include "samplers/disk/DiskCapacityProbe.h"
#include "samplers/disk/DiskProviding.h"
#include "samplers/disk/DiskVolumeOrder.h"
#include "samplers/disk/MountTable.h"
#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"

#include <chrono>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace lumetra {

// The mounted local volumes from the mount table, measured with statvfs, described from
// sysfs and named by their file-system labels, in display order.
class DiskMonitor final : public DiskProviding {
public:
    struct Options {
        // How a mount point is measured; tests give fixed capacities.
        DiskCapacityProbe::Measure measure = statvfsCapacity;
        std::chrono::milliseconds deadline = std::chrono::seconds(1);
        QLocale locale = QLocale();
    };

    explicit DiskMonitor(const KernelRoots& roots = KernelRoots());
    DiskMonitor(const KernelRoots& roots, Options options);
    ~DiskMonitor() override;

    DiskVolumeList currentVolumes() override;

    // A /dev/disk/by-label entry's name as the label it stands for: udev writes characters
    // that cannot appear in a file name (and spaces) as \xHH.
    static QString decodeLabel(std::string_view entryName);

private:
    struct Device;
    struct Label {
        std::string kernelName;
        QString label;
    };

    Device describeDevice(const MountTable::Entry& entry);
    void readLabels();
    QString labelOf(const std::string& kernelName) const;
    QString hostName();
    void readUserHiddenMountPoints();
    bool isHiddenByUser(const MountTable::Entry& entry) const;

    KernelRoots roots_;

    std::mutex lock_; // everything below; listings run one at a time
    KernelFile mountTable_;
    KernelFile fstab_;
    KernelFile utab_;
    std::vector<MountTable::Entry> entries_;
    std::vector<std::string> hiddenMountPoints_;
    std::vector<Label> labels_;
    std::string scratch_;
    DiskVolumeOrder order_;
    LogOnce failure_;
    DiskCapacityProbe probe_; // last: stopped before the rest goes
};

} // namespace lumetra
