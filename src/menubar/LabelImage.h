#pragma once

#include "format/LevelColor.h"
#include "format/MenuBarChipContent.h"
#include "settings/MenuBarDisplayStyle.h"
#include "settings/MenuBarSeparator.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QList>

#include <optional>

namespace lumetra {

// One piece of the label drawn as an image: a metric's icon in its tint, or text in a level
// colour (none: the text colour).
struct LabelImagePiece {
    enum class Kind { icon, text };
    Kind kind = Kind::text;
    MenuBarMetric metric = MenuBarMetric::cpu;
    QString text;
    std::optional<LevelColor> color;

    bool operator==(const LabelImagePiece&) const = default;
};

// The label as an image for panels that draw an item's icon at its own width (waybar): the
// text line, or the chip row with an icon per metric, graphs and bars in level colours.
namespace LabelImage {

// The chip row: per chip its icon (tinted by level, secondary without one), a space, the
// graph (compactGraph) or bar (miniBar) in the level colour and a space, the value; the
// separator between chips.
QList<LabelImagePiece> pieces(const QList<MenuBarChipContent>& chips, MenuBarDisplayStyle style,
                              MenuBarSeparator separator);
// The text line as one piece.
QList<LabelImagePiece> textPieces(const QString& line);

// An image `height` pixels high and as wide as the pieces, transparent behind them; the
// text drawn in `font` scaled to the height, in `textColor`.
QImage render(const QList<LabelImagePiece>& pieces, int height, QFont font, QColor textColor);

} // namespace LabelImage

} // namespace lumetra
