#include "windows/SegmentedPicker.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>

namespace lumetra {

namespace {

// One segment: a flat text button whose ends are rounded on the outer sides only.
class Segment : public QAbstractButton {
public:
    enum Position { first, middle, last, only };

    Segment(const QString& text, Position position, QWidget* parent)
        : QAbstractButton(parent), position_(position) {
        setText(text);
        setCheckable(true);
        setFocusPolicy(Qt::StrongFocus);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

    QSize sizeHint() const override {
        const QFontMetrics metrics(font());
        return {metrics.horizontalAdvance(text()) + 24, metrics.height() + 10};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const bool dark = palette().color(QPalette::Window).lightnessF() < 0.5;
        const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        const qreal r = 6;
        QPainterPath path;
        const bool roundLeft = position_ == first || position_ == only;
        const bool roundRight = position_ == last || position_ == only;
        path.moveTo(box.left() + (roundLeft ? r : 0), box.top());
        path.lineTo(box.right() - (roundRight ? r : 0), box.top());
        if (roundRight)
            path.arcTo(QRectF(box.right() - 2 * r, box.top(), 2 * r, 2 * r), 90, -90);
        path.lineTo(box.right(), box.bottom() - (roundRight ? r : 0));
        if (roundRight)
            path.arcTo(QRectF(box.right() - 2 * r, box.bottom() - 2 * r, 2 * r, 2 * r), 0, -90);
        path.lineTo(box.left() + (roundLeft ? r : 0), box.bottom());
        if (roundLeft)
            path.arcTo(QRectF(box.left(), box.bottom() - 2 * r, 2 * r, 2 * r), 270, -90);
        path.lineTo(box.left(), box.top() + (roundLeft ? r : 0));
        if (roundLeft)
            path.arcTo(QRectF(box.left(), box.top(), 2 * r, 2 * r), 180, -90);
        path.closeSubpath();

        QColor fill = isChecked() ? palette().color(QPalette::Highlight)
                                  : (dark ? QColor(255, 255, 255, 22) : QColor(0, 0, 0, 14));
        if (isDown() && !isChecked())
            fill = dark ? QColor(255, 255, 255, 40) : QColor(0, 0, 0, 30);
        p.setPen(QPen(dark ? QColor(255, 255, 255, 30) : QColor(0, 0, 0, 30), 1));
        p.setBrush(fill);
        p.drawPath(path);
        if (hasFocus()) {
            QColor ring = palette().color(QPalette::Highlight);
            ring.setAlphaF(0.55F);
            p.setPen(QPen(ring, 2));
            p.setBrush(Qt::NoBrush);
            p.drawPath(path);
        }
        QColor text = isChecked() ? palette().color(QPalette::HighlightedText)
                                  : palette().color(QPalette::ButtonText);
        if (!isEnabled())
            text.setAlphaF(0.4F);
        p.setPen(text);
        p.drawText(rect(), Qt::AlignCenter, this->text());
    }

private:
    Position position_;
};

} // namespace

SegmentedPicker::SegmentedPicker(const QString& accessibleName, const QStringList& labels,
                                 QWidget* parent)
    : QWidget(parent), group_(new QButtonGroup(this)) {
    setAccessibleName(accessibleName);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    group_->setExclusive(true);
    for (int i = 0; i < labels.size(); ++i) {
        const auto position = labels.size() == 1       ? Segment::only
                              : i == 0                 ? Segment::first
                              : i == labels.size() - 1 ? Segment::last
                                                       : Segment::middle;
        auto* segment = new Segment(labels.at(i), position, this);
        segment->setAccessibleName(labels.at(i));
        group_->addButton(segment, i);
        layout->addWidget(segment);
    }
    connect(group_, &QButtonGroup::idClicked, this, &SegmentedPicker::activated);
}

int SegmentedPicker::currentIndex() const {
    return group_->checkedId();
}

void SegmentedPicker::setCurrentIndex(int index) {
    if (QAbstractButton* button = group_->button(index))
        button->setChecked(true);
}

int SegmentedPicker::count() const {
    return int(group_->buttons().size());
}

QString SegmentedPicker::label(int index) const {
    QAbstractButton* button = group_->button(index);
    return button ? button->text() : QString();
}

QWidget* SegmentedPicker::segment(int index) const {
    return group_->button(index);
}

} // namespace lumetra
