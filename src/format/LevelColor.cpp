#include "format/LevelColor.h"

namespace lumetra {

LevelColor levelColor(std::optional<double> percentage) {
    if (!percentage)
        return LevelColor::secondary;
    if (*percentage < 75)
        return LevelColor::accent;
    if (*percentage < 90)
        return LevelColor::orange;
    return LevelColor::red; // NaN lands here too: an impossible reading should stand out
}

PaletteColor panelLevelColor(LevelColor color) {
    switch (color) {
    case LevelColor::secondary:
        return palette::panelSecondary;
    case LevelColor::accent:
        return palette::panelAccent;
    case LevelColor::orange:
        return palette::panelOrange;
    case LevelColor::red:
        return palette::panelRed;
    }
    return palette::panelSecondary;
}

std::string_view caseName(LevelColor color) {
    switch (color) {
    case LevelColor::secondary:
        return "secondary";
    case LevelColor::accent:
        return "accent";
    case LevelColor::orange:
        return "orange";
    case LevelColor::red:
        return "red";
    }
    return "secondary";
}

} // namespace lumetra
