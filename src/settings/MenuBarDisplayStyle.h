#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// The overall form of the menu bar label.
enum class MenuBarDisplayStyle { textOnly, iconAndText, compactGraph, miniBar };

template <>
struct EnumTraits<MenuBarDisplayStyle> {
    static constexpr const char* context = "MenuBarDisplayStyle";
    static constexpr std::array cases{
        EnumCase<MenuBarDisplayStyle, std::string_view>{
            MenuBarDisplayStyle::textOnly, "textOnly",
            QT_TRANSLATE_NOOP("MenuBarDisplayStyle", "Text")},
        EnumCase<MenuBarDisplayStyle, std::string_view>{
            MenuBarDisplayStyle::iconAndText, "iconAndText",
            QT_TRANSLATE_NOOP("MenuBarDisplayStyle", "Icon & Text")},
        EnumCase<MenuBarDisplayStyle, std::string_view>{
            MenuBarDisplayStyle::compactGraph, "compactGraph",
            QT_TRANSLATE_NOOP("MenuBarDisplayStyle", "Compact Graph")},
        EnumCase<MenuBarDisplayStyle, std::string_view>{
            MenuBarDisplayStyle::miniBar, "miniBar",
            QT_TRANSLATE_NOOP("MenuBarDisplayStyle", "Mini Bar")},
    };
};

} // namespace lumetra
