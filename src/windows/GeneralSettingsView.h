#pragma once

#include "windows/GroupedForm.h"

namespace lumetra {

class AppState;

// The General tab: login item, welcome screen, update checks, donations, and the reset.
class GeneralSettingsView : public GroupedForm {
    Q_OBJECT

public:
    explicit GeneralSettingsView(AppState& appState, QWidget* parent = nullptr);

signals:
    // "Support lumetra…" wants the support window.
    void supportRequested();
};

} // namespace lumetra
