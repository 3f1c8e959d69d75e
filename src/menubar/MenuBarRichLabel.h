#pragma once

#include "format/LevelColor.h"
#include "format/MenuBarChipContent.h"
#include "settings/MenuBarDisplayStyle.h"
#include "settings/MenuBarSeparator.h"

#include <QList>
#include <QWidget>

#include <optional>

namespace lumetra {

// A stretch of the chip row drawn in one colour; no colour means the default text colour.
struct LabelRun {
    QString text;
    std::optional<LevelColor> color;

    bool operator==(const LabelRun&) const = default;
};

// The chip row as coloured runs: per chip the metric's mark in its level colour, a space,
// the graph (compactGraph) or bar (miniBar) in the level colour and a space, then the value;
// the separator text between chips. Neighbouring runs of one colour are merged.
QList<LabelRun> richLabelRuns(const QList<MenuBarChipContent>& chips, MenuBarDisplayStyle style,
                              MenuBarSeparator separator);

// The colour of a run: accent from the palette's highlight, secondary from its placeholder
// text, the default from its window text; orange and red are fixed.
QColor runColor(std::optional<LevelColor> color, const QPalette& palette);

// Shows a chip row as one line of text, painted run by run in the label font.
class MenuBarRichLabel : public QWidget {
    Q_OBJECT

public:
    explicit MenuBarRichLabel(QWidget* parent = nullptr);

    // Repaints only when the runs differ from the ones shown; returns whether they did.
    bool setChips(const QList<MenuBarChipContent>& chips, MenuBarDisplayStyle style,
                  MenuBarSeparator separator);
    const QList<LabelRun>& runs() const { return runs_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void measure();

    QList<LabelRun> runs_;
    QList<qreal> advances_; // one per run, in the widget's font
    qreal width_ = 0;
};

} // namespace lumetra
