#pragma once

#include "format/LevelColor.h"
#include "model/DiskVolume.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace lumetra {

// How full one volume is, as its row in the disk card shows it. Widget-free.
struct DiskVolumeUsage {
    std::uint64_t usedBytes = 0; // 0 when the available space exceeds the total
    std::uint64_t totalBytes = 0;
    std::optional<double> share; // used / total × 100; none for a total of 0

    static DiskVolumeUsage of(const DiskVolume& volume);

    // "0%" without a share.
    QString percentText() const;
    // The bar's width as a fraction of the track: the share clamped to 0..1.
    double fillFraction() const;
    // Accent without a share or at 0 and below, red above 100, else the level colour.
    LevelColor fillColor() const;
};

} // namespace lumetra
