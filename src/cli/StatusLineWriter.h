#pragma once

#include "cli/JsonWriter.h"
#include "cli/TerminalOptions.h"
#include "format/LabelSettings.h"
#include "model/DiskVolume.h"
#include "model/MetricHistories.h"
#include "model/SystemMetrics.h"
#include "model/TopApplications.h"

#include <string>

namespace lumetra {

// Everything one output line is made of.
struct StatusSnapshot {
    const SystemMetrics& metrics;
    const MetricHistories& histories;
    const DiskVolumeList& disks;
    const LabelSettings& settings;
};

// Turns snapshots into the lines of one output format:
//  - text: the label as the menu bar would show it;
//  - json: the sample's fields, the disks and the label;
//  - waybar: text, tooltip, class (normal, warning, critical) and percentage;
//  - i3bar: the protocol's header, then one array of blocks per line.
class StatusLineWriter {
public:
    explicit StatusLineWriter(OutputFormat format) : format_(format) {}

    // What goes out before the first line (the i3bar header and the opening bracket).
    std::string header() const;
    // One line, with its newline.
    const std::string& line(const StatusSnapshot& snapshot);

    // With --top: json lines get `count` top applications, waybar's tooltip the top 3.
    void setTopApplications(const TopApplications* top, int count) {
        top_ = top;
        topCount_ = count;
    }

private:
    void writeWaybar(const StatusSnapshot& snapshot);
    void writeI3bar(const StatusSnapshot& snapshot);

    OutputFormat format_;
    JsonWriter json_;
    std::string text_;
    bool firstI3barLine_ = true;
    const TopApplications* top_ = nullptr;
    int topCount_ = 0;
};

// "normal", "warning" or "critical" for the highest level among the label's metrics.
const char* statusClass(std::optional<double> highestPercentage);

} // namespace lumetra
