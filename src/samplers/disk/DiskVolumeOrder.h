#pragma once

#include "model/DiskVolume.h"

#include <QCollator>
#include <QLocale>

namespace lumetra {

// The display order of volumes: the boot volume first, then internal before other volumes,
// then by name as the user's language sorts it, ignoring case. Volumes that tie keep the
// order of the mount table.
class DiskVolumeOrder {
public:
    explicit DiskVolumeOrder(const QLocale& locale = QLocale());

    bool before(const DiskVolume& first, const DiskVolume& second) const;
    void sort(DiskVolumeList& volumes) const;

private:
    QCollator collator_;
};

} // namespace lumetra
