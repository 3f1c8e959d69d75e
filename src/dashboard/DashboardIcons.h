#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

namespace lumetra {

// The dashboard's symbols by name ("cpu", "memorychip", "gearshape", …): the desktop icon
// theme's symbolic icon where it has a matching one, else the SVG drawn for Lumetra and built
// into the binary; either way tinted one colour. Pixmaps are cached by name, size, colour and
// device pixel ratio, since every redraw draws the same few.
class DashboardIcons {
public:
    // A square pixmap of `size` logical pixels at `devicePixelRatio`.
    static QPixmap pixmap(const QString& symbol, double size, const QColor& tint,
                          double devicePixelRatio);
    // Off: only the built-in SVGs, so pictures do not change with the desktop's theme.
    static void setThemeIconsEnabled(bool enabled);
    // The freedesktop names tried for a symbol, in order.
    static QStringList themeNames(const QString& symbol);
    // The built-in SVG's resource path; empty for an unknown symbol.
    static QString resourcePath(const QString& symbol);
};

} // namespace lumetra
