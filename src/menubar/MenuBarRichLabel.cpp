#include "menubar/MenuBarRichLabel.h"

#include "format/MenuBarLabel.h"
#include "format/ValueFormatters.h"
#include "menubar/LabelFont.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace lumetra {

namespace {

constexpr int kBarSegments = 5;

void append(QList<LabelRun>& runs, const QString& text, std::optional<LevelColor> color) {
    if (!runs.isEmpty() && runs.back().color == color)
        runs.back().text += text;
    else
        runs.append({text, color});
}

} // namespace

QList<LabelRun> richLabelRuns(const QList<MenuBarChipContent>& chips, MenuBarDisplayStyle style,
                              MenuBarSeparator separator) {
    const QString separatorString = separatorText(separator);
    const QString space(QLatin1Char(' '));
    QList<LabelRun> runs;
    runs.reserve(chips.size() * 4);
    for (const MenuBarChipContent& chip : chips) {
        if (&chip != &chips.front())
            append(runs, separatorString, std::nullopt);
        // Without a percentage the mark is secondary and a graph keeps the text colour.
        const std::optional<LevelColor> level =
            chip.percentage ? std::optional(levelColor(chip.percentage)) : std::nullopt;
        append(runs, metricMark(chip.metric), levelColor(chip.percentage));
        append(runs, space, std::nullopt);
        if (style == MenuBarDisplayStyle::compactGraph && !chip.graphText.isEmpty()) {
            append(runs, chip.graphText, level);
            append(runs, space, std::nullopt);
        }
        if (style == MenuBarDisplayStyle::miniBar && chip.percentage) {
            append(runs, levelBar(kBarSegments, *chip.percentage), level);
            append(runs, space, std::nullopt);
        }
        append(runs, chip.valueText, std::nullopt);
    }
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
        return QColor(0xFF, 0x95, 0x00);
    case LevelColor::red:
        return QColor(0xFF, 0x3B, 0x30);
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
