#pragma once

#include "samplers/disk/MountTable.h"

#include <functional>
#include <string_view>
#include <vector>

namespace lumetra {

// Which mounts of the table are volumes a person would call a disk: local file systems on
// storage, each shown once. The mount at "/" is always kept, whatever it is (in a container
// it is often an overlay).
class DiskMountFilter {
public:
    // Mounts the desktop is told not to show (x-gvfs-hide in fstab or in util-linux's utab,
    // which the kernel's table does not carry); the option in the table itself is honoured
    // too.
    using HiddenByUser = std::function<bool(const MountTable::Entry&)>;

    // Indices into `entries` of the volumes to show, in table order.
    static std::vector<std::size_t> select(const std::vector<MountTable::Entry>& entries,
                                           const HiddenByUser& hiddenByUser = {});

    // Network and other remote file systems.
    static bool isRemote(std::string_view fsType);
    // Kernel and user-space file systems that hold no storage of their own, and read-only
    // images (snap packages) that only look like disks.
    static bool isPseudo(const MountTable::Entry& entry);
};

} // namespace lumetra
