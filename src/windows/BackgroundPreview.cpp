#include "windows/BackgroundPreview.h"

#include "appearance/Palette.h"

#include "appearance/GlassBackground.h"

#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QVBoxLayout>

namespace lumetra {

BackgroundPreview::BackgroundPreview(QWidget* parent)
    : QWidget(parent), glass_(new GlassBackground(this)), title_(new QLabel(glass_)),
      figures_(new QLabel(glass_)) {
    setObjectName(QStringLiteral("backgroundPreview"));
    setMinimumHeight(132);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(56, 20, 56, 20);
    outer->addWidget(glass_);
    glass_->setCornerRadius(12);
    auto* inner = new QVBoxLayout(glass_);
    inner->setContentsMargins(14, 10, 14, 10);
    inner->setSpacing(4);
    title_->setText(tr("lumetra"));
    QFont titleFont = title_->font();
    titleFont.setWeight(QFont::DemiBold);
    title_->setFont(titleFont);
    figures_->setText(tr("CPU 23%   Memory 61%   52°C"));
    inner->addWidget(title_);
    inner->addWidget(figures_);
    inner->addStretch(1);
}

QSize BackgroundPreview::sizeHint() const {
    return {400, 132};
}

void BackgroundPreview::setConfiguration(const AppearanceConfiguration& configuration, bool dark) {
    glass_->setConfiguration(configuration);
    glass_->setDark(dark);
    QPalette p;
    const QColor text = palette::text(dark).as<QColor>();
    p.setColor(QPalette::WindowText, text);
    title_->setPalette(p);
    figures_->setPalette(p);
}

void BackgroundPreview::paintEvent(QPaintEvent*) {
    // A stand-in desktop: a wallpaper-like gradient with a few soft shapes, so translucency
    // shows as colour bleeding through.
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QPainterPath clip;
    clip.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
    p.setClipPath(clip);
    QLinearGradient wallpaper(rect().topLeft(), rect().bottomRight());
    wallpaper.setColorAt(0.0, QColor(0x3A, 0x7B, 0xD5));
    wallpaper.setColorAt(0.55, QColor(0x8E, 0x54, 0xE9));
    wallpaper.setColorAt(1.0, QColor(0xF5, 0x6C, 0x6C));
    p.fillRect(rect(), wallpaper);
    auto blob = [&](QPointF centre, qreal radius, QColor colour) {
        QRadialGradient g(centre, radius);
        g.setColorAt(0, colour);
        colour.setAlpha(0);
        g.setColorAt(1, colour);
        p.setPen(Qt::NoPen);
        p.setBrush(g);
        p.drawEllipse(centre, radius, radius);
    };
    blob(QPointF(width() * 0.22, height() * 0.35), height() * 0.7, QColor(0xFF, 0xD1, 0x66, 200));
    blob(QPointF(width() * 0.78, height() * 0.75), height() * 0.6, QColor(0x2E, 0xE6, 0xA8, 170));
    p.setPen(QPen(QColor(255, 255, 255, 150), 2));
    for (int i = 0; i < 6; ++i)
        p.drawLine(QPointF(width() * 0.1 + i * 60, height()), QPointF(width() * 0.3 + i * 60, 0));
}

} // namespace lumetra
