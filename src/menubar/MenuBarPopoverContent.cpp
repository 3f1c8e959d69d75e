#include "menubar/MenuBarPopoverContent.h"

#include "appearance/DesktopColorScheme.h"
#include "appearance/GlassBackground.h"
#include "appearance/Palette.h"
#include "core/AppState.h"
#include "core/TopApplicationsMonitor.h"
#include "dashboard/DashboardTheme.h"
#include "dashboard/DashboardView.h"
#include "settings/SettingsStore.h"

#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <QPalette>
#include <QVBoxLayout>

namespace lumetra {

MenuBarPopoverContent::MenuBarPopoverContent(AppState& appState, QWidget* parent)
    : QWidget(parent), appState_(appState) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    background_ = new GlassBackground(this);
    background_->setCornerRadius(kCornerRadius);
    outer->addWidget(background_);
    auto* inner = new QVBoxLayout(background_);
    inner->setContentsMargins(0, 0, 0, 0);
    dashboard_ = new DashboardView(appState.systemMonitor(), appState.settings(), background_,
                                   &appState.topApplications());
    inner->addWidget(dashboard_);
    connect(dashboard_, &DashboardView::settingsRequested, this,
            &MenuBarPopoverContent::settingsRequested);
    connect(dashboard_, &DashboardView::supportRequested, this,
            &MenuBarPopoverContent::supportRequested);
    connect(dashboard_, &DashboardView::quitRequested, this, &MenuBarPopoverContent::quitRequested);
    // The window is sized by hand around its anchor: tell it at once, since the layouts in
    // between pass a new height on only while they are active.
    connect(dashboard_, &DashboardView::preferredHeightChanged, this, [this] {
        updateGeometry();
        if (window() != this)
            QCoreApplication::postEvent(window(), new QEvent(QEvent::LayoutRequest));
    });
    setFixedWidth(kWidth);

    connect(&appState_, &AppState::effectiveAppearanceChanged, this,
            &MenuBarPopoverContent::applyAppearance);
    connect(&appState_.settings(), &SettingsStore::themePreferenceChanged, this,
            &MenuBarPopoverContent::applyAppearance);
    colorScheme_ = new DesktopColorScheme(QDBusConnection::sessionBus(), this);
    connect(colorScheme_, &DesktopColorScheme::preferenceChanged, this,
            &MenuBarPopoverContent::applyAppearance);
    applyAppearance();
}

bool MenuBarPopoverContent::isDark() const {
    const ThemePreference theme = appState_.settings().themePreference();
    // "System" follows the desktop's dark style, which Qt's palette does not carry.
    if (theme == ThemePreference::system && colorScheme_)
        return DesktopColorScheme::isDark(colorScheme_->preference(),
                                          DashboardTheme::prefersDark(theme));
    return DashboardTheme::prefersDark(theme);
}

void MenuBarPopoverContent::applyAppearance() {
    const bool dark = isDark();
    background_->setConfiguration(appState_.effectiveAppearance());
    background_->setDark(dark);
    dashboard_->setDark(dark);
    QPalette palette = QApplication::palette();
    const QColor text = palette::text(dark).as<QColor>();
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    setPalette(palette);
}

void MenuBarPopoverContent::setSquareCorners(bool square) {
    background_->setCornerRadius(square ? 0 : kCornerRadius);
}

void MenuBarPopoverContent::setOpaqueBackground(bool opaque) {
    background_->setOpaque(opaque);
}

void MenuBarPopoverContent::setBlurredBehind(bool blurred) {
    background_->setBlurredBehind(blurred);
}

int MenuBarPopoverContent::preferredHeight() const {
    // The dashboard knows its height at once; the layouts learn of a change only later.
    return dashboard_->sizeHint().height();
}

bool MenuBarPopoverContent::event(QEvent* event) {
    // The desktop switched between light and dark: follow it when the theme is the system's.
    if (event->type() == QEvent::ApplicationPaletteChange)
        applyAppearance();
    return QWidget::event(event);
}

} // namespace lumetra
