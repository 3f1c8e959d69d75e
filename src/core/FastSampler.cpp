#include "core/FastSampler.h"

namespace lumetra {

namespace {

// Rates between the previous counters and the current ones; the current become the baseline
// only when they were read.
template <typename Sample, typename Rates, typename Read, typename Between>
std::optional<Rates> ratesSince(std::optional<Sample>& previous, Read read, Between between) {
    std::optional<Sample> current = read();
    if (!current)
        return std::nullopt;
    std::optional<Rates> rates;
    if (previous)
        rates = between(*previous, *current);
    previous = std::move(current);
    return rates;
}

} // namespace

FastSample FastSampler::sample() {
    FastSample sample;
    sample.cpu = providers_.cpu->currentUsage();
    sample.memory = providers_.memory->currentSnapshot();
    sample.pressure = providers_.memory->pressure();
    sample.network = ratesSince<NetworkCounterSample, NetworkRates>(
        previousNetwork_, [this] { return providers_.network->currentCounters(); },
        &NetworkProviding::rates);
    if (providers_.diskIO && diskIOWanted_)
        sample.diskIO = ratesSince<DiskIOCounterSample, DiskIORates>(
            previousDiskIO_, [this] { return providers_.diskIO->currentCounters(); },
            &DiskIOProviding::rates);
    return sample;
}

void FastSampler::setDiskIOWanted(bool wanted) {
    diskIOWanted_ = wanted;
    if (!wanted)
        previousDiskIO_.reset();
}

} // namespace lumetra
