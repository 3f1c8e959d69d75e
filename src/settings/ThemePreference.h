#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// The colour scheme the windows use.
enum class ThemePreference { system, light, dark };

template <>
struct EnumTraits<ThemePreference> {
    static constexpr const char* context = "ThemePreference";
    static constexpr std::array cases{
        EnumCase<ThemePreference, std::string_view>{ThemePreference::system, "system",
                                                    QT_TRANSLATE_NOOP("ThemePreference", "System")},
        EnumCase<ThemePreference, std::string_view>{ThemePreference::light, "light",
                                                    QT_TRANSLATE_NOOP("ThemePreference", "Light")},
        EnumCase<ThemePreference, std::string_view>{ThemePreference::dark, "dark",
                                                    QT_TRANSLATE_NOOP("ThemePreference", "Dark")},
    };
};

} // namespace lumetra
