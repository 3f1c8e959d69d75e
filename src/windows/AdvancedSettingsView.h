#pragma once

#include "windows/GroupedForm.h"
#include "windows/MachineInfo.h"

class QLabel;

namespace lumetra {

class AppState;

// The Advanced tab: what the sensors can deliver on this machine, where the logs go, and a
// restart of sampling.
class AdvancedSettingsView : public GroupedForm {
    Q_OBJECT

public:
    AdvancedSettingsView(AppState& appState, MachineInfo machine, QWidget* parent = nullptr);
    explicit AdvancedSettingsView(AppState& appState, QWidget* parent = nullptr);

private:
    void refresh();

    AppState& appState_;
    MachineInfo machine_;
    QLabel* model_;
    QLabel* appleSilicon_;
    QLabel* temperature_;
    QLabel* thermalState_;
    QLabel* sources_;
};

} // namespace lumetra
