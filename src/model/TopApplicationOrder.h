#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// What the top applications are ranked by: CPU (percent of one core) or resident memory.
enum class TopApplicationOrder { cpu, memory };

template <>
struct EnumTraits<TopApplicationOrder> {
    static constexpr const char* context = "TopApplicationOrder";
    static constexpr std::array cases{
        EnumCase<TopApplicationOrder, std::string_view>{
            TopApplicationOrder::cpu, "cpu", QT_TRANSLATE_NOOP("TopApplicationOrder", "CPU")},
        EnumCase<TopApplicationOrder, std::string_view>{
            TopApplicationOrder::memory, "memory",
            QT_TRANSLATE_NOOP("TopApplicationOrder", "Memory")},
    };
};

} // namespace lumetra
