#include "samplers/memory/MemorySnapshot.h"

#include "samplers/kernel/TextScan.h"

#include <algorithm>
#include <array>
#include <cstring>

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
    swapTotal,
    swapFree,
    fieldCount
};

constexpr std::array<std::string_view, fieldCount> kFieldNames{
    "MemTotal",   "MemFree", "MemAvailable", "Buffers",     "Cached",     "SReclaimable",
    "Shmem",      "Active",  "Inactive",     "Unevictable", "SUnreclaim", "KernelStack",
    "PageTables", "Zswap",   "SwapTotal",    "SwapFree"};

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
        return name == kFieldNames[swapFree] ? swapFree : either(memTotal, inactive);
    case 9:
        return name == kFieldNames[swapTotal] ? swapTotal : -1;
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

bool isBlankOrEnd(const char* p, const char* end) {
    return p == end || *p == ' ' || *p == '\t' || *p == '\n';
}

// The value after a key's colon, "       16314672 kB", → bytes; nothing for anything but a
// whole unsigned number. A value in kB that would overflow saturates. This runs for every
// wanted line every tick, so it scans the characters once instead of splitting fields.
std::optional<std::uint64_t> parseValue(const char* p, const char* end) {
    // The kernel pads the values to a column: skip the spaces eight at a time.
    while (end - p >= 8 && std::memcmp(p, "        ", 8) == 0)
        p += 8;
    while (p != end && (*p == ' ' || *p == '\t'))
        ++p;
    const char* const digits = p;
    std::uint64_t number = 0;
    // Up to 19 digits cannot overflow; only a longer number needs the checked loop.
    while (p != end && *p >= '0' && *p <= '9' && p - digits < 19)
        number = number * 10 + static_cast<unsigned>(*p++ - '0');
    for (; p != end && *p >= '0' && *p <= '9'; ++p) {
        if (__builtin_mul_overflow(number, 10u, &number) ||
            __builtin_add_overflow(number, static_cast<unsigned>(*p - '0'), &number))
            return std::nullopt;
    }
    if (p == digits || !isBlankOrEnd(p, end))
        return std::nullopt;
    while (p != end && (*p == ' ' || *p == '\t'))
        ++p;
    const bool kilobytes = end - p >= 2 && p[0] == 'k' && p[1] == 'B' && isBlankOrEnd(p + 2, end);
    return kilobytes ? saturatingMultiply(number, 1024) : number;
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
    // The wanted lines come within the first ~30 of ~55: stop once all are there.
    int found = 0;
    const char* p = text.data();
    const char* const end = p + text.size();
    while (p != end && found < fieldCount) {
        const char* const key = p;
        const auto* newline =
            static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
        const char* const lineEnd = newline ? newline : end;
        const auto* colon =
            static_cast<const char*>(std::memchr(p, ':', static_cast<std::size_t>(lineEnd - p)));
        if (colon && colon != key) {
            p = colon;
            const int index = fieldIndex(std::string_view(key, static_cast<std::size_t>(p - key)));
            if (index >= 0) {
                auto& value = values[static_cast<std::size_t>(index)];
                const bool first = !value;
                if (const auto parsed = parseValue(p + 1, lineEnd)) {
                    value = parsed;
                    found += first ? 1 : 0;
                }
            }
        }
        p = newline ? newline + 1 : end;
    }

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
    // What `free` calls used swap: pages in zswap and on zram devices count, as the kernel
    // counts them. Kernels built without swap support have neither line.
    if (values[swapTotal] && values[swapFree]) {
        snapshot.swapTotal = *values[swapTotal];
        snapshot.swapUsed = *values[swapTotal] - std::min(*values[swapFree], *values[swapTotal]);
    }
    return {snapshot, MeminfoError::none};
}

} // namespace lumetra
