#include "dashboard/DashboardTheme.h"

#include "appearance/Palette.h"

#include <QGuiApplication>
#include <QHash>

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
    // Keyed by font (size and weight) and text; emptied when it grows past a few screens of
    // changing figures.
    QHash<std::pair<std::pair<int, int>, QString>, double> advances;
    QHash<std::pair<std::pair<int, int>, QString>, QStaticText> texts;
    static constexpr qsizetype kMaximumAdvances = 1024;
};

DashboardTheme::DashboardTheme(bool dark, QColor accent, QString family)
    : dark_(dark), accent_(accent), family_(std::move(family)), fonts_(std::make_shared<Fonts>()) {}

DashboardTheme DashboardTheme::fromPalette(bool dark, const QPalette& palette, const QFont& font) {
    return {dark, palette.color(QPalette::Active, QPalette::Highlight), font.family()};
}

DashboardTheme DashboardTheme::fixed(bool dark, const QString& fontFamily) {
    return {dark, palette::accent(dark).as<QColor>(), fontFamily};
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
    return palette::text(dark_).as<QColor>();
}

QColor DashboardTheme::secondary() const {
    return palette::secondaryText(dark_).as<QColor>();
}

QColor DashboardTheme::quaternary() const {
    return palette::secondaryText(dark_).withAlpha(palette::kTrackAlpha).as<QColor>();
}

QColor DashboardTheme::cardFill() const {
    QColor fill = quaternary();
    fill.setAlphaF(fill.alphaF() * 0.35f);
    return fill;
}

QColor DashboardTheme::divider() const {
    return palette::secondaryText(dark_).withAlpha(palette::kDividerAlpha).as<QColor>();
}

QColor DashboardTheme::orange() const {
    return palette::orange(dark_).as<QColor>();
}

QColor DashboardTheme::red() const {
    return palette::red(dark_).as<QColor>();
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

double DashboardTheme::advance(const QString& text, double pixelSize, QFont::Weight weight) const {
    const std::pair font(static_cast<int>(pixelSize * 100), static_cast<int>(weight));
    const auto key = std::pair(font, text);
    if (const auto it = fonts_->advances.constFind(key); it != fonts_->advances.constEnd())
        return *it;
    if (fonts_->advances.size() >= Fonts::kMaximumAdvances)
        fonts_->advances.clear();
    const double width = metrics(pixelSize, weight).horizontalAdvance(text);
    fonts_->advances.insert(key, width);
    return width;
}

const QStaticText& DashboardTheme::staticText(const QString& text, double pixelSize,
                                              QFont::Weight weight) const {
    const std::pair font(static_cast<int>(pixelSize * 100), static_cast<int>(weight));
    const auto key = std::pair(font, text);
    if (const auto it = fonts_->texts.constFind(key); it != fonts_->texts.constEnd())
        return *it;
    if (fonts_->texts.size() >= Fonts::kMaximumAdvances)
        fonts_->texts.clear();
    QStaticText laidOut(text);
    laidOut.setTextFormat(Qt::PlainText);
    laidOut.prepare(QTransform(), this->font(pixelSize, weight));
    return *fonts_->texts.insert(key, laidOut);
}

const QFontMetricsF& DashboardTheme::metrics(double pixelSize, QFont::Weight weight) const {
    font(pixelSize, weight);
    return fonts_->entries.at({static_cast<int>(pixelSize * 100), static_cast<int>(weight)})
        .metrics;
}

} // namespace lumetra
