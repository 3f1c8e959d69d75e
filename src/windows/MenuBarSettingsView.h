#pragma once

#include "windows/GroupedForm.h"

#include <QList>

class QListView;

namespace lumetra {

class AppState;
class FormGroup;
class MetricOrderModel;
class MenuBarLabelView;

// The Menu Bar tab: which metrics show, their order, the label's style, separator and formats,
// and the live label as a preview.
class MenuBarSettingsView : public GroupedForm {
    Q_OBJECT

public:
    explicit MenuBarSettingsView(AppState& appState, QWidget* parent = nullptr);

    MetricOrderModel& orderModel() const { return *orderModel_; }
    QListView& orderList() const { return *orderList_; }
    MenuBarLabelView& preview() const { return *preview_; }

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void rebuildToggles();
    void updateRowColors();

    AppState& appState_;
    FormGroup* metricsGroup_;
    MetricOrderModel* orderModel_;
    QListView* orderList_ = nullptr;
    // The controls Tab reaches after the switches, in order.
    QList<QWidget*> afterToggles_;
    MenuBarLabelView* preview_;
};

} // namespace lumetra
