#pragma once

#include "model/ThermalState.h"
#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace lumetra {

struct ThermalTrip {
    enum class Type { critical, hot, passive, active, other };
    std::int64_t millidegrees = 0;
    Type type = Type::other;
};

ThermalTrip::Type parseTripType(std::string_view text);

// One zone's state from its temperature and trip points. Trips at or below 0 are placeholders
// for "not set" (x86_pkg_temp writes 0, iwlwifi −32768000) and are ignored.
ThermalState thermalStateForZone(std::int64_t millidegrees, std::span<const ThermalTrip> trips);

// The machine's coarse thermal state: the highest over the thermal zones that have trip
// points, raised to at least `serious` when a CPU throttle counter rose since the previous
// reading (the first reading only takes the counters as a baseline). `nominal` where the
// kernel exposes neither. Not thread-safe: one reader per thread.
class ThermalStateReader {
public:
    explicit ThermalStateReader(const KernelRoots& roots);
    ~ThermalStateReader();
    ThermalStateReader(const ThermalStateReader&) = delete;
    ThermalStateReader& operator=(const ThermalStateReader&) = delete;

    ThermalState read();

private:
    struct Zone {
        std::unique_ptr<KernelFile> temperature;
        std::vector<ThermalTrip> trips;
    };
    struct Counter {
        std::unique_ptr<KernelFile> file;
        std::optional<std::uint64_t> previous;
    };

    void scan();

    KernelRoots roots_;
    bool scanned_ = false;
    std::vector<Zone> zones_;
    std::vector<Counter> counters_;
};

} // namespace lumetra
