#pragma once

#include "model/EnumTable.h"

namespace lumetra {

// What stands between two metrics in the text label.
enum class MenuBarSeparator { space, dot, verticalBar, bullet };

template <>
struct EnumTraits<MenuBarSeparator> {
    static constexpr const char* context = "MenuBarSeparator";
    static constexpr std::array cases{
        EnumCase<MenuBarSeparator, std::string_view>{
            MenuBarSeparator::space, "space", QT_TRANSLATE_NOOP("MenuBarSeparator", "Space")},
        EnumCase<MenuBarSeparator, std::string_view>{MenuBarSeparator::dot, "dot",
                                                     QT_TRANSLATE_NOOP("MenuBarSeparator", "Dot")},
        EnumCase<MenuBarSeparator, std::string_view>{
            MenuBarSeparator::verticalBar, "verticalBar",
            QT_TRANSLATE_NOOP("MenuBarSeparator", "Vertical Bar")},
        EnumCase<MenuBarSeparator, std::string_view>{
            MenuBarSeparator::bullet, "bullet", QT_TRANSLATE_NOOP("MenuBarSeparator", "Bullet")},
    };
};

} // namespace lumetra
