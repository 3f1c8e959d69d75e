#include "menubar/LabelImage.h"

#include "format/MenuBarLabel.h"
#include "format/ValueFormatters.h"
#include "menubar/LiveIcon.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

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

// The icons: simple shapes that stay readable at a panel's 10 to 16 pixels.
void drawIcon(QPainter& painter, MenuBarMetric metric, const QRectF& box, const QColor& tint) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal s = box.width();
    const qreal line = std::max<qreal>(1.0, s / 9);
    QPen pen(tint, line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const QPointF c = box.center();
    switch (metric) {
    case MenuBarMetric::cpu: {
        // A chip with pins on every side and a filled core.
        const QRectF body = box.adjusted(s * 0.2, s * 0.2, -s * 0.2, -s * 0.2);
        painter.drawRoundedRect(body, s * 0.08, s * 0.08);
        for (const qreal f : {0.38, 0.62}) {
            const qreal x = box.left() + s * f;
            const qreal y = box.top() + s * f;
            painter.drawLine(QPointF(x, box.top() + s * 0.05), QPointF(x, body.top()));
            painter.drawLine(QPointF(x, body.bottom()), QPointF(x, box.bottom() - s * 0.05));
            painter.drawLine(QPointF(box.left() + s * 0.05, y), QPointF(body.left(), y));
            painter.drawLine(QPointF(body.right(), y), QPointF(box.right() - s * 0.05, y));
        }
        painter.fillRect(body.adjusted(s * 0.14, s * 0.14, -s * 0.14, -s * 0.14), tint);
        break;
    }
    case MenuBarMetric::memory: {
        // A memory module: a long board with contacts below.
        const QRectF board(box.left() + s * 0.02, box.top() + s * 0.22, s * 0.96, s * 0.42);
        painter.drawRoundedRect(board, s * 0.06, s * 0.06);
        for (int i = 0; i < 4; ++i) {
            const qreal x = board.left() + board.width() * (0.2 + 0.2 * i);
            painter.drawLine(QPointF(x, board.bottom()), QPointF(x, box.top() + s * 0.86));
        }
        break;
    }
    case MenuBarMetric::temperature: {
        // A thermometer: a stem over a filled bulb.
        const qreal stemWidth = s * 0.26;
        const QRectF stem(c.x() - stemWidth / 2, box.top() + s * 0.04, stemWidth, s * 0.6);
        painter.drawRoundedRect(stem, stemWidth / 2, stemWidth / 2);
        painter.setBrush(tint);
        painter.drawEllipse(QPointF(c.x(), box.top() + s * 0.74), s * 0.2, s * 0.2);
        painter.drawLine(QPointF(c.x(), box.top() + s * 0.35), QPointF(c.x(), box.top() + s * 0.7));
        break;
    }
    case MenuBarMetric::download:
    case MenuBarMetric::upload: {
        const bool down = metric == MenuBarMetric::download;
        const qreal tip = down ? box.bottom() - s * 0.08 : box.top() + s * 0.08;
        const qreal tail = down ? box.top() + s * 0.08 : box.bottom() - s * 0.08;
        const qreal head = down ? -s * 0.32 : s * 0.32;
        painter.drawLine(QPointF(c.x(), tail), QPointF(c.x(), tip));
        painter.drawLine(QPointF(c.x() - s * 0.3, tip + head), QPointF(c.x(), tip));
        painter.drawLine(QPointF(c.x() + s * 0.3, tip + head), QPointF(c.x(), tip));
        break;
    }
    }
    painter.restore();
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
