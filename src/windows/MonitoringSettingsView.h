#pragma once

#include "windows/GroupedForm.h"

namespace lumetra {

class AppState;

// The Monitoring tab: the two sampling intervals, which take effect on the running loops, and
// which network interfaces count.
class MonitoringSettingsView : public GroupedForm {
    Q_OBJECT

public:
    explicit MonitoringSettingsView(AppState& appState, QWidget* parent = nullptr);
};

} // namespace lumetra
