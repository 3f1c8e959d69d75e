#pragma once

#include "model/DiskVolume.h"

namespace lumetra {

class DiskProviding {
public:
    virtual ~DiskProviding() = default;
    // The mounted local volumes in display order; empty on failure. Never throws.
    virtual DiskVolumeList currentVolumes() = 0;
};

} // namespace lumetra
