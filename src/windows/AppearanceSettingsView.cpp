#include "windows/AppearanceSettingsView.h"

#include "appearance/AppearanceManager.h"
#include "core/AppState.h"
#include "dashboard/DashboardTheme.h"
#include "settings/SettingsStore.h"
#include "windows/BackgroundPreview.h"
#include "windows/ControlBinding.h"
#include "windows/FormGroup.h"
#include "windows/SecondaryLabel.h"
#include "windows/SegmentedPicker.h"
#include "windows/ToggleSwitch.h"
#include "windows/WindowTheme.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSlider>
#include <QVBoxLayout>

#include <cmath>

namespace lumetra {

AppearanceSettingsView::AppearanceSettingsView(AppState& appState, QWidget* parent)
    : GroupedForm(parent), appState_(appState), modes_(new QButtonGroup(this)) {
    setObjectName(QStringLiteral("AppearanceSettingsView"));
    SettingsStore& settings = appState.settings();

    FormGroup* window = addSection(tr("Window Appearance"), QStringLiteral("paintbrush"));
    QStringList themes;
    for (ThemePreference theme : allCases<ThemePreference>())
        themes << displayName(theme);
    auto* theme = new SegmentedPicker(tr("Theme"), themes);
    theme->setObjectName(QStringLiteral("themePreference"));
    theme->setFixedWidth(210);
    window->addRow(tr("Theme"), theme);
    bindPicker(theme, allCases<ThemePreference>(),
               std::function<ThemePreference()>([&settings] { return settings.themePreference(); }),
               std::function<void(ThemePreference)>(
                   [&settings](ThemePreference value) { settings.setThemePreference(value); }),
               &settings, &SettingsStore::themePreferenceChanged);

    // The five modes as a radio list, each with its description under its title.
    auto* modeList = new QWidget;
    modeList->setAccessibleName(tr("Appearance"));
    auto* modeLayout = new QVBoxLayout(modeList);
    modeLayout->setContentsMargins(0, 2, 0, 2);
    modeLayout->setSpacing(6);
    for (std::size_t i = 0; i < allCases<AppearanceMode>().size(); ++i) {
        const AppearanceMode mode = allCases<AppearanceMode>()[i];
        auto* option = new QRadioButton(title(mode), modeList);
        const std::string_view raw = rawValue(mode);
        option->setObjectName(QStringLiteral("mode.") +
                              QString::fromLatin1(raw.data(), qsizetype(raw.size())));
        QFont bold = option->font();
        bold.setWeight(QFont::DemiBold);
        option->setFont(bold);
        option->setAccessibleDescription(description(mode));
        modes_->addButton(option, int(i));
        auto* text = new SecondaryLabel(description(mode), modeList);
        text->setContentsMargins(24, 0, 0, 0);
        modeLayout->addWidget(option);
        modeLayout->addWidget(text);
    }
    window->addWidget(modeList);
    auto showMode = [this, &settings] {
        for (std::size_t i = 0; i < allCases<AppearanceMode>().size(); ++i) {
            if (allCases<AppearanceMode>()[i] == settings.appearanceMode())
                modes_->button(int(i))->setChecked(true);
        }
        showCustomControls();
    };
    connect(modes_, &QButtonGroup::idClicked, this, [&settings](int id) {
        settings.setAppearanceMode(allCases<AppearanceMode>()[std::size_t(id)]);
    });
    connect(&settings, &SettingsStore::appearanceModeChanged, this, showMode);

    // The custom configuration's own controls, shown only while the custom mode is chosen.
    custom_ = addSection(tr("Custom Appearance"));
    addSlider(
        custom_, tr("Background Opacity"), QStringLiteral("backgroundOpacity"),
        kMinBackgroundOpacity, 100,
        [](const AppearanceConfiguration& c) { return c.backgroundOpacity; },
        [](AppearanceConfiguration& c, double v) { c.backgroundOpacity = v; }, 100);
    addSlider(
        custom_, tr("Overlay Opacity"), QStringLiteral("overlayOpacity"), 0, 100,
        [](const AppearanceConfiguration& c) { return c.overlayOpacity; },
        [](AppearanceConfiguration& c, double v) { c.overlayOpacity = v; }, 100);
    addSlider(
        custom_, tr("Blur Intensity"), QStringLiteral("blurIntensity"), 0, kMaxBlur,
        [](const AppearanceConfiguration& c) { return c.blurIntensity; },
        [](AppearanceConfiguration& c, double v) { c.blurIntensity = v; }, 1);

    auto* material = new QComboBox;
    material->setObjectName(QStringLiteral("material"));
    for (VisualEffectMaterial value : allCases<VisualEffectMaterial>())
        material->addItem(title(value));
    custom_->addRow(tr("Material"), material);
    bindPicker(material, allCases<VisualEffectMaterial>(),
               std::function<VisualEffectMaterial()>(
                   [&settings] { return settings.customConfiguration().material; }),
               std::function<void(VisualEffectMaterial)>([&settings](VisualEffectMaterial value) {
                   AppearanceConfiguration configuration = settings.customConfiguration();
                   configuration.material = value;
                   settings.setCustomConfiguration(configuration);
               }),
               &settings, &SettingsStore::customConfigurationChanged);

    auto* vibrancy = new ToggleSwitch;
    vibrancy->setObjectName(QStringLiteral("vibrancyEnabled"));
    custom_->addRow(tr("Vibrancy"), vibrancy);
    bindToggle(
        vibrancy, [&settings] { return settings.customConfiguration().vibrancyEnabled; },
        [&settings](bool on) {
            AppearanceConfiguration configuration = settings.customConfiguration();
            configuration.vibrancyEnabled = on;
            settings.setCustomConfiguration(configuration);
        },
        &settings, &SettingsStore::customConfigurationChanged);

    FormGroup* cards = addSection(tr("Dashboard"));
    auto* cardStyle = new QComboBox;
    cardStyle->setObjectName(QStringLiteral("metricCardStyle"));
    for (MetricCardStyle style : allCases<MetricCardStyle>())
        cardStyle->addItem(displayName(style));
    cards->addRow(tr("Metric Card Style"), cardStyle);
    bindPicker(cardStyle, allCases<MetricCardStyle>(),
               std::function<MetricCardStyle()>([&settings] { return settings.metricCardStyle(); }),
               std::function<void(MetricCardStyle)>(
                   [&settings](MetricCardStyle value) { settings.setMetricCardStyle(value); }),
               &settings, &SettingsStore::metricCardStyleChanged);

    FormGroup* previewGroup = addSection(tr("Background Preview"));
    preview_ = new BackgroundPreview;
    previewGroup->addWidget(preview_);
    previewGroup->addNote(tr("Accessibility settings of the desktop (reduced transparency, "
                             "increased contrast) take precedence over these choices."));

    finish();
    showMode();
    connect(&appState_, &AppState::effectiveAppearanceChanged, this,
            &AppearanceSettingsView::refreshPreview);
    connect(&settings, &SettingsStore::themePreferenceChanged, this,
            &AppearanceSettingsView::refreshPreview);
    refreshPreview();
}

QSlider* AppearanceSettingsView::addSlider(
    FormGroup* group, const QString& label, const QString& name, int minimum, int maximum,
    std::function<double(const AppearanceConfiguration&)> get,
    std::function<void(AppearanceConfiguration&, double)> set, double scale) {
    SettingsStore& settings = appState_.settings();
    auto* holder = new QWidget;
    auto* layout = new QHBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto* slider = new QSlider(Qt::Horizontal, holder);
    slider->setObjectName(name);
    slider->setRange(minimum, maximum);
    slider->setFixedWidth(170);
    slider->setAccessibleName(label);
    auto* value = new QLabel(holder);
    value->setObjectName(name + QStringLiteral(".value"));
    value->setMinimumWidth(40);
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    layout->addWidget(slider);
    layout->addWidget(value);
    group->addRow(label, holder);
    holder->setAccessibleName(label);
    slider->setAccessibleName(label);

    const bool percent = scale == 100;
    auto show = [this, slider, value, get, scale, percent, &settings] {
        const int position = int(std::lround(get(settings.customConfiguration()) * scale));
        updatingControls_ = true;
        slider->setValue(position);
        updatingControls_ = false;
        value->setText(percent ? tr("%1 %").arg(slider->value())
                               : QString::number(slider->value()));
    };
    show();
    connect(slider, &QSlider::valueChanged, this, [this, set, scale, &settings](int position) {
        if (updatingControls_)
            return;
        AppearanceConfiguration configuration = settings.customConfiguration();
        set(configuration, position / scale);
        settings.setCustomConfiguration(configuration);
    });
    connect(&settings, &SettingsStore::customConfigurationChanged, slider, show);
    return slider;
}

void AppearanceSettingsView::showCustomControls() {
    const bool custom = appState_.settings().appearanceMode() == AppearanceMode::custom;
    setSectionVisible(custom_, custom);
}

void AppearanceSettingsView::refreshPreview() {
    preview_->setConfiguration(appState_.effectiveAppearance(),
                               DashboardTheme::prefersDark(appState_.settings().themePreference()));
}

} // namespace lumetra
