#include "samplers/temperature/ThermalStateReader.h"

#include "samplers/kernel/TextScan.h"

#include <algorithm>
#include <filesystem>

namespace lumetra {

namespace fs = std::filesystem;

namespace {

std::optional<std::int64_t> readSigned(KernelFile& file) {
    const KernelFileRead read = file.readPrefix(64);
    if (!read.ok())
        return std::nullopt;
    return textscan::parseSigned(textscan::trim(read.text));
}

std::vector<fs::path> entriesStartingWith(const fs::path& directory, std::string_view prefix) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator it(directory, error), end; !error && it != end;
         it.increment(error)) {
        if (it->path().filename().string().starts_with(prefix))
            entries.push_back(it->path());
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

// The states are declared coolest first.
ThermalState atLeast(ThermalState a, ThermalState b) {
    return std::max(a, b);
}

} // namespace

ThermalTrip::Type parseTripType(std::string_view text) {
    text = textscan::trim(text);
    if (text == "critical")
        return ThermalTrip::Type::critical;
    if (text == "hot")
        return ThermalTrip::Type::hot;
    if (text == "passive")
        return ThermalTrip::Type::passive;
    if (text == "active")
        return ThermalTrip::Type::active;
    return ThermalTrip::Type::other;
}

ThermalState thermalStateForZone(std::int64_t millidegrees, std::span<const ThermalTrip> trips) {
    ThermalState state = ThermalState::nominal;
    std::optional<std::int64_t> lowestActive;
    for (const ThermalTrip& trip : trips) {
        if (trip.millidegrees <= 0)
            continue;
        switch (trip.type) {
        case ThermalTrip::Type::critical:
        case ThermalTrip::Type::hot:
            if (millidegrees >= trip.millidegrees)
                state = atLeast(state, ThermalState::critical);
            break;
        case ThermalTrip::Type::passive:
            if (millidegrees >= trip.millidegrees)
                state = atLeast(state, ThermalState::serious);
            break;
        case ThermalTrip::Type::active:
            lowestActive = std::min(lowestActive.value_or(trip.millidegrees), trip.millidegrees);
            break;
        case ThermalTrip::Type::other:
            break;
        }
    }
    if (lowestActive && millidegrees >= *lowestActive)
        state = atLeast(state, ThermalState::fair);
    return state;
}

ThermalStateReader::ThermalStateReader(const KernelRoots& roots) : roots_(roots) {}

ThermalStateReader::~ThermalStateReader() = default;

// Zones and their trip points are fixed by the firmware or device tree, so they are read
// once; only the temperatures and counters are read on every reading.
void ThermalStateReader::scan() {
    scanned_ = true;
    for (const fs::path& zone : entriesStartingWith(roots_.sys("class/thermal"), "thermal_zone")) {
        Zone entry;
        for (int n = 0;; ++n) {
            const std::string prefix = (zone / ("trip_point_" + std::to_string(n))).string();
            std::string buffer;
            const KernelFileRead type = KernelFile::readOnce(prefix + "_type", buffer, 64);
            if (!type.ok())
                break;
            ThermalTrip trip;
            trip.type = parseTripType(type.text);
            const KernelFileRead temp = KernelFile::readOnce(prefix + "_temp", buffer, 64);
            const auto value =
                temp.ok() ? textscan::parseSigned(textscan::trim(temp.text)) : std::nullopt;
            trip.millidegrees = value.value_or(0);
            if (trip.millidegrees > 0 && trip.type != ThermalTrip::Type::other)
                entry.trips.push_back(trip);
        }
        if (entry.trips.empty())
            continue; // a zone without real trip points cannot raise the state
        entry.temperature = std::make_unique<KernelFile>((zone / "temp").string(), 64);
        zones_.push_back(std::move(entry));
    }
    for (const fs::path& cpu : entriesStartingWith(roots_.sys("devices/system/cpu"), "cpu")) {
        for (const char* name : {"core_throttle_count", "package_throttle_count"}) {
            const fs::path path = cpu / "thermal_throttle" / name;
            std::error_code error;
            if (fs::is_regular_file(path, error))
                counters_.push_back({std::make_unique<KernelFile>(path.string(), 64), {}});
        }
    }
}

ThermalState ThermalStateReader::read() {
    if (!scanned_)
        scan();
    ThermalState state = ThermalState::nominal;
    for (Zone& zone : zones_) {
        if (const auto temperature = readSigned(*zone.temperature))
            state = atLeast(state, thermalStateForZone(*temperature, zone.trips));
    }
    bool throttled = false;
    for (Counter& counter : counters_) {
        const auto value = readSigned(*counter.file);
        if (!value || *value < 0)
            continue;
        const auto count = static_cast<std::uint64_t>(*value);
        if (counter.previous && count > *counter.previous)
            throttled = true;
        counter.previous = count;
    }
    if (throttled)
        state = atLeast(state, ThermalState::serious);
    return state;
}

} // namespace lumetra
