#pragma once

#include "cli/StatusLineWriter.h"
#include "cli/TerminalOptions.h"
#include "core/SystemMonitor.h"
#include "format/LabelSettings.h"

#include <QObject>

#include <cstdio>

namespace lumetra {

class TopApplicationsMonitor;

class SettingsStore;

// The terminal and status-bar mode: a line per fast sample from the second on, so that CPU
// and rates are real (--watch), or the second sample's line and then done (--print).
class TerminalMode : public QObject {
    Q_OBJECT

public:
    TerminalMode(const TerminalOptions& options, SettingsStore& settings, SystemMonitor& monitor,
                 std::FILE* output, QObject* parent = nullptr);

    // --top: the process list the lines add; watched from start() on.
    void setTopApplications(TopApplicationsMonitor* top) { top_ = top; }

    // Writes the format's header and starts sampling.
    void start();

    int linesWritten() const { return linesWritten_; }

signals:
    // --print is done, or the output went away (a status bar that closed its pipe).
    void finished(int exitCode);

private:
    void onMetricsChanged();
    void writeLine();
    FastReadings wantedReadings() const;
    void write(const std::string& text);

    TerminalOptions options_;
    SettingsStore& settings_;
    SystemMonitor& monitor_;
    TopApplicationsMonitor* top_ = nullptr;
    std::FILE* output_;
    StatusLineWriter writer_;
    LabelSettings labelSettings_;
    Instant lastTimestamp_ = kDistantPast;
    int fastSamples_ = 0;
    int linesWritten_ = 0;
    bool done_ = false;
};

} // namespace lumetra
