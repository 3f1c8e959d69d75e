#include "samplers/disk/DiskIOProviding.h"

namespace lumetra {

namespace {

double forwardDifference(std::uint64_t previous, std::uint64_t current) {
    return current >= previous ? static_cast<double>(current - previous) : 0.0;
}

} // namespace

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
