#pragma once

#include "model/EnumTable.h"

#include <QString>

#include <string_view>

namespace lumetra {

// How the popover and settings windows draw their background: four fixed presets and one
// configuration the user edits.
enum class AppearanceMode { solid, subtle, translucent, glass, custom };

template <>
struct EnumTraits<AppearanceMode> {
    using Case = EnumCase<AppearanceMode, std::string_view>;
    static constexpr const char* context = "AppearanceMode";
    // Picker order.
    static constexpr std::array cases{
        Case{AppearanceMode::solid, "solid", QT_TRANSLATE_NOOP("AppearanceMode", "Solid")},
        Case{AppearanceMode::subtle, "subtle", QT_TRANSLATE_NOOP("AppearanceMode", "Subtle")},
        Case{AppearanceMode::translucent, "translucent",
             QT_TRANSLATE_NOOP("AppearanceMode", "Translucent")},
        Case{AppearanceMode::glass, "glass", QT_TRANSLATE_NOOP("AppearanceMode", "Glass")},
        Case{AppearanceMode::custom, "custom", QT_TRANSLATE_NOOP("AppearanceMode", "Custom")}};
    // One line under each title, in the order of `cases`.
    static constexpr std::array<const char*, cases.size()> descriptions{
        QT_TRANSLATE_NOOP("AppearanceMode", "Nearly opaque background for maximum legibility."),
        QT_TRANSLATE_NOOP("AppearanceMode", "A light touch of transparency and blur."),
        QT_TRANSLATE_NOOP("AppearanceMode", "Noticeably see-through with a medium blur."),
        QT_TRANSLATE_NOOP("AppearanceMode", "Maximum glass effect, macOS-style vibrancy."),
        QT_TRANSLATE_NOOP("AppearanceMode", "Full manual control over opacity and blur.")};
};

// Localised with the English texts as keys.
QString title(AppearanceMode mode);
QString description(AppearanceMode mode);

} // namespace lumetra
