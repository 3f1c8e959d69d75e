#include "windows/SettingsSectionHeader.h"

#include "windows/SymbolIcon.h"
#include "windows/WindowTheme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>

namespace lumetra {

SettingsSectionHeader::SettingsSectionHeader(const QString& title, const QString& systemImage,
                                             QWidget* parent)
    : QWidget(parent), title_(title), systemImage_(systemImage), icon_(new QLabel(this)),
      text_(new QLabel(title, this)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 0, 0);
    layout->setSpacing(5);
    layout->addWidget(icon_);
    layout->addWidget(text_);
    layout->addStretch(1);
    icon_->setVisible(!systemImage.isEmpty());
    QFont font = text_->font();
    font.setPixelSize(11);
    font.setWeight(QFont::DemiBold);
    text_->setFont(font);
    restyle();
}

void SettingsSectionHeader::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        restyle();
    QWidget::changeEvent(event);
}

void SettingsSectionHeader::restyle() {
    const QColor secondary = WindowTheme::secondaryText(palette());
    QPalette p = text_->palette();
    p.setColor(QPalette::WindowText, secondary);
    text_->setPalette(p);
    if (!systemImage_.isEmpty())
        icon_->setPixmap(SymbolIcon::pixmap(systemImage_, secondary, 12, devicePixelRatioF()));
}

} // namespace lumetra
