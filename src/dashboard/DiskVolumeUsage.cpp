#include "dashboard/DiskVolumeUsage.h"

#include "format/ValueFormatters.h"

#include <algorithm>

namespace lumetra {

DiskVolumeUsage DiskVolumeUsage::of(const DiskVolume& volume) {
    // The sampler's figures are signed: a broken statvfs answer must not wrap around.
    const auto total = static_cast<std::uint64_t>(std::max<std::int64_t>(volume.totalCapacity, 0));
    const auto available =
        static_cast<std::uint64_t>(std::max<std::int64_t>(volume.availableCapacity, 0));
    DiskVolumeUsage usage;
    usage.totalBytes = total;
    usage.usedBytes = available > total ? 0 : total - available;
    if (total != 0)
        usage.share = static_cast<double>(usage.usedBytes) / static_cast<double>(total) * 100;
    return usage;
}

QString DiskVolumeUsage::percentText() const {
    return wholePercentText(share.value_or(0));
}

double DiskVolumeUsage::fillFraction() const {
    return std::clamp(share.value_or(0), 0.0, 100.0) / 100;
}

LevelColor DiskVolumeUsage::fillColor() const {
    if (!share || *share <= 0)
        return LevelColor::accent;
    if (*share > 100)
        return LevelColor::red;
    return levelColor(share);
}

} // namespace lumetra
