#pragma once

#include "model/EnumTable.h"

#include <QString>

#include <string_view>

namespace lumetra {

// The material behind the window content; on Linux it picks the tint of the background.
enum class VisualEffectMaterial { automatic, popover, hud, sidebar, menu };

template <>
struct EnumTraits<VisualEffectMaterial> {
    using Case = EnumCase<VisualEffectMaterial, std::string_view>;
    static constexpr const char* context = "VisualEffectMaterial";
    // Picker order. "HUD" is no translation key: it reads the same in every language.
    static constexpr std::array cases{Case{VisualEffectMaterial::automatic, "automatic",
                                           QT_TRANSLATE_NOOP("VisualEffectMaterial", "Automatic")},
                                      Case{VisualEffectMaterial::popover, "popover",
                                           QT_TRANSLATE_NOOP("VisualEffectMaterial", "Popover")},
                                      Case{VisualEffectMaterial::hud, "hud", "HUD"},
                                      Case{VisualEffectMaterial::sidebar, "sidebar",
                                           QT_TRANSLATE_NOOP("VisualEffectMaterial", "Sidebar")},
                                      Case{VisualEffectMaterial::menu, "menu",
                                           QT_TRANSLATE_NOOP("VisualEffectMaterial", "Menu")}};
};

// Localised, except "HUD", which reads the same in every language.
QString title(VisualEffectMaterial material);

} // namespace lumetra
