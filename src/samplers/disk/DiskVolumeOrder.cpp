#include "samplers/disk/DiskVolumeOrder.h"

#include <algorithm>

namespace lumetra {

DiskVolumeOrder::DiskVolumeOrder(const QLocale& locale) : collator_(locale) {
    collator_.setCaseSensitivity(Qt::CaseInsensitive);
}

bool DiskVolumeOrder::before(const DiskVolume& first, const DiskVolume& second) const {
    if (first.isBootVolume != second.isBootVolume)
        return first.isBootVolume;
    if (first.isInternal != second.isInternal)
        return first.isInternal;
    return collator_.compare(first.name, second.name) < 0;
}

void DiskVolumeOrder::sort(DiskVolumeList& volumes) const {
    std::stable_sort(volumes.begin(), volumes.end(),
                     [this](const DiskVolume& a, const DiskVolume& b) { return before(a, b); });
}

} // namespace lumetra
