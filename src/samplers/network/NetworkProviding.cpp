#include "samplers/network/NetworkProviding.h"

namespace lumetra {

namespace {

double forwardDifference(std::uint64_t previous, std::uint64_t current) {
    return current >= previous ? static_cast<double>(current - previous) : 0.0;
}

} // namespace

std::optional<NetworkRates> NetworkProviding::rates(const NetworkCounterSample& from,
                                                    const NetworkCounterSample& to) {
    const double interval = secondsBetween(from.timestamp, to.timestamp);
    if (!(interval > 0))
        return std::nullopt;
    return NetworkRates{forwardDifference(from.bytesReceived, to.bytesReceived) / interval,
                        forwardDifference(from.bytesSent, to.bytesSent) / interval, to.interfaces};
}

} // namespace lumetra
