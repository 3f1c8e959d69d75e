#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// How the memory metric is written.
enum class MemoryDisplayFormat { percentageOnly, usedOnly, usedOverTotal, both };

template <>
struct EnumTraits<MemoryDisplayFormat> {
    static constexpr const char* context = "MemoryDisplayFormat";
    static constexpr std::array cases{
        EnumCase<MemoryDisplayFormat, std::string_view>{
            MemoryDisplayFormat::percentageOnly, "percentageOnly",
            QT_TRANSLATE_NOOP("MemoryDisplayFormat", "Percentage only")},
        EnumCase<MemoryDisplayFormat, std::string_view>{
            MemoryDisplayFormat::usedOnly, "usedOnly",
            QT_TRANSLATE_NOOP("MemoryDisplayFormat", "Used only")},
        EnumCase<MemoryDisplayFormat, std::string_view>{
            MemoryDisplayFormat::usedOverTotal, "usedOverTotal",
            QT_TRANSLATE_NOOP("MemoryDisplayFormat", "Used / Total")},
        EnumCase<MemoryDisplayFormat, std::string_view>{
            MemoryDisplayFormat::both, "both", QT_TRANSLATE_NOOP("MemoryDisplayFormat", "Both")},
    };
};

} // namespace lumetra
