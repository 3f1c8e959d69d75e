#pragma once

#include "appearance/Palette.h"

#include <optional>
#include <string_view>

namespace lumetra {

// The colour of a level, shared by the menu bar and the cards: no value → secondary; below
// 75 → accent; below 90 → orange; else red.
enum class LevelColor { secondary, accent, orange, red };

LevelColor levelColor(std::optional<double> percentage);

// The colour drawn for a level on a panel of unknown colour (the panel images, i3bar).
PaletteColor panelLevelColor(LevelColor color);

// "secondary", "accent", "orange", "red".
std::string_view caseName(LevelColor color);

} // namespace lumetra
