#pragma once

#include "core/FastSample.h"
#include "samplers/cpu/CPUProviding.h"
#include "samplers/disk/DiskIOProviding.h"
#include "samplers/memory/MemoryProviding.h"
#include "samplers/network/NetworkProviding.h"

#include <memory>

namespace lumetra {

// One fast tick's readings, as the scheduler takes them (and the benchmark measures them):
// CPU, memory with pressure, and the rates of the network and the disks against the previous
// counters. A failed counter reading keeps the previous one as the baseline.
class FastSampler {
public:
    struct Providers {
        std::shared_ptr<CPUProviding> cpu;
        std::shared_ptr<MemoryProviding> memory;
        std::shared_ptr<NetworkProviding> network;
        std::shared_ptr<DiskIOProviding> diskIO; // may be null: no disk throughput
    };

    explicit FastSampler(Providers providers) : providers_(std::move(providers)) {}

    FastSample sample();

    // Off: the disks' counters are not read (nobody shows their rates) and the baseline is
    // dropped, so the first reading after switching on again is a new baseline.
    void setDiskIOWanted(bool wanted);

private:
    Providers providers_;
    std::optional<NetworkCounterSample> previousNetwork_;
    std::optional<DiskIOCounterSample> previousDiskIO_;
    bool diskIOWanted_ = true;
};

} // namespace lumetra
