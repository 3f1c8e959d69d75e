#include "model/MemoryPressureLevel.h"

namespace lumetra {

std::string_view rawValue(MemoryPressureLevel level) {
    switch (level) {
    case MemoryPressureLevel::normal:
        return "normal";
    case MemoryPressureLevel::elevated:
        return "elevated";
    case MemoryPressureLevel::critical:
        return "critical";
    }
    return "normal";
}

std::optional<MemoryPressureLevel> memoryPressureLevelFromRaw(std::string_view raw) {
    for (MemoryPressureLevel level : kAllMemoryPressureLevels) {
        if (rawValue(level) == raw)
            return level;
    }
    return std::nullopt;
}

} // namespace lumetra
