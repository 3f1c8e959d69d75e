#include "samplers/network/NetworkProviding.h"

#include "model/CounterDelta.h"

namespace lumetra {

std::optional<NetworkRates> NetworkProviding::rates(const NetworkCounterSample& from,
                                                    const NetworkCounterSample& to) {
    const double interval = secondsBetween(from.timestamp, to.timestamp);
    if (!(interval > 0))
        return std::nullopt;
    return NetworkRates{forwardDifference(from.bytesReceived, to.bytesReceived) / interval,
                        forwardDifference(from.bytesSent, to.bytesSent) / interval, to.interfaces};
}

} // namespace lumetra
