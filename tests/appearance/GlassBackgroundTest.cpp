#include "appearance/GlassBackground.h"
#include "appearance/AppearanceConfiguration.h"
#include "dashboard/DashboardTheme.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace lumetra {
namespace {

// WCAG 2 relative luminance and contrast ratio.
double channel(double srgb) {
    return srgb <= 0.04045 ? srgb / 12.92 : std::pow((srgb + 0.055) / 1.055, 2.4);
}
double luminance(QColor color) {
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) +
           0.0722 * channel(color.blueF());
}
double contrast(QColor a, QColor b) {
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}
// `top` (with its alpha) over an opaque `bottom`.
QColor over(QColor top, QColor bottom) {
    const double a = top.alphaF();
    QColor result;
    result.setRgbF(float(top.redF() * a + bottom.redF() * (1 - a)),
                   float(top.greenF() * a + bottom.greenF() * (1 - a)),
                   float(top.blueF() * a + bottom.blueF() * (1 - a)));
    return result;
}

constexpr QSize kSize(280, 160);

// A busy photograph stands in as overlapping blobs of saturated and pale colours over a
// gradient, every shade from black to white somewhere in it (fixed seed: the same each run).
QImage busyBackground() {
    QImage image(kSize, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, kSize.width(), kSize.height());
    sky.setColorAt(0, QColor(0x9E, 0xC9, 0xF0));
    sky.setColorAt(0.5, QColor(0x20, 0x40, 0x30));
    sky.setColorAt(1, QColor(0xF0, 0xE0, 0xB0));
    painter.fillRect(image.rect(), sky);
    QRandomGenerator random(31);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 60; ++i) {
        painter.setBrush(
            QColor::fromHsv(random.bounded(360), random.bounded(256), random.bounded(256)));
        painter.drawEllipse(QPoint(random.bounded(kSize.width()), random.bounded(kSize.height())),
                            random.bounded(4, 40), random.bounded(4, 40));
    }
    return image;
}

QImage plain(QColor color) {
    QImage image(kSize, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

// The popover's background drawn as on screen, composited over `desktop`.
QImage composite(const QImage& desktop, const AppearanceConfiguration& configuration, bool dark) {
    GlassBackground glass;
    glass.setConfiguration(configuration);
    glass.setDark(dark);
    glass.setCornerRadius(0);
    glass.resize(kSize);
    QImage layer(kSize, QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    glass.render(&layer, QPoint(), QRegion(), QWidget::DrawChildren);
    QImage result = desktop.convertToFormat(QImage::Format_RGB32);
    QPainter painter(&result);
    painter.drawImage(0, 0, layer);
    return result;
}

// The lowest contrast of `text` drawn anywhere on `surface`.
double worstContrast(const QImage& surface, QColor text) {
    double worst = 21;
    for (int y = 0; y < surface.height(); ++y)
        for (int x = 0; x < surface.width(); ++x) {
            const QColor below = surface.pixelColor(x, y);
            worst = std::min(worst, contrast(over(text, below), below));
        }
    return worst;
}

struct Background {
    const char* name;
    QImage image;
};

TEST(GlassContrast, TextStaysLegibleOverAnyDesktopWithoutBlur) {
    const Background backgrounds[] = {
        {"white", plain(Qt::white)}, {"black", plain(Qt::black)}, {"busy", busyBackground()}};
    for (const AppearanceMode mode :
         {AppearanceMode::solid, AppearanceMode::subtle, AppearanceMode::translucent,
          AppearanceMode::glass, AppearanceMode::custom})
        for (const bool dark : {false, true})
            for (const Background& background : backgrounds) {
                const AppearanceConfiguration configuration = AppearanceConfiguration::preset(mode);
                const QImage surface = composite(background.image, configuration, dark);
                const DashboardTheme theme = DashboardTheme::fixed(dark, QFont().family());
                const double primary = worstContrast(surface, theme.primary());
                const double secondary = worstContrast(surface, theme.secondary());
                const std::string what = std::string(rawValue(mode).data(), rawValue(mode).size()) +
                                         (dark ? " dark over " : " light over ") + background.name;
                EXPECT_GE(primary, 7.0) << what;
                EXPECT_GE(secondary, 4.5) << what;
            }
    // The secondary text's own density matters as much as the glass: at the usual 60 % it
    // stays near 3.3:1 even on an opaque light window, hence 84 %.
}

TEST(GlassBackgroundTest, LayersComeToOneColourAtTheBackgroundOpacity) {
    AppearanceConfiguration glass = AppearanceConfiguration::preset(AppearanceMode::glass);
    // With vibrancy the material's tint lies under the window colour.
    ASSERT_TRUE(GlassBackground::materialTint(glass, false).has_value());
    // Reduce transparency: no material, an opaque window-colour fill.
    const AppearanceConfiguration opaque =
        AppearanceConfiguration::resolve(AppearanceMode::glass, std::nullopt, true, false);
    EXPECT_FALSE(GlassBackground::materialTint(opaque, true).has_value());
    EXPECT_EQ(GlassBackground::compositeColor(opaque, true), GlassBackground::windowColor(true));
    // Nothing but the overlay at half strength, drawn at half opacity: a quarter alpha.
    AppearanceConfiguration thin = opaque;
    thin.overlayOpacity = 0.5;
    thin.backgroundOpacity = 0.5;
    EXPECT_NEAR(GlassBackground::compositeColor(thin, false).alphaF(), 0.25, 0.01);
    // `automatic` under glass is the HUD material.
    AppearanceConfiguration hud = glass;
    hud.material = VisualEffectMaterial::hud;
    glass.material = VisualEffectMaterial::automatic;
    EXPECT_EQ(GlassBackground::materialTint(glass, true), GlassBackground::materialTint(hud, true));
    // Opaque drawing (no compositor) ends fully opaque.
    EXPECT_EQ(GlassBackground::compositeColor(glass, false, true).alpha(), 255);
}

TEST(GlassContrast, BlurredGlassKeepsItsOwnTranslucency) {
    const AppearanceConfiguration glass = AppearanceConfiguration::preset(AppearanceMode::glass);
    const QColor composite = GlassBackground::compositeColor(glass, false);
    ASSERT_LT(composite.alphaF(), GlassBackground::kUnblurredMinimumAlpha);
    EXPECT_EQ(GlassBackground::drawnColor(glass, false, true), composite);
    EXPECT_NEAR(GlassBackground::drawnColor(glass, false, false).alphaF(),
                GlassBackground::kUnblurredMinimumAlpha, 0.01);
    // Already dense enough: unchanged either way.
    const AppearanceConfiguration solid = AppearanceConfiguration::preset(AppearanceMode::solid);
    EXPECT_EQ(GlassBackground::drawnColor(solid, true, false),
              GlassBackground::compositeColor(solid, true));
}

} // namespace
} // namespace lumetra
