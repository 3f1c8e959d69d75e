#pragma once

#include "model/EnumTable.h"

#include <cstddef>
#include <functional>
#include <string_view>

namespace lumetra {

enum class MemoryPressureLevel { normal, elevated, critical };

template <>
struct EnumTraits<MemoryPressureLevel> {
    using Case = EnumCase<MemoryPressureLevel, std::string_view>;
    static constexpr const char* context = "MemoryPressureLevel";
    static constexpr bool hasDisplayName = false;
    static constexpr std::array cases{Case{MemoryPressureLevel::normal, "normal", nullptr},
                                      Case{MemoryPressureLevel::elevated, "elevated", nullptr},
                                      Case{MemoryPressureLevel::critical, "critical", nullptr}};
};

} // namespace lumetra

// Hashed by raw value, so equal raw values hash equally.
template <>
struct std::hash<lumetra::MemoryPressureLevel> {
    std::size_t operator()(lumetra::MemoryPressureLevel level) const noexcept {
        return std::hash<std::string_view>{}(lumetra::rawValue(level));
    }
};
