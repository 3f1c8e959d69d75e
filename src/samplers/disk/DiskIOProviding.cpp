#include "samplers/disk/DiskIOProviding.h"

#include "model/CounterDelta.h"

namespace lumetra {

std::optional<DiskIORates> DiskIOProviding::rates(const DiskIOCounterSample& from,
                                                  const DiskIOCounterSample& to) {
    const double interval = secondsBetween(from.timestamp, to.timestamp);
    if (!(interval > 0))
        return std::nullopt;
    return DiskIORates{forwardDifference(from.bytesRead, to.bytesRead) / interval,
                       forwardDifference(from.bytesWritten, to.bytesWritten) / interval,
                       to.devices};
}

} // namespace lumetra
