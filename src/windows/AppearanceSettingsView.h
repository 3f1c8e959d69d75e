#pragma once

#include "appearance/AppearanceConfiguration.h"
#include "windows/GroupedForm.h"

#include <functional>

class QButtonGroup;
class QComboBox;
class QLabel;
class QSlider;

namespace lumetra {

class AppState;
class BackgroundPreview;
class FormGroup;
class ToggleSwitch;

// The Appearance tab: the theme, the five appearance modes with their descriptions, the
// custom mode's own opacity, overlay, blur, material and vibrancy, the dashboard's card style,
// and a live preview of the glass background.
class AppearanceSettingsView : public GroupedForm {
    Q_OBJECT

public:
    explicit AppearanceSettingsView(AppState& appState, QWidget* parent = nullptr);

    // Ranges the sliders allow, in percent (opacities) and blur units.
    static constexpr int kMinBackgroundOpacity = 30;
    static constexpr int kMaxBlur = 100;

    BackgroundPreview& preview() const { return *preview_; }

private:
    QSlider* addSlider(FormGroup* group, const QString& label, const QString& name, int minimum,
                       int maximum, std::function<double(const AppearanceConfiguration&)> get,
                       std::function<void(AppearanceConfiguration&, double)> set, double scale);
    void showCustomControls();
    void refreshPreview();

    AppState& appState_;
    QButtonGroup* modes_;
    FormGroup* custom_;
    BackgroundPreview* preview_;
    bool updatingControls_ = false;
};

} // namespace lumetra
