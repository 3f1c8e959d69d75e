#include "cli/TerminalOptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace lumetra {

namespace {

constexpr const char* kOptionNames[] = {"--print",    "--watch", "--format",  "--root",
                                        "--settings", "--help",  "--version", "--top"};
// More rows than any bar or script shows; a bigger N is a typo.
constexpr int kMostTop = 100;

// Why `path` is not a readable regular file, or nothing when it is one.
std::optional<QString> whyUnreadable(const QString& path) {
    const QByteArray local = QFile::encodeName(path);
    struct stat status {};
    if (::stat(local.constData(), &status) != 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    if (!S_ISREG(status.st_mode))
        return QStringLiteral("not a regular file");
    const int descriptor = ::open(local.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    ::close(descriptor);
    return std::nullopt;
}

std::optional<OutputFormat> formatFromName(const QString& name) {
    if (name == QLatin1String("text"))
        return OutputFormat::text;
    if (name == QLatin1String("json"))
        return OutputFormat::json;
    if (name == QLatin1String("waybar"))
        return OutputFormat::waybar;
    if (name == QLatin1String("i3bar"))
        return OutputFormat::i3bar;
    return std::nullopt;
}

TerminalOptionsParse failure(const QString& message) {
    return {std::nullopt, message + QStringLiteral("\nTry 'lumetra --help' for more information.")};
}

} // namespace

TerminalOptionsParse parseTerminalOptions(const QStringList& arguments) {
    TerminalOptions options;
    bool formatGiven = false;
    bool rootGiven = false;
    bool topGiven = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        QString argument = arguments[i];
        QString value;
        bool hasInlineValue = false;
        if (argument.startsWith(QLatin1String("--")) && argument.contains(u'=')) {
            value = argument.section(u'=', 1);
            argument = argument.section(u'=', 0, 0);
            hasInlineValue = true;
        }
        auto takeValue = [&]() -> std::optional<QString> {
            if (hasInlineValue)
                return value;
            if (i + 1 >= arguments.size())
                return std::nullopt;
            return arguments[++i];
        };

        if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            options.action = TerminalOptions::Action::help;
            return {options, {}};
        }
        if (argument == QLatin1String("--version") || argument == QLatin1String("-v")) {
            options.action = TerminalOptions::Action::version;
            return {options, {}};
        }
        if (hasInlineValue && argument != QLatin1String("--format") &&
            argument != QLatin1String("--root") && argument != QLatin1String("--top"))
            return failure(QStringLiteral("lumetra: option '%1' takes no value").arg(argument));

        if (argument == QLatin1String("--print") || argument == QLatin1String("--watch")) {
            const auto action = argument == QLatin1String("--print")
                                    ? TerminalOptions::Action::print
                                    : TerminalOptions::Action::watch;
            if (options.action != TerminalOptions::Action::runPanel && options.action != action)
                return failure(QStringLiteral("lumetra: --print and --watch exclude each other"));
            options.action = action;
        } else if (argument == QLatin1String("--format")) {
            const auto name = takeValue();
            if (!name)
                return failure(QStringLiteral("lumetra: option '--format' needs a value: "
                                              "text, json, waybar or i3bar"));
            const auto format = formatFromName(*name);
            if (!format)
                return failure(QStringLiteral("lumetra: unknown format '%1' (expected text, "
                                              "json, waybar or i3bar)")
                                   .arg(*name));
            options.format = *format;
            formatGiven = true;
        } else if (argument == QLatin1String("--root")) {
            const auto root = takeValue();
            if (!root || root->isEmpty())
                return failure(QStringLiteral("lumetra: option '--root' needs a directory"));
            if (!QFileInfo(*root).isDir())
                return failure(
                    QStringLiteral("lumetra: --root '%1' is not a directory").arg(*root));
            if (const auto missing = missingKernelFile(*root))
                return failure(
                    QStringLiteral("lumetra: --root '%1' cannot be read: %2").arg(*root, *missing));
            options.root = *root;
            rootGiven = true;
        } else if (argument == QLatin1String("--top")) {
            const auto count = takeValue();
            bool number = false;
            const int n = count ? count->toInt(&number) : 0;
            if (!number || n < 1 || n > kMostTop)
                return failure(QStringLiteral("lumetra: option '--top' needs a number of "
                                              "applications from 1 to %1")
                                   .arg(kMostTop));
            options.top = n;
            topGiven = true;
        } else if (argument == QLatin1String("--settings")) {
            options.showSettings = true;
        } else if (!argument.startsWith(u'-')) {
            QString message = QStringLiteral("lumetra: unexpected argument '%1'").arg(argument);
            for (const char* name : kOptionNames) {
                if (argument == QLatin1String(name + 2))
                    message += QStringLiteral(" (did you mean '%1'?)").arg(QLatin1String(name));
            }
            return failure(message);
        } else {
            return failure(QStringLiteral("lumetra: unknown option '%1'").arg(arguments[i]));
        }
    }
    // --format and --root only make sense for the terminal mode: they imply --watch.
    if ((formatGiven || rootGiven || topGiven) &&
        options.action == TerminalOptions::Action::runPanel)
        options.action = TerminalOptions::Action::watch;
    if (options.showSettings && options.action != TerminalOptions::Action::runPanel)
        return failure(QStringLiteral("lumetra: --settings opens the panel app's settings and "
                                      "cannot be combined with --print or --watch"));
    if (topGiven && options.format != OutputFormat::json && options.format != OutputFormat::waybar)
        return failure(QStringLiteral("lumetra: --top needs --format json (or waybar, whose "
                                      "tooltip then lists the top 3)"));
    return {options, {}};
}

