#pragma once

#include "settings/MenuBarDisplayStyle.h"
#include "settings/MetricCardStyle.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace lumetra {

// `lumetra --snapshot FILE.png [--style STYLE] [--theme light|dark]`: the dashboard drawn
// offscreen from this machine's readings (two readings one update interval apart, as with
// --print) into a PNG, 280 wide times the scale factor, with no display needed. With
// --label it draws the panel label instead, on a strip of panel, and --style then names a
// label style (textOnly, iconAndText, compactGraph, miniBar).
struct SnapshotOptions {
    QString file;
    bool label = false;
    std::optional<MetricCardStyle> style;          // the settings' card style when absent
    std::optional<MenuBarDisplayStyle> labelStyle; // the settings' label style when absent
    std::optional<bool> dark;                      // the settings' theme when absent
};

struct SnapshotParse {
    std::optional<SnapshotOptions> options;
    QString error;
};

class SnapshotCommand {
public:
    // True when the arguments ask for a snapshot at all.
    static bool requested(const QStringList& arguments);
    static SnapshotParse parse(const QStringList& arguments);
    // Builds its own application on the offscreen platform; returns the exit code.
    static int run(int argc, char* argv[], const SnapshotOptions& options);
};

} // namespace lumetra
