#include "samplers/disk/DiskMountFilter.h"

#include <algorithm>
#include <span>

namespace lumetra {

namespace {

constexpr std::string_view kRemoteTypes[] = {
    "nfs",         "nfs4", "cifs",   "smb3",      "smbfs",       "ncpfs",          "sshfs",
    "fuse.sshfs",  "9p",   "ceph",   "fuse.ceph", "glusterfs",   "fuse.glusterfs", "davfs",
    "fuse.davfs2", "afs",  "lustre", "gpfs",      "fuse.rclone", "fuse.s3fs",      "beegfs"};

constexpr std::string_view kPseudoTypes[] = {
    "proc",        "sysfs",       "tmpfs",         "devtmpfs",
    "devpts",      "cgroup",      "cgroup2",       "cpuset",
    "overlay",     "aufs",        "squashfs",      "autofs",
    "debugfs",     "tracefs",     "securityfs",    "pstore",
    "bpf",         "configfs",    "fusectl",       "mqueue",
    "hugetlbfs",   "binfmt_misc", "efivarfs",      "ramfs",
    "rpc_pipefs",  "nsfs",        "selinuxfs",     "smackfs",
    "nfsd",        "devfs",       "usbfs",         "fuse.gvfsd-fuse",
    "fuse.portal", "fuse.lxcfs",  "fuse.snapfuse", "fuse.squashfuse"};

// File systems on storage whose mounts carry an anonymous device number (0:N) rather than
// the block device's, and whose source need not be a device path (a ZFS dataset, a FUSE
// driver's own name).
bool mayStoreWithoutDevice(std::string_view fsType) {
    return fsType == "btrfs" || fsType == "zfs" || fsType == "bcachefs" || fsType == "fuseblk" ||
           fsType.starts_with("fuse.");
}

bool contains(std::span<const std::string_view> list, std::string_view value) {
    for (const std::string_view item : list) {
        if (item == value)
            return true;
    }
    return false;
}

// When two mounts show the same file system, which one stands for it: "/" first, then a
// mount of the file system's own root rather than a bind mount of a directory inside it.
int preference(const MountTable::Entry& entry) {
    if (entry.mountPoint == "/")
        return 2;
    return entry.root == "/" ? 1 : 0;
}

} // namespace

bool DiskMountFilter::isRemote(std::string_view fsType) {
    return contains(kRemoteTypes, fsType) || fsType.starts_with("nfs");
}

bool DiskMountFilter::isPseudo(const MountTable::Entry& entry) {
    if (contains(kPseudoTypes, entry.fsType))
        return true;
    // Unknown kernel file systems without a device: nothing to measure as a disk.
    return !entry.hasBlockDevice() && !entry.source.starts_with('/') &&
           !mayStoreWithoutDevice(entry.fsType);
}

std::vector<std::size_t> DiskMountFilter::select(const std::vector<MountTable::Entry>& entries,
                                                 const HiddenByUser& hiddenByUser) {
    std::vector<std::size_t> chosen;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const MountTable::Entry& entry = entries[index];
        const bool isRoot = entry.mountPoint == "/";
        if (!isRoot && (isPseudo(entry) || isRemote(entry.fsType) ||
                        entry.hasOption("x-gvfs-hide") || (hiddenByUser && hiddenByUser(entry))))
            continue;

        // A later mount on the same point covers this one (its parent is this mount).
        bool covered = false;
        for (std::size_t later = index + 1; later < entries.size() && !covered; ++later) {
            covered = entries[later].parentId == entry.id &&
                      entries[later].mountPoint == entry.mountPoint;
        }
        if (covered && !isRoot)
            continue;

        // One entry per file system: bind mounts repeat the device.
        auto same = std::find_if(chosen.begin(), chosen.end(), [&](std::size_t other) {
            return entries[other].major == entry.major && entries[other].minor == entry.minor;
        });
        if (same == chosen.end()) {
            chosen.push_back(index);
        } else if (preference(entry) > preference(entries[*same])) {
            chosen.erase(same);
            chosen.push_back(index);
        }
    }
    return chosen;
}

} // namespace lumetra
