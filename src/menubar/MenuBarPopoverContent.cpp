#include "menubar/MenuBarPopoverContent.h"

#include "appearance/GlassBackground.h"
#include "core/AppState.h"
#include "core/SystemMonitor.h"
#include "format/ValueFormatters.h"
#include "settings/SettingsStore.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPalette>
#include <QVBoxLayout>

#include <cmath>

namespace lumetra {

namespace {

QString percentText(double value) {
    return QStringLiteral("%1%").arg(std::lround(std::clamp(value, 0.0, 100.0)));
}

// The live CPU and memory figures, until the dashboard's cards take this place.
class GlanceCard : public QWidget {
public:
    GlanceCard(SystemMonitor& monitor, QWidget* parent) : QWidget(parent), monitor_(monitor) {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(12, 12, 12, 12);
        layout->setSpacing(6);
        title_ = new QLabel(tr("lumetra"), this);
        QFont titleFont = title_->font();
        titleFont.setPointSizeF(12);
        titleFont.setWeight(QFont::DemiBold);
        title_->setFont(titleFont);
        figures_ = new QLabel(this);
        figures_->setObjectName(QStringLiteral("PopoverFigures"));
        layout->addWidget(title_);
        layout->addWidget(figures_);
        connect(&monitor_, &SystemMonitor::metricsChanged, this, [this] { refresh(); });
        refresh();
    }

private:
    void refresh() {
        const SystemMetrics& metrics = monitor_.metrics();
        figures_->setText(
            tr("CPU %1   Memory %2")
                .arg(percentText(metrics.cpuUsage), percentText(metrics.memoryPercentage)));
    }

    SystemMonitor& monitor_;
    QLabel* title_;
    QLabel* figures_;
};

bool systemIsDark() {
    const QColor window = QApplication::palette().color(QPalette::Window);
    return window.lightnessF() < 0.5;
}

} // namespace

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
    dashboard_ = new GlanceCard(appState.systemMonitor(), background_);
    inner->addWidget(dashboard_);
    setFixedWidth(kWidth);

    connect(&appState_, &AppState::effectiveAppearanceChanged, this,
            &MenuBarPopoverContent::applyAppearance);
    connect(&appState_.settings(), &SettingsStore::themePreferenceChanged, this,
            &MenuBarPopoverContent::applyAppearance);
    applyAppearance();
}

bool MenuBarPopoverContent::isDark() const {
    switch (appState_.settings().themePreference()) {
    case ThemePreference::light:
        return false;
    case ThemePreference::dark:
        return true;
    case ThemePreference::system:
        break;
    }
    return systemIsDark();
}

void MenuBarPopoverContent::applyAppearance() {
    const bool dark = isDark();
    background_->setConfiguration(appState_.effectiveAppearance());
    background_->setDark(dark);
    QPalette palette = QApplication::palette();
    const QColor text = dark ? QColor(0xF2, 0xF2, 0xF7) : QColor(0x1C, 0x1C, 0x1E);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    setPalette(palette);
}

void MenuBarPopoverContent::setOpaqueBackground(bool opaque) {
    background_->setOpaque(opaque);
}

int MenuBarPopoverContent::preferredHeight() const {
    if (layout()->hasHeightForWidth())
        return layout()->totalHeightForWidth(kWidth);
    return layout()->totalSizeHint().height();
}

bool MenuBarPopoverContent::event(QEvent* event) {
    // The desktop switched between light and dark: follow it when the theme is the system's.
    if (event->type() == QEvent::ApplicationPaletteChange)
        applyAppearance();
    return QWidget::event(event);
}

} // namespace lumetra
