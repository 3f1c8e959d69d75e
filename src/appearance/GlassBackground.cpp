#include "appearance/GlassBackground.h"

#include <QPainter>
#include <QPainterPath>

namespace lumetra {

namespace {

// What `automatic` stands for under each mode.
VisualEffectMaterial concreteMaterial(const AppearanceConfiguration& configuration) {
    if (configuration.material != VisualEffectMaterial::automatic)
        return configuration.material;
    switch (configuration.mode) {
    case AppearanceMode::solid:
    case AppearanceMode::subtle:
        return VisualEffectMaterial::sidebar;
    case AppearanceMode::glass:
        return VisualEffectMaterial::hud;
    case AppearanceMode::translucent:
    case AppearanceMode::custom:
        return VisualEffectMaterial::popover;
    }
    return VisualEffectMaterial::popover;
}

} // namespace

GlassBackground::GlassBackground(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAutoFillBackground(false);
}

void GlassBackground::setConfiguration(const AppearanceConfiguration& configuration) {
    if (configuration == configuration_)
        return;
    configuration_ = configuration;
    update();
    emit configurationChanged();
}

void GlassBackground::setCornerRadius(double radius) {
    if (radius == cornerRadius_)
        return;
    cornerRadius_ = radius;
    update();
    emit cornerRadiusChanged();
}

void GlassBackground::setDark(bool dark) {
    if (dark == dark_)
        return;
    dark_ = dark;
    update();
    emit darkChanged();
}

void GlassBackground::setOpaque(bool opaque) {
    if (opaque == opaque_)
        return;
    opaque_ = opaque;
    update();
}

void GlassBackground::setBlurredBehind(bool blurred) {
    if (blurred == blurredBehind_)
        return;
    blurredBehind_ = blurred;
    update();
}

QColor GlassBackground::drawnColor(const AppearanceConfiguration& configuration, bool dark,
                                   bool blurredBehind) {
    QColor color = compositeColor(configuration, dark);
    if (blurredBehind || color.alphaF() >= kUnblurredMinimumAlpha)
        return color;
    // An empty stack (everything at 0) still gets the window colour to stand on.
    if (color.alpha() == 0)
        color = windowColor(dark);
    color.setAlphaF(static_cast<float>(kUnblurredMinimumAlpha));
    return color;
}

QColor GlassBackground::windowColor(bool dark) {
    return dark ? QColor(0x32, 0x32, 0x34) : QColor(0xEC, 0xEC, 0xEE);
}

std::optional<QColor> GlassBackground::materialTint(const AppearanceConfiguration& configuration,
                                                    bool dark) {
    if (!configuration.vibrancyEnabled)
        return std::nullopt;
    // Without a compositor blur to lean on, each material is a translucent tint close to the
    // colour it gives over a plain desktop.
    switch (concreteMaterial(configuration)) {
    case VisualEffectMaterial::hud:
        // Materials follow the theme; the HUD is the most see-through of them.
        return dark ? QColor(0x1C, 0x1C, 0x1E, 208) : QColor(0xDE, 0xDE, 0xE3, 208);
    case VisualEffectMaterial::sidebar:
        return dark ? QColor(0x26, 0x26, 0x29, 232) : QColor(0xE6, 0xE6, 0xEA, 232);
    case VisualEffectMaterial::menu:
        return dark ? QColor(0x2E, 0x2E, 0x31, 240) : QColor(0xF4, 0xF4, 0xF6, 240);
    case VisualEffectMaterial::popover:
    case VisualEffectMaterial::automatic:
        return dark ? QColor(0x2A, 0x2A, 0x2D, 224) : QColor(0xF7, 0xF7, 0xF9, 224);
    }
    return std::nullopt;
}

QColor GlassBackground::compositeColor(const AppearanceConfiguration& configuration, bool dark,
                                       bool opaque) {
    // Both layers are flat fills, so the stack is one colour: the overlay over the tint
    // (source-over), then the whole at the background opacity.
    QColor overlay = windowColor(dark);
    const double overlayAlpha = std::clamp(configuration.overlayOpacity, 0.0, 1.0);
    double red = overlay.redF() * overlayAlpha;
    double green = overlay.greenF() * overlayAlpha;
    double blue = overlay.blueF() * overlayAlpha;
    double alpha = overlayAlpha;
    if (const std::optional<QColor> tint = materialTint(configuration, dark)) {
        const double tintAlpha = tint->alphaF() * (1 - overlayAlpha);
        red += tint->redF() * tintAlpha;
        green += tint->greenF() * tintAlpha;
        blue += tint->blueF() * tintAlpha;
        alpha += tintAlpha;
    }
    if (opaque) {
        const double finalAlpha = alpha * std::clamp(configuration.backgroundOpacity, 0.0, 1.0);
        const double rest = 1 - finalAlpha;
        const double scale = alpha > 0 ? finalAlpha / alpha : 0;
        QColor result;
        result.setRgbF(static_cast<float>(red * scale + overlay.redF() * rest),
                       static_cast<float>(green * scale + overlay.greenF() * rest),
                       static_cast<float>(blue * scale + overlay.blueF() * rest), 1.0f);
        return result;
    }
    if (alpha <= 0)
        return QColor(0, 0, 0, 0);
    QColor result;
    result.setRgbF(
        static_cast<float>(red / alpha), static_cast<float>(green / alpha),
        static_cast<float>(blue / alpha),
        static_cast<float>(alpha * std::clamp(configuration.backgroundOpacity, 0.0, 1.0)));
    return result;
}

void GlassBackground::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()), cornerRadius_, cornerRadius_);
    painter.fillPath(shape, opaque_ ? compositeColor(configuration_, dark_, true)
                                    : drawnColor(configuration_, dark_, blurredBehind_));
}

} // namespace lumetra
