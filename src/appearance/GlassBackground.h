#pragma once

#include "appearance/AppearanceConfiguration.h"

#include <QColor>
#include <QWidget>

namespace lumetra {

// A window or popover background drawn from an effective appearance configuration, back to
// front: the material's tinted backdrop (only with vibrancy), then the window colour at the
// overlay opacity, the whole stack at the background opacity, clipped to a rounded
// rectangle. Children are laid out on top of it.
class GlassBackground : public QWidget {
    Q_OBJECT
    Q_PROPERTY(lumetra::AppearanceConfiguration configuration READ configuration WRITE
                   setConfiguration NOTIFY configurationChanged)
    Q_PROPERTY(
        double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)
    Q_PROPERTY(bool dark READ isDark WRITE setDark NOTIFY darkChanged)

public:
    explicit GlassBackground(QWidget* parent = nullptr);

    const AppearanceConfiguration& configuration() const { return configuration_; }
    void setConfiguration(const AppearanceConfiguration& configuration);
    double cornerRadius() const { return cornerRadius_; }
    void setCornerRadius(double radius);
    // Light or dark window colours and material tints.
    bool isDark() const { return dark_; }
    void setDark(bool dark);
    // Where nothing behind the window can show through (no compositor), the stack is drawn
    // over the window colour as one opaque fill.
    bool isOpaque() const { return opaque_; }
    void setOpaque(bool opaque);
    // The compositor blurs what lies behind the window (KWin, asked to): the glass keeps its
    // own translucency. Otherwise a busy or contrasting desktop would show through sharp, so
    // the stack is drawn at least kUnblurredMinimumAlpha opaque.
    bool isBlurredBehind() const { return blurredBehind_; }
    void setBlurredBehind(bool blurred);

    // Enough that the primary text keeps a WCAG contrast of 7:1 over a white, a black or a
    // busy background in every mode and theme.
    static constexpr double kUnblurredMinimumAlpha = 0.9;

    // What each layer is filled with, for the painter and for tests.
    static QColor windowColor(bool dark);
    // The material's backdrop; no value without vibrancy.
    static std::optional<QColor> materialTint(const AppearanceConfiguration& configuration,
                                              bool dark);
    // The colour the whole stack comes to.
    static QColor compositeColor(const AppearanceConfiguration& configuration, bool dark,
                                 bool opaque = false);
    // The colour drawn on a translucent window: the composite, at least
    // kUnblurredMinimumAlpha opaque unless the compositor blurs behind it.
    static QColor drawnColor(const AppearanceConfiguration& configuration, bool dark,
                             bool blurredBehind);

signals:
    void configurationChanged();
    void cornerRadiusChanged();
    void darkChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    AppearanceConfiguration configuration_;
    double cornerRadius_ = 16;
    bool dark_ = false;
    bool opaque_ = false;
    bool blurredBehind_ = false;
};

} // namespace lumetra
