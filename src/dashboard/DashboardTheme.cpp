#include "dashboard/DashboardTheme.h"

#include <QGuiApplication>

namespace lumetra {

namespace {

// Fonts are given in points of 1/72 inch; the cards' sizes are logical pixels at 96 dpi.
constexpr double kPointsPerPixel = 72.0 / 96.0;

} // namespace

struct DashboardTheme::Fonts {
    struct Entry {
        QFont font;
        QFontMetricsF metrics;
    };
    std::map<std::pair<int, int>, Entry> entries;
};

DashboardTheme::DashboardTheme(bool dark, QColor accent, QString family)
    : dark_(dark), accent_(accent), family_(std::move(family)), fonts_(std::make_shared<Fonts>()) {}

DashboardTheme DashboardTheme::fromPalette(bool dark, const QPalette& palette, const QFont& font) {
    return {dark, palette.color(QPalette::Active, QPalette::Highlight), font.family()};
}

DashboardTheme DashboardTheme::fixed(bool dark, const QString& fontFamily) {
    return {dark, dark ? QColor(0x0A, 0x84, 0xFF) : QColor(0x00, 0x7A, 0xFF), fontFamily};
}

bool DashboardTheme::prefersDark(ThemePreference preference) {
    switch (preference) {
    case ThemePreference::light:
        return false;
    case ThemePreference::dark:
        return true;
    case ThemePreference::system:
        break;
    }
    return QGuiApplication::palette().color(QPalette::Window).lightnessF() < 0.5;
}

QColor DashboardTheme::primary() const {
    return dark_ ? QColor(0xF2, 0xF2, 0xF7) : QColor(0x1C, 0x1C, 0x1E);
}

QColor DashboardTheme::secondary() const {
    return dark_ ? QColor(235, 235, 245, 153) : QColor(60, 60, 67, 153);
}

QColor DashboardTheme::quaternary() const {
    return dark_ ? QColor(235, 235, 245, 46) : QColor(60, 60, 67, 46);
}

QColor DashboardTheme::cardFill() const {
    QColor fill = quaternary();
    fill.setAlphaF(fill.alphaF() * 0.35f);
    return fill;
}

QColor DashboardTheme::divider() const {
    return dark_ ? QColor(235, 235, 245, 56) : QColor(60, 60, 67, 56);
}

QColor DashboardTheme::orange() const {
    return dark_ ? QColor(0xFF, 0x9F, 0x0A) : QColor(0xFF, 0x95, 0x00);
}

QColor DashboardTheme::red() const {
    return dark_ ? QColor(0xFF, 0x45, 0x3A) : QColor(0xFF, 0x3B, 0x30);
}

QColor DashboardTheme::level(LevelColor color) const {
    switch (color) {
    case LevelColor::secondary:
        return secondary();
    case LevelColor::accent:
        return accent_;
    case LevelColor::orange:
        return orange();
    case LevelColor::red:
        return red();
    }
    return secondary();
}

const QFont& DashboardTheme::font(double pixelSize, QFont::Weight weight) const {
    const std::pair key(static_cast<int>(pixelSize * 100), static_cast<int>(weight));
    auto it = fonts_->entries.find(key);
    if (it == fonts_->entries.end()) {
        QFont font(family_);
        font.setPointSizeF(pixelSize * kPointsPerPixel);
        font.setWeight(weight);
        font.setHintingPreference(QFont::PreferNoHinting);
        it = fonts_->entries.emplace(key, Fonts::Entry{font, QFontMetricsF(font)}).first;
    }
    return it->second.font;
}

const QFontMetricsF& DashboardTheme::metrics(double pixelSize, QFont::Weight weight) const {
    font(pixelSize, weight);
    return fonts_->entries.at({static_cast<int>(pixelSize * 100), static_cast<int>(weight)})
        .metrics;
}

} // namespace lumetra
