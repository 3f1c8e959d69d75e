#include "menubar/LabelImage.h"

#include "dashboard/DashboardIcons.h"
#include "format/MenuBarLabel.h"
#include "format/MetricCatalogue.h"
#include "format/ValueFormatters.h"
#include "menubar/LiveIcon.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace lumetra::LabelImage {

namespace {

constexpr int kBarSegments = 5;

void appendText(QList<LabelImagePiece>& pieces, const QString& text,
                std::optional<LevelColor> color) {
    if (!pieces.isEmpty() && pieces.back().kind == LabelImagePiece::Kind::text &&
        pieces.back().color == color)
        pieces.back().text += text;
    else
        pieces.append({LabelImagePiece::Kind::text, MenuBarMetric::cpu, text, color});
}

// The metric's symbol from the shared icon set, tinted with its level colour.
void drawIcon(QPainter& painter, MenuBarMetric metric, const QRectF& box, const QColor& tint) {
    const double ratio = painter.device()->devicePixelRatioF();
    painter.drawPixmap(
        box.topLeft(),
        DashboardIcons::pixmap(QLatin1StringView(describe(metric).icon), box.width(), tint, ratio));
}

} // namespace

QList<LabelImagePiece> pieces(const QList<MenuBarChipContent>& chips, MenuBarDisplayStyle style,
                              MenuBarSeparator separator) {
    const QString separatorString = separatorText(separator);
    const QString space(QLatin1Char(' '));
    QList<LabelImagePiece> result;
    for (const MenuBarChipContent& chip : chips) {
        if (&chip != &chips.front())
            appendText(result, separatorString, std::nullopt);
        const std::optional<LevelColor> level =
            chip.percentage ? std::optional(levelColor(chip.percentage)) : std::nullopt;
        result.append({LabelImagePiece::Kind::icon, chip.metric, {}, levelColor(chip.percentage)});
        appendText(result, space, std::nullopt);
        if (style == MenuBarDisplayStyle::compactGraph && !chip.graphText.isEmpty()) {
            appendText(result, chip.graphText, level);
            appendText(result, space, std::nullopt);
        }
        if (style == MenuBarDisplayStyle::miniBar && chip.percentage) {
            appendText(result, levelBar(kBarSegments, *chip.percentage), level);
            appendText(result, space, std::nullopt);
        }
        appendText(result, chip.valueText, std::nullopt);
    }
    return result;
}

QList<LabelImagePiece> textPieces(const QString& line) {
    return {{LabelImagePiece::Kind::text, MenuBarMetric::cpu, line, std::nullopt}};
}

QImage render(const QList<LabelImagePiece>& pieces, int height, QFont font, QColor textColor) {
    // Text about 60 % of the height, like a panel's own labels.
    font.setPixelSize(std::max(6, static_cast<int>(std::lround(height * 0.6))));
    const QFontMetricsF metrics(font);
    const qreal iconSize = std::round(metrics.capHeight() * 1.25);
    qreal width = 0;
    for (const LabelImagePiece& piece : pieces)
        width += piece.kind == LabelImagePiece::Kind::icon ? iconSize
                                                           : metrics.horizontalAdvance(piece.text);
    const int imageWidth = std::max(1, static_cast<int>(std::ceil(width)) + 2);
    QImage image(imageWidth, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font);
    const qreal baseline = std::round((height - metrics.height()) / 2 + metrics.ascent());
    // Icons sit centred on the capitals.
    const qreal iconTop = std::round(baseline - metrics.capHeight() / 2 - iconSize / 2);
    qreal x = 1;
    for (const LabelImagePiece& piece : pieces) {
        if (piece.kind == LabelImagePiece::Kind::icon) {
            drawIcon(painter, piece.metric, QRectF(x, iconTop, iconSize, iconSize),
                     LiveIcon::color(piece.color.value_or(LevelColor::secondary)));
            x += iconSize;
            continue;
        }
        painter.setPen(piece.color ? LiveIcon::color(*piece.color) : textColor);
        painter.drawText(QPointF(x, baseline), piece.text);
        x += metrics.horizontalAdvance(piece.text);
    }
    return image;
}

} // namespace lumetra::LabelImage