std::optional<QString> missingKernelFile(const QString& root) {
    for (const char* name : {"proc/stat", "proc/meminfo"}) {
        const QString path = root + u'/' + QLatin1String(name);
        if (const auto why = whyUnreadable(path))
            return QStringLiteral("%1: %2").arg(QDir::cleanPath(path), *why);
    }
    return std::nullopt;
}

QString terminalUsage() {
    return QStringLiteral(
        "Usage: lumetra [--settings]\n"
        "       lumetra --print [--format FORMAT] [--root DIR] [--top N]\n"
        "       lumetra --watch [--format FORMAT] [--root DIR] [--top N]\n"
        "       lumetra --snapshot FILE [--label] [--style STYLE] [--theme light|dark]\n"
        "\n"
        "A lightweight system monitor for the Linux desktop: CPU, memory and memory\n"
        "pressure, network rates, disks and temperature.\n"
        "\n"
        "With a display, lumetra starts the panel app: an item in your panel with the live\n"
        "label, and a dashboard that opens when you click it. Starting lumetra again while\n"
        "it runs opens the running one's dashboard. With no display (neither DISPLAY nor\n"
        "WAYLAND_DISPLAY set) it runs --watch instead.\n"
        "\n"
        "  --print          print one line and exit (two readings one update interval\n"
        "                   apart, so CPU and network rates are real)\n"
        "  --watch          print a line every update interval until interrupted; the\n"
        "                   first one update interval after the start\n"
        "  --format FORMAT  text (default), json, waybar or i3bar\n"
        "  --root DIR       read DIR/proc and DIR/sys instead of /proc and /sys (a host's\n"
        "                   trees mounted into a container, or a saved tree); DIR/proc/stat\n"
        "                   and DIR/proc/meminfo must be readable files\n"
        "  --top N          add the N applications using the most CPU (topApplications:\n"
        "                   name, processCount, cpuPercent, residentBytes) to json lines,\n"
        "                   or the top 3 to waybar's tooltip; processes are read only\n"
        "                   with this option\n"
        "  --settings       open the panel app's settings window (the running one's)\n"
        "  --snapshot FILE  draw the dashboard (or with --label the panel label) into a PNG,\n"
        "                   with no display needed; STYLE is a card (or label) style\n"
        "  -h, --help       show this help and exit\n"
        "  -v, --version    show the version and exit\n"
        "\n"
        "The lines follow your settings (~/.config/lumetra/settings.json), and a change\n"
        "there shows on the next line. In JSON a figure that could not be read is null.\n");
}

} // namespace lumetra
