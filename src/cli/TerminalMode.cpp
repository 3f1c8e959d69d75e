#include "cli/TerminalMode.h"

#include "core/TopApplicationsMonitor.h"
#include "settings/SettingsStore.h"

namespace lumetra {

TerminalMode::TerminalMode(const TerminalOptions& options, SettingsStore& settings,
                           SystemMonitor& monitor, std::FILE* output, QObject* parent)
    : QObject(parent), options_(options), settings_(settings), monitor_(monitor), output_(output),
      writer_(options.format), labelSettings_(LabelSettings::from(settings)) {
    connect(&monitor_, &SystemMonitor::metricsChanged, this, &TerminalMode::onMetricsChanged);

    // The panel app may change the settings while we run: the next line shows it.
    auto refreshLabelSettings = [this] {
        labelSettings_ = LabelSettings::from(settings_);
        monitor_.setReadings(wantedReadings());
    };
    monitor_.setReadings(wantedReadings());
    connect(&settings_, &SettingsStore::displayedMetricsChanged, this, refreshLabelSettings);
    connect(&settings_, &SettingsStore::separatorChanged, this, refreshLabelSettings);
    connect(&settings_, &SettingsStore::memoryFormatChanged, this, refreshLabelSettings);
    connect(&settings_, &SettingsStore::temperatureFormatChanged, this, refreshLabelSettings);
    connect(&settings_, &SettingsStore::menuBarDisplayStyleChanged, this, refreshLabelSettings);
    connect(&settings_, &SettingsStore::updateIntervalChanged, this, [this] {
        monitor_.setUpdateInterval(seconds(settings_.updateInterval()));
        if (top_)
            top_->setUpdateInterval(seconds(settings_.updateInterval()));
    });
    connect(&settings_, &SettingsStore::temperatureIntervalChanged, this,
            [this] { monitor_.setTemperatureInterval(seconds(settings_.temperatureInterval())); });
}

FastReadings TerminalMode::wantedReadings() const {
    // JSON carries every figure and waybar's tooltip lists every metric; the other formats
    // show only what the label shows, and no label shows the cores.
    if (options_.format == OutputFormat::json || options_.format == OutputFormat::waybar)
        return {};
    const auto shown = [this](MenuBarMetric metric) {
        return labelSettings_.displayedMetrics.contains(metric);
    };
    return {.cpuCores = false,
            .network = shown(MenuBarMetric::download) || shown(MenuBarMetric::upload),
            .diskIO = shown(MenuBarMetric::diskRead) || shown(MenuBarMetric::diskWrite)};
}

void TerminalMode::start() {
    write(writer_.header());
    if (top_)
        top_->beginWatching();
    monitor_.start();
}

void TerminalMode::onMetricsChanged() {
    // A thermal update keeps the timestamp; only a fast sample makes a new line.
    const Instant timestamp = monitor_.metrics().timestamp;
    if (done_ || timestamp == lastTimestamp_)
        return;
    lastTimestamp_ = timestamp;
    ++fastSamples_;
    // The first sample only takes the CPU and network baselines: a line from it would show
    // made-up zeros, so the first line comes one update interval later.
    if (fastSamples_ < 2)
        return;
    if (options_.action == TerminalOptions::Action::print) {
        writeLine();
        done_ = true;
        monitor_.stop();
        emit finished(0);
        return;
    }
    writeLine();
}

void TerminalMode::writeLine() {
    const StatusSnapshot snapshot{monitor_.metrics(), monitor_.histories(), monitor_.diskVolumes(),
                                  labelSettings_};
    writer_.setTopApplications(top_ ? &top_->topApplications() : nullptr, options_.top);
    write(writer_.line(snapshot));
    ++linesWritten_;
}

void TerminalMode::write(const std::string& text) {
    if (text.empty() || done_)
        return;
    const bool written = std::fwrite(text.data(), 1, text.size(), output_) == text.size() &&
                         std::fflush(output_) == 0;
    if (!written) {
        // Nobody reads any more (the bar closed the pipe): stop quietly.
        done_ = true;
        monitor_.stop();
        emit finished(0);
    }
}

} // namespace lumetra
