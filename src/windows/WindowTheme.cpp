#include "windows/WindowTheme.h"

#include "appearance/Palette.h"

#include "dashboard/DashboardTheme.h"
#include "settings/SettingsStore.h"

#include <QEvent>
#include <QWidget>

namespace lumetra {

WindowTheme::WindowTheme(QWidget* window, SettingsStore& settings)
    : QObject(window), window_(window), settings_(settings) {
    window->installEventFilter(this);
    connect(&settings_, &SettingsStore::themePreferenceChanged, this, &WindowTheme::apply);
    apply();
}

QPalette WindowTheme::palette(bool dark) {
    QPalette p;
    const QColor window = (dark ? palette::windowDark : palette::windowLight).as<QColor>();
    const QColor base = (dark ? palette::baseDark : palette::baseLight).as<QColor>();
    const QColor text = palette::text(dark).as<QColor>();
    const QColor button = dark ? QColor(0x3A, 0x3A, 0x3D) : QColor(0xFA, 0xFA, 0xFB);
    const QColor accent = palette::accent(dark).as<QColor>();
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, dark ? QColor(0x33, 0x33, 0x36) : QColor(0xF5, 0xF5, 0xF7));
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, button);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, Qt::white);
    p.setColor(QPalette::Highlight, accent);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, accent);
    p.setColor(QPalette::ToolTipBase, base);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::Light, dark ? QColor(0x4A, 0x4A, 0x4E) : Qt::white);
    p.setColor(QPalette::Midlight, dark ? QColor(0x3F, 0x3F, 0x43) : QColor(0xE4, 0xE4, 0xE7));
    p.setColor(QPalette::Mid, dark ? QColor(0x55, 0x55, 0x5A) : QColor(0xC7, 0xC7, 0xCC));
    p.setColor(QPalette::Dark, dark ? QColor(0x16, 0x16, 0x18) : QColor(0xA0, 0xA0, 0xA5));
    p.setColor(QPalette::Shadow, QColor(0, 0, 0, dark ? 160 : 90));
    QColor placeholder = text;
    placeholder.setAlphaF(0.35F);
    p.setColor(QPalette::PlaceholderText, placeholder);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        QColor disabled = text;
        disabled.setAlphaF(0.35F);
        p.setColor(QPalette::Disabled, role, disabled);
    }
    return p;
}

QColor WindowTheme::secondaryText(const QPalette& palette) {
    QColor color = palette.color(QPalette::Active, QPalette::WindowText);
    color.setAlphaF(0.62F);
    return color;
}

QColor WindowTheme::tertiaryText(const QPalette& palette) {
    QColor color = palette.color(QPalette::Active, QPalette::WindowText);
    color.setAlphaF(0.32F);
    return color;
}

QColor WindowTheme::groupFill(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightnessF() < 0.5;
    return dark ? QColor(0x2E, 0x2E, 0x31) : QColor(0xF9, 0xF9, 0xFA);
}

QColor WindowTheme::groupBorder(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightnessF() < 0.5;
    return dark ? QColor(255, 255, 255, 22) : QColor(0, 0, 0, 26);
}

QColor WindowTheme::destructive(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightnessF() < 0.5;
    return dark ? QColor(0xFF, 0x45, 0x3A) : QColor(0xE0, 0x2A, 0x20);
}

void WindowTheme::apply() {
    if (!window_)
        return;
    const bool dark = DashboardTheme::prefersDark(settings_.themePreference());
    window_->setPalette(palette(dark));
    if (dark != dark_) {
        dark_ = dark;
        emit darkChanged(dark_);
    }
}

bool WindowTheme::eventFilter(QObject* watched, QEvent* event) {
    // The desktop switched between light and dark: follow it when the theme is the system's.
    if (watched == window_ && event->type() == QEvent::ApplicationPaletteChange &&
        settings_.themePreference() == ThemePreference::system)
        apply();
    return QObject::eventFilter(watched, event);
}

} // namespace lumetra
