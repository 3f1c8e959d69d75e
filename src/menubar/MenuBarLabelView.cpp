#include "menubar/MenuBarLabelView.h"

#include "core/SystemMonitor.h"
#include "format/MenuBarLabel.h"
#include "menubar/LabelFont.h"
#include "menubar/MenuBarRichLabel.h"
#include "settings/SettingsStore.h"

#include <QHBoxLayout>
#include <QLabel>

namespace lumetra {

MenuBarLabelView::MenuBarLabelView(QWidget* parent)
    : QWidget(parent), text_(new QLabel(this)), rich_(new MenuBarRichLabel(this)) {
    text_->setFont(labelFont());
    text_->setTextFormat(Qt::PlainText);
    text_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    text_->setText(QStringLiteral("lumetra"));
    rich_->hide();
    auto* layout = new QHBoxLayout(this);
    // A little air at both ends, as a panel item has around its title.
    layout->setContentsMargins(6, 2, 6, 2);
    layout->setSpacing(0);
    layout->addWidget(text_);
    layout->addWidget(rich_);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void MenuBarLabelView::setContent(const SystemMetrics& metrics, const MetricHistories& histories,
                                  const LabelSettings& settings) {
    const bool chipStyle = settings.style != MenuBarDisplayStyle::textOnly;
    bool changed = chipStyle != showsChips();
    if (chipStyle) {
        changed |= rich_->setChips(chips(metrics, histories, settings), settings.style,
                                   settings.separator);
    } else {
        const QString line = labelText(metrics, settings);
        if (line != text_->text()) {
            text_->setText(line);
            changed = true;
        }
    }
    if (chipStyle != showsChips()) {
        text_->setVisible(!chipStyle);
        rich_->setVisible(chipStyle);
    }
    if (changed)
        emit contentChanged();
}

bool MenuBarLabelView::showsChips() const {
    return !rich_->isHidden();
}

QString MenuBarLabelView::text() const {
    return showsChips() ? QString() : text_->text();
}

void MenuBarLabelView::bind(SystemMonitor* monitor, SettingsStore* settings) {
    if (monitor_)
        disconnect(monitor_, nullptr, this, nullptr);
    if (settings_)
        disconnect(settings_, nullptr, this, nullptr);
    monitor_ = monitor;
    settings_ = settings;
    if (!monitor || !settings)
        return;
    for (auto signal : {&SystemMonitor::metricsChanged, &SystemMonitor::historiesChanged})
        connect(monitor, signal, this, &MenuBarLabelView::scheduleRefresh);
    for (auto signal :
         {&SettingsStore::displayedMetricsChanged, &SettingsStore::separatorChanged,
          &SettingsStore::memoryFormatChanged, &SettingsStore::temperatureFormatChanged,
          &SettingsStore::menuBarDisplayStyleChanged})
        connect(settings, signal, this, &MenuBarLabelView::scheduleRefresh);
    refresh();
}

void MenuBarLabelView::scheduleRefresh() {
    if (refreshQueued_)
        return;
    refreshQueued_ = true;
    QMetaObject::invokeMethod(this, &MenuBarLabelView::refresh, Qt::QueuedConnection);
}

void MenuBarLabelView::refresh() {
    refreshQueued_ = false;
    if (!monitor_ || !settings_)
        return;
    setContent(monitor_->metrics(), monitor_->histories(), LabelSettings::from(*settings_));
}

} // namespace lumetra
