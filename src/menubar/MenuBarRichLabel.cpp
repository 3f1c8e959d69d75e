#include "menubar/MenuBarRichLabel.h"

#include "appearance/Palette.h"

#include "format/MenuBarLabel.h"
#include "menubar/LabelFont.h"
#include "menubar/LabelImage.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace lumetra {

namespace {

void append(QList<LabelRun>& runs, const QString& text, std::optional<LevelColor> color) {
    if (!runs.isEmpty() && runs.back().color == color)
        runs.back().text += text;
    else
        runs.append({text, color});
}

} // namespace

QList<LabelRun> richLabelRuns(const QList<MenuBarChipContent>& chips, MenuBarDisplayStyle style,
                              MenuBarSeparator separator) {
    // The image label's pieces, with each icon written as the metric's mark.
    QList<LabelRun> runs;
    for (const LabelImagePiece& piece : LabelImage::pieces(chips, style, separator))
        append(runs,
               piece.kind == LabelImagePiece::Kind::icon ? metricMark(piece.metric) : piece.text,
               piece.color);
    return runs;
}

QColor runColor(std::optional<LevelColor> color, const QPalette& palette) {
    if (!color)
        return palette.color(QPalette::WindowText);
    switch (*color) {
    case LevelColor::secondary:
        return palette.color(QPalette::PlaceholderText);
    case LevelColor::accent:
        return palette.color(QPalette::Highlight);
    case LevelColor::orange:
        return palette::panelOrange.as<QColor>();
    case LevelColor::red:
        return palette::panelRed.as<QColor>();
    }
    return palette.color(QPalette::WindowText);
}

MenuBarRichLabel::MenuBarRichLabel(QWidget* parent) : QWidget(parent) {
    setFont(labelFont());
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

bool MenuBarRichLabel::setChips(const QList<MenuBarChipContent>& chips, MenuBarDisplayStyle style,
                                MenuBarSeparator separator) {
    QList<LabelRun> runs = richLabelRuns(chips, style, separator);
    if (runs == runs_)
        return false;
    runs_ = std::move(runs);
    const QSize before = sizeHint();
    measure();
    if (sizeHint() != before)
        updateGeometry();
    update();
    return true;
}

void MenuBarRichLabel::measure() {
    const QFontMetricsF metrics(font());
    advances_.resize(runs_.size());
    width_ = 0;
    for (qsizetype i = 0; i < runs_.size(); ++i) {
        advances_[i] = metrics.horizontalAdvance(runs_[i].text);
        width_ += advances_[i];
    }
}

QSize MenuBarRichLabel::sizeHint() const {
    const QMargins margins = contentsMargins();
    return {static_cast<int>(std::ceil(width_)) + margins.left() + margins.right(),
            QFontMetrics(font()).height() + margins.top() + margins.bottom()};
}

void MenuBarRichLabel::paintEvent(QPaintEvent*) {
    if (runs_.isEmpty())
        return;
    QPainter painter(this);
    painter.setFont(font());
    const QFontMetricsF metrics(font());
    const QRectF area = contentsRect();
    // Centred vertically on the line box, so every run shares one baseline.
    const qreal baseline = area.top() + (area.height() - metrics.height()) / 2 + metrics.ascent();
    qreal x = area.left();
    for (qsizetype i = 0; i < runs_.size(); ++i) {
        painter.setPen(runColor(runs_[i].color, palette()));
        painter.drawText(QPointF(x, baseline), runs_[i].text);
        x += advances_[i];
    }
}

void MenuBarRichLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        measure();
        updateGeometry();
    }
    QWidget::changeEvent(event);
}

} // namespace lumetra
