#pragma once

#include <array>
#include <cstdint>

namespace lumetra {

// One colour of the palette. Kept free of Qt Gui so the terminal mode can name colours too;
// `as<QColor>()` turns it into the drawing type where one is drawn.
struct PaletteColor {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    std::uint8_t a = 255;

    template <typename Color>
    Color as() const {
        return Color(r, g, b, a);
    }
    constexpr PaletteColor withAlpha(std::uint8_t alpha) const { return {r, g, b, alpha}; }
    // "#rrggbb", as status bars and style sheets take it.
    constexpr std::array<char, 8> hex() const {
        constexpr char digits[] = "0123456789abcdef";
        return {'#',
                digits[r >> 4],
                digits[r & 15],
                digits[g >> 4],
                digits[g & 15],
                digits[b >> 4],
                digits[b & 15],
                '\0'};
    }

    friend constexpr bool operator==(PaletteColor, PaletteColor) = default;
};

// Every colour the app draws with: the level colours, the accent, text and the light and
// dark surfaces. Light and dark variants follow the system colours users know from the
// desktop's own monitors; the panel images, whose panel's colours are unknown, use `panel*`.
namespace palette {

// Levels and accent.
inline constexpr PaletteColor accentLight{0x00, 0x7A, 0xFF};
inline constexpr PaletteColor accentDark{0x0A, 0x84, 0xFF};
inline constexpr PaletteColor orangeLight{0xFF, 0x95, 0x00};
inline constexpr PaletteColor orangeDark{0xFF, 0x9F, 0x0A};
inline constexpr PaletteColor redLight{0xFF, 0x3B, 0x30};
inline constexpr PaletteColor redDark{0xFF, 0x45, 0x3A};
// On a panel of unknown colour: the dark accent and the light orange and red read on both.
inline constexpr PaletteColor panelAccent = accentDark;
inline constexpr PaletteColor panelOrange = orangeLight;
inline constexpr PaletteColor panelRed = redLight;
inline constexpr PaletteColor panelSecondary{0x8E, 0x8E, 0x93};

// Text.
inline constexpr PaletteColor textLight{0x1C, 0x1C, 0x1E};
inline constexpr PaletteColor textDark{0xF2, 0xF2, 0xF7};
inline constexpr PaletteColor secondaryTextLight{60, 60, 67, 215};
inline constexpr PaletteColor secondaryTextDark{235, 235, 245, 215};
// Tracks, dividers and quiet fills: the secondary text's colour, fainter.
inline constexpr std::uint8_t kTrackAlpha = 46;
inline constexpr std::uint8_t kDividerAlpha = 56;

// Surfaces.
inline constexpr PaletteColor panelSurfaceLight{0xF6, 0xF6, 0xF8};
inline constexpr PaletteColor panelSurfaceDark{0x1E, 0x1E, 0x20};
inline constexpr PaletteColor windowLight{0xEC, 0xEC, 0xEE};
inline constexpr PaletteColor windowDark{0x24, 0x24, 0x26};
inline constexpr PaletteColor baseLight{0xFF, 0xFF, 0xFF};
inline constexpr PaletteColor baseDark{0x2E, 0x2E, 0x31};

constexpr PaletteColor accent(bool dark) {
    return dark ? accentDark : accentLight;
}
constexpr PaletteColor orange(bool dark) {
    return dark ? orangeDark : orangeLight;
}
constexpr PaletteColor red(bool dark) {
    return dark ? redDark : redLight;
}
constexpr PaletteColor text(bool dark) {
    return dark ? textDark : textLight;
}
constexpr PaletteColor secondaryText(bool dark) {
    return dark ? secondaryTextDark : secondaryTextLight;
}
constexpr PaletteColor panelSurface(bool dark) {
    return dark ? panelSurfaceDark : panelSurfaceLight;
}

} // namespace palette

} // namespace lumetra
