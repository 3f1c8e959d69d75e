#include "windows/FormGroup.h"

#include "windows/SecondaryLabel.h"
#include "windows/SymbolIcon.h"
#include "windows/WindowTheme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace lumetra {

namespace {

// A hairline between rows, in the group's border colour.
class Hairline : public QWidget {
public:
    explicit Hairline(QWidget* parent) : QWidget(parent) { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), WindowTheme::groupBorder(palette()));
    }
};

// The symbol in front of a row's label, redrawn in the text colour when the palette changes.
class RowSymbol : public QLabel {
public:
    RowSymbol(const QString& name, QWidget* parent) : QLabel(parent), name_(name) {
        setFixedSize(16, 16);
        restyle();
    }

protected:
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange)
            restyle();
        QLabel::changeEvent(event);
    }

private:
    void restyle() {
        QColor color = palette().color(QPalette::WindowText);
        if (!isEnabled())
            color = WindowTheme::tertiaryText(palette());
        setPixmap(SymbolIcon::pixmap(name_, color, 16, devicePixelRatioF()));
    }
    QString name_;
};

} // namespace

FormGroup::FormGroup(QWidget* parent) : QFrame(parent), layout_(new QVBoxLayout(this)) {
    layout_->setContentsMargins(12, 8, 12, 8);
    layout_->setSpacing(8);
}

void FormGroup::addSeparatorIfNeeded() {
    if (layout_->count() > 0)
        layout_->addWidget(new Hairline(this));
}

QWidget* FormGroup::addRow(const QString& label, QWidget* control, const QString& symbol) {
    addSeparatorIfNeeded();
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    if (!symbol.isEmpty())
        layout->addWidget(new RowSymbol(symbol, row));
    auto* text = new QLabel(label, row);
    text->setBuddy(control);
    layout->addWidget(text, 1);
    control->setParent(row);
    control->setAccessibleName(label);
    layout->addWidget(control, 0, Qt::AlignRight | Qt::AlignVCenter);
    row->setMinimumHeight(24);
    layout_->addWidget(row);
    return row;
}

void FormGroup::addWidget(QWidget* widget) {
    addSeparatorIfNeeded();
    widget->setParent(this);
    layout_->addWidget(widget);
}

QLabel* FormGroup::addNote(const QString& text) {
    addSeparatorIfNeeded();
    auto* note = new SecondaryLabel(text, this);
    layout_->addWidget(note);
    return note;
}

void FormGroup::clear() {
    while (QLayoutItem* item = layout_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

void FormGroup::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(WindowTheme::groupBorder(palette()), 1));
    p.setBrush(WindowTheme::groupFill(palette()));
    p.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
}

} // namespace lumetra
