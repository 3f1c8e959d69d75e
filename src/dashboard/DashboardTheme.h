#pragma once

#include "format/LevelColor.h"
#include "settings/ThemePreference.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPalette>
#include <QStaticText>
#include <QString>

#include <map>
#include <memory>

namespace lumetra {

// The colours and fonts every card paints with, for one theme (light or dark). Sizes are in
// logical pixels, the way the desktop's points are.
class DashboardTheme {
public:
    // The desktop's font and accent colour.
    static DashboardTheme fromPalette(bool dark, const QPalette& palette, const QFont& font);
    // A fixed font family and accent, for pictures that must not change with the desktop.
    static DashboardTheme fixed(bool dark, const QString& fontFamily);
    // Whether `preference` means dark now; for the system's, the desktop's window colour tells
    // (Qt 6.4 has no colour-scheme hint). The popover and the windows both follow it.
    static bool prefersDark(ThemePreference preference);

    bool isDark() const { return dark_; }
    QString fontFamily() const { return family_; }

    QColor primary() const;
    QColor secondary() const;
    // The faintest fill: level-bar tracks, meters' unlit parts.
    QColor quaternary() const;
    // Card backgrounds: the quaternary fill at 0.35.
    QColor cardFill() const;
    QColor divider() const;
    QColor accent() const { return accent_; }
    QColor orange() const;
    QColor red() const;
    QColor level(LevelColor color) const;

    // A font of `pixelSize` logical pixels (fractions allowed) and weight, cached.
    const QFont& font(double pixelSize, QFont::Weight weight = QFont::Normal) const;
    const QFontMetricsF& metrics(double pixelSize, QFont::Weight weight = QFont::Normal) const;
    // The width of `text` in that font, cached: a redraw measures the same titles and most of
    // the same values again, and shaping text is the dearest part of a redraw.
    double advance(const QString& text, double pixelSize,
                   QFont::Weight weight = QFont::Normal) const;
    // `text` laid out once in that font, for drawing it again without shaping it again.
    const QStaticText& staticText(const QString& text, double pixelSize,
                                  QFont::Weight weight = QFont::Normal) const;

private:
    DashboardTheme(bool dark, QColor accent, QString family);

    struct Fonts;
    bool dark_;
    QColor accent_;
    QString family_;
    std::shared_ptr<Fonts> fonts_;
};

} // namespace lumetra
