#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lumetra {

// One memory reading, in bytes.
struct MemorySnapshot {
    std::uint64_t used = 0; // what `free` calls used: total − available, at most total
    std::uint64_t total = 0;
    std::uint64_t active = 0;
    std::uint64_t inactive = 0;
    std::uint64_t wired = 0; // unevictable plus memory the kernel holds for itself
    std::uint64_t compressed = 0;
    std::uint64_t free = 0;
    // Swap in use and in all (0: no swap); both empty when /proc/meminfo has no swap lines.
    std::optional<std::uint64_t> swapTotal = std::nullopt;
    std::optional<std::uint64_t> swapUsed = std::nullopt;

    bool operator==(const MemorySnapshot&) const = default;
};

// Why /proc/meminfo gave no snapshot.
enum class MeminfoError { none, noTotal, noAvailableOrFree };

struct MeminfoParse {
    std::optional<MemorySnapshot> snapshot;
    MeminfoError error = MeminfoError::none;
};

// Parses /proc/meminfo text (kB values, lines in any order, unknown lines ignored).
MeminfoParse parseMeminfo(std::string_view text);

} // namespace lumetra
