#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

namespace lumetra {

enum class MemoryPressureLevel { normal, elevated, critical };

inline constexpr std::array<MemoryPressureLevel, 3> kAllMemoryPressureLevels{
    MemoryPressureLevel::normal, MemoryPressureLevel::elevated, MemoryPressureLevel::critical};

std::string_view rawValue(MemoryPressureLevel level);

// Accepts exactly the raw values, case-sensitively.
std::optional<MemoryPressureLevel> memoryPressureLevelFromRaw(std::string_view raw);

} // namespace lumetra

// Hashed by raw value, so equal raw values hash equally.
template <>
struct std::hash<lumetra::MemoryPressureLevel> {
    std::size_t operator()(lumetra::MemoryPressureLevel level) const noexcept {
        return std::hash<std::string_view>{}(lumetra::rawValue(level));
    }
};
