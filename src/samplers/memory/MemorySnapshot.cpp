#include "samplers/memory/MemorySnapshot.h"

#include "samplers/kernel/TextScan.h"

#include <algorithm>
#include <array>

namespace lumetra {

using namespace textscan;

namespace {

enum Field {
    memTotal,
    memFree,
    memAvailable,
    buffers,
    cached,
    sReclaimable,
    shmem,
    active,
    inactive,
    unevictable,
    sUnreclaim,
    kernelStack,
    pageTables,
    zswap,
    fieldCount
};

constexpr std::array<std::string_view, fieldCount> kFieldNames{
    "MemTotal",    "MemFree",     "MemAvailable", "Buffers",    "Cached",
    "SReclaimable", "Shmem",      "Active",       "Inactive",   "Unevictable",
    "SUnreclaim",  "KernelStack", "PageTables",   "Zswap"};

using Values = std::array<std::optional<std::uint64_t>, fieldCount>;

// Most of the ~55 lines of /proc/meminfo are not wanted: switching on the key's length
// leaves at most two comparisons per line on the sampling path.
int fieldIndex(std::string_view name) {
    auto either = [&name](Field a, Field b) {
        return name == kFieldNames[a] ? a : name == kFieldNames[b] ? b : -1;
    };
    switch (name.size()) {
    case 5:
        return either(shmem, zswap);
    case 6:
        return either(cached, active);
    case 7:
        return either(memFree, buffers);
    case 8:
        return either(memTotal, inactive);
    case 10:
        return either(sUnreclaim, pageTables);
    case 11:
        return either(unevictable, kernelStack);
    case 12:
        return either(memAvailable, sReclaimable);
    default:
        return -1;
    }
}

// "MemTotal:       16314672 kB" → bytes. A value in kB that would overflow saturates.
void parseLine(std::string_view line, Values& values) {
    const auto colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0)
        return;
    const int index = fieldIndex(line.substr(0, colon));
    if (index < 0)
        return;
    std::string_view rest = line.substr(colon + 1);
    const auto number = parseUnsigned(nextField(rest));
    if (!number)
        return;
    const std::string_view unit = nextField(rest);
    const std::uint64_t factor = unit == "kB" ? 1024 : 1;
    values[static_cast<std::size_t>(index)] = saturatingMultiply(*number, factor);
}

std::uint64_t valueOr0(const Values& values, Field field) {
    return values[field].value_or(0);
}

// Kernels before 3.14 have no MemAvailable: estimate it the way `free` did then.
std::uint64_t estimatedAvailable(const Values& values) {
    const std::uint64_t reclaimable =
        saturatingAdd(saturatingAdd(valueOr0(values, memFree), valueOr0(values, buffers)),
                      saturatingAdd(valueOr0(values, cached), valueOr0(values, sReclaimable)));
    const std::uint64_t shared = valueOr0(values, shmem);
    return reclaimable > shared ? reclaimable - shared : 0;
}

} // namespace

MeminfoParse parseMeminfo(std::string_view text) {
    Values values{};
    while (!text.empty())
        parseLine(nextLine(text), values);

    if (!values[memTotal])
        return {std::nullopt, MeminfoError::noTotal};
    if (!values[memAvailable] && !values[memFree])
        return {std::nullopt, MeminfoError::noAvailableOrFree};

    const std::uint64_t total = *values[memTotal];
    std::uint64_t available =
        values[memAvailable] ? *values[memAvailable] : estimatedAvailable(values);
    // Container views (LXCFS) can report more available than total; MemFree is saner there.
    if (values[memAvailable] && available > total)
        available = valueOr0(values, memFree);
    available = std::min(available, total);

    MemorySnapshot snapshot;
    snapshot.total = total;
    snapshot.used = total - available;
    snapshot.active = valueOr0(values, active);
    snapshot.inactive = valueOr0(values, inactive);
    const std::uint64_t kernelHeld =
        saturatingAdd(saturatingAdd(valueOr0(values, sUnreclaim), valueOr0(values, kernelStack)),
                      valueOr0(values, pageTables));
    snapshot.wired = saturatingAdd(valueOr0(values, unevictable), kernelHeld);
    snapshot.compressed = valueOr0(values, zswap);
    snapshot.free = valueOr0(values, memFree);
    return {snapshot, MeminfoError::none};
}

} // namespace lumetra
