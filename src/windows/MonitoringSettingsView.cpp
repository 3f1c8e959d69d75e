#include "windows/MonitoringSettingsView.h"

#include "core/AppState.h"
#include "settings/SettingsStore.h"
#include "windows/ControlBinding.h"
#include "windows/FormGroup.h"
#include "windows/SegmentedPicker.h"
#include "windows/ToggleSwitch.h"

namespace lumetra {

namespace {

template <typename E>
QStringList labels() {
    QStringList names;
    for (E value : allCases<E>())
        names << displayName(value);
    return names;
}

} // namespace

MonitoringSettingsView::MonitoringSettingsView(AppState& appState, QWidget* parent)
    : GroupedForm(parent) {
    setObjectName(QStringLiteral("MonitoringSettingsView"));
    SettingsStore& settings = appState.settings();

    auto* update = new SegmentedPicker(tr("Update interval"), labels<UpdateInterval>());
    update->setObjectName(QStringLiteral("updateInterval"));
    addSection(tr("Update Interval"))->addWidget(update);
    // Through the application state, so the running fast loop picks the new period up.
    bindPicker(update, allCases<UpdateInterval>(),
               std::function<UpdateInterval()>([&appState] { return appState.updateInterval(); }),
               std::function<void(UpdateInterval)>(
                   [&appState](UpdateInterval value) { appState.setUpdateInterval(value); }),
               &settings, &SettingsStore::updateIntervalChanged);

    auto* temperature =
        new SegmentedPicker(tr("Temperature interval"), labels<TemperatureInterval>());
    temperature->setObjectName(QStringLiteral("temperatureInterval"));
    addSection(tr("Temperature Interval"))->addWidget(temperature);
    bindPicker(temperature, allCases<TemperatureInterval>(),
               std::function<TemperatureInterval()>(
                   [&appState] { return appState.temperatureInterval(); }),
               std::function<void(TemperatureInterval)>([&appState](TemperatureInterval value) {
                   appState.setTemperatureInterval(value);
               }),
               &settings, &SettingsStore::temperatureIntervalChanged);

    addSection()->addNote(
        tr("CPU, memory and network are sampled at the update interval. Temperature uses its "
           "own, slightly less frequent interval since reading it is more expensive."));

    FormGroup* network = addSection(tr("Network"));
    auto* physical = new ToggleSwitch;
    physical->setObjectName(QStringLiteral("networkPhysicalOnly"));
    network->addRow(tr("Count only physical network interfaces"), physical);
    bindToggle(
        physical, [&settings] { return settings.networkPhysicalOnly(); },
        [&settings](bool on) { settings.setNetworkPhysicalOnly(on); }, &settings,
        &SettingsStore::networkPhysicalOnlyChanged);
    network->addNote(tr("Leaves out bridges, VPN tunnels and the virtual links of containers and "
                        "virtual machines, so their traffic is not counted twice."));

    finish();
}

} // namespace lumetra
