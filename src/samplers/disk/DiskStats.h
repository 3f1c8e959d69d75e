#pragma once

#include <cstdint>
#include <string_view>

namespace lumetra {

// One line of /proc/diskstats, as far as throughput needs it.
struct DiskStatsLine {
    std::string_view name;         // points into the parsed text
    std::uint64_t sectorsRead = 0; // 512-byte units, whatever the disk's sector size
    std::uint64_t sectorsWritten = 0;

    bool operator==(const DiskStatsLine&) const = default;
};

// Why a line gave no counters.
enum class DiskStatsLineError { none, tooFewFields, badNumber };

struct DiskStatsLineParse {
    DiskStatsLine line;
    DiskStatsLineError error = DiskStatsLineError::none;
    int fields = 0; // how many the line had
};

// Parses one line: "major minor name" and at least the 11 counters of Linux 2.6 (14 fields;
// 4.18 adds 4 discard counters, 5.5 two flush counters; more are ignored). Linux 2.6.24 and
// older gave partitions only 4 counters: such a line, like any short one, is refused.
DiskStatsLineParse parseDiskStatsLine(std::string_view line);

// The device name of a line (its third field); empty for a blank or short line.
std::string_view diskStatsDeviceName(std::string_view line);

// True for names that are never a physical disk: loop, RAM disks, zram, device mapper and
// software RAID (their I/O is already counted on the disks below them), network block devices.
bool isVirtualBlockDeviceName(std::string_view name);

// Where /sys/block cannot be read: whether a name looks like a partition of a disk
// ("sda1", "nvme0n1p2", "mmcblk0p1").
bool looksLikePartitionName(std::string_view name);

} // namespace lumetra
