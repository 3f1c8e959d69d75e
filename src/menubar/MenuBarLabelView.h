#pragma once

#include "format/LabelSettings.h"
#include "model/MetricHistories.h"
#include "model/SystemMetrics.h"

#include <QPointer>
#include <QWidget>

class QLabel;

namespace lumetra {

class MenuBarRichLabel;
class SettingsStore;
class SystemMonitor;

// The menu bar label as a view: the text line for textOnly, the chip row for the other styles.
class MenuBarLabelView : public QWidget {
    Q_OBJECT

public:
    explicit MenuBarLabelView(QWidget* parent = nullptr);

    // Rebuilds the label; repaints only when the shown text or chips change.
    void setContent(const SystemMetrics& metrics, const MetricHistories& histories,
                    const LabelSettings& settings);

    // Follows the monitor's readings and the label's settings, with every burst of changes
    // coalesced into one queued rebuild. Either object may be destroyed first.
    void bind(SystemMonitor* monitor, SettingsStore* settings);

    bool showsChips() const;
    QString text() const; // the textOnly line, empty while chips are shown
    const MenuBarRichLabel& richLabel() const { return *rich_; }

signals:
    // The shown text or chips changed.
    void contentChanged();

private:
    void scheduleRefresh();
    void refresh();

    QLabel* text_;
    MenuBarRichLabel* rich_;
    QPointer<SystemMonitor> monitor_;
    QPointer<SettingsStore> settings_;
    bool refreshQueued_ = false;
};

} // namespace lumetra
