#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lumetra {

// How the terminal mode writes its lines.
enum class OutputFormat { text, json, waybar, i3bar };

// What the command line asked for.
struct TerminalOptions {
    enum class Action { runPanel, print, watch, help, version };

    Action action = Action::runPanel;
    OutputFormat format = OutputFormat::text;
    QString root = QStringLiteral("/");
    bool showSettings = false; // the panel app opens its settings window
    int top = 0; // --top N: the N applications using the most CPU, in json and waybar lines
};

struct TerminalOptionsParse {
    std::optional<TerminalOptions> options;
    QString error; // set when options is absent: the message for stderr, exit code 2
};

// Parses argv (without the program name). "--format=json" and "--format json" both work.
TerminalOptionsParse parseTerminalOptions(const QStringList& arguments);

// What makes `root` unusable as a kernel tree ("ROOT/proc/stat: No such file or directory"):
// proc/stat or proc/meminfo not a readable regular file. Nothing when both are.
std::optional<QString> missingKernelFile(const QString& root);

// The --help text.
QString terminalUsage();

} // namespace lumetra
