#pragma once

#include <QWidget>

namespace lumetra {

class AppState;
class DashboardView;
class DesktopColorScheme;
class GlassBackground;

// What the popover shows: the dashboard over the glass background, drawn with the effective
// appearance and the chosen theme, 280 wide with a height that follows the content.
class MenuBarPopoverContent : public QWidget {
    Q_OBJECT

public:
    static constexpr int kWidth = 280;
    static constexpr double kCornerRadius = 16;

    explicit MenuBarPopoverContent(AppState& appState, QWidget* parent = nullptr);

    // The height the content wants at the fixed width.
    int preferredHeight() const;
    bool isDark() const;
    // No compositor behind the window: draw the background opaque.
    void setOpaqueBackground(bool opaque);
    // Square where a title bar sits on top (a window the compositor frames).
    void setSquareCorners(bool square);
    // The compositor blurs behind the window.
    void setBlurredBehind(bool blurred);

signals:
    void settingsRequested();
    void supportRequested();
    void quitRequested();

protected:
    bool event(QEvent* event) override;

private:
    void applyAppearance();

    AppState& appState_;
    GlassBackground* background_;
    DashboardView* dashboard_;
    DesktopColorScheme* colorScheme_ = nullptr;
};

} // namespace lumetra
