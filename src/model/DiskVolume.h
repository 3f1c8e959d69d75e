#pragma once

#include <QMetaType>
#include <QString>

#include <cstdint>
#include <vector>

namespace lumetra {

// One mounted local volume as the disk card shows it.
struct DiskVolume {
    QString id;   // the mount path
    QString name; // label, or the last path component
    std::int64_t totalCapacity = 1;
    std::int64_t availableCapacity = 0;
    bool isInternal = true;
    bool isRemovable = false;
    bool isEjectable = false;
    bool isBootVolume = false;

    bool operator==(const DiskVolume&) const = default;
};

using DiskVolumeList = std::vector<DiskVolume>;

} // namespace lumetra

Q_DECLARE_METATYPE(lumetra::DiskVolume)
Q_DECLARE_METATYPE(lumetra::DiskVolumeList)
