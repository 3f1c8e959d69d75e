#include "windows/AdvancedSettingsView.h"

#include "core/AppState.h"
#include "core/SystemMonitor.h"
#include "model/AppId.h"
#include "model/ThermalState.h"
#include "windows/FormGroup.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace lumetra {

namespace {

QString availabilityText(TemperatureAvailability availability) {
    switch (availability) {
    case TemperatureAvailability::exactTemperature:
        return AdvancedSettingsView::tr("Exact reading available");
    case TemperatureAvailability::thermalStateOnly:
        return AdvancedSettingsView::tr("Thermal state only");
    case TemperatureAvailability::unavailable:
        break;
    }
    return AdvancedSettingsView::tr("Unavailable");
}

QLabel* valueLabel(const QString& name) {
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

void setIfChanged(QLabel* label, const QString& text) {
    if (label->text() != text)
        label->setText(text);
}

} // namespace

AdvancedSettingsView::AdvancedSettingsView(AppState& appState, QWidget* parent)
    : AdvancedSettingsView(appState, MachineInfo::current(), parent) {}

AdvancedSettingsView::AdvancedSettingsView(AppState& appState, MachineInfo machine, QWidget* parent)
    : GroupedForm(parent), appState_(appState), machine_(std::move(machine)),
      model_(valueLabel(QStringLiteral("hardwareModel"))),
      appleSilicon_(valueLabel(QStringLiteral("appleSilicon"))),
      temperature_(valueLabel(QStringLiteral("temperature"))),
      thermalState_(valueLabel(QStringLiteral("thermalState"))),
      sources_(valueLabel(QStringLiteral("temperatureSources"))) {
    setObjectName(QStringLiteral("AdvancedSettingsView"));

    FormGroup* sensors = addSection(tr("Sensor Availability"));
    sensors->addRow(tr("Hardware Model"), model_);
    sensors->addRow(tr("Apple Silicon"), appleSilicon_);
    sensors->addRow(tr("Temperature"), temperature_);
    sources_->setWordWrap(true);
    sensors->addRow(tr("Temperature Sensors"), sources_);
    sensors->addRow(tr("Thermal State"), thermalState_);

    FormGroup* diagnostics = addSection(tr("Developer Diagnostics"));
    QLabel* logs = diagnostics->addNote(
        tr("Logs are written to the system journal under %1, categories: monitoring, sensors, "
           "ui, settings. View them with journalctl.")
            .arg(QString::fromLatin1(kAppId)));
    logs->setObjectName(QStringLiteral("diagnostics"));
    logs->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* restart = new QPushButton(tr("Reset Sensor Configuration"));
    restart->setObjectName(QStringLiteral("resetSensorConfiguration"));
    restart->setAutoDefault(false);
    // Only sampling restarts: discovered sensors and counter baselines stay, so the first
    // values after the restart cover the pause.
    connect(restart, &QPushButton::clicked, this, [this] { appState_.restartSampling(); });
    auto* holder = new QWidget;
    auto* holderLayout = new QHBoxLayout(holder);
    holderLayout->setContentsMargins(0, 0, 0, 0);
    holderLayout->addWidget(restart);
    holderLayout->addStretch(1);
    addSection()->addWidget(holder);

    finish();
    refresh();
    connect(&appState_.systemMonitor(), &SystemMonitor::metricsChanged, this,
            &AdvancedSettingsView::refresh);
}

void AdvancedSettingsView::refresh() {
    const SystemMetrics& metrics = appState_.systemMonitor().metrics();
    setIfChanged(model_, machine_.hardwareModel.isEmpty() ? tr("Unknown") : machine_.hardwareModel);
    setIfChanged(appleSilicon_, machine_.appleSilicon ? tr("Yes") : tr("No"));
    setIfChanged(temperature_, availabilityText(metrics.temperatureAvailability));
    setIfChanged(thermalState_, label(metrics.thermalState));
    setIfChanged(sources_, metrics.temperatureSources.isEmpty()
                               ? tr("None found")
                               : metrics.temperatureSources.join(QStringLiteral(", ")));
}

} // namespace lumetra
