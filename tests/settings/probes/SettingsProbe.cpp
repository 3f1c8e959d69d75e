// The settings as the panel app keeps them, driven from the command line, for the tests that
// must run as another user: root reads any file, and a missing HOME is best tried apart.
//   lumetra_settings_probe [separator=RAW | chmod=OCTAL | wait=MS | await-reload]...
// Prints "path=<settings file>" first and "separator=<raw value>" after every step; the
// settings' log lines go to stderr, one per line.
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <cstdio>

#include <sys/stat.h>

using namespace lumetra;

namespace {

bool step(const QString& argument, UserDefaults& defaults, SettingsStore& store) {
    if (argument.startsWith(QLatin1StringView("separator="))) {
        const auto value = fromRaw<MenuBarSeparator>(QStringView(argument).sliced(10));
        if (!value)
            return false;
        store.setSeparator(*value);
        return true;
    }
    if (argument.startsWith(QLatin1StringView("chmod="))) {
        bool ok = false;
        const uint mode = argument.sliced(6).toUInt(&ok, 8);
        return ok && ::chmod(QFile::encodeName(defaults.filePath()).constData(), mode_t(mode)) == 0;
    }
    if (argument.startsWith(QLatin1StringView("wait="))) {
        QEventLoop loop;
        QTimer::singleShot(argument.sliced(5).toInt(), &loop, &QEventLoop::quit);
        loop.exec();
        return true;
    }
    if (argument == QLatin1StringView("await-reload")) {
        QEventLoop loop;
        QObject::connect(&defaults, &UserDefaults::changedExternally, &loop, &QEventLoop::quit);
        QTimer::singleShot(5000, &loop, [&loop] { loop.exit(1); });
        return loop.exec() == 0;
    }
    return false;
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    qSetMessagePattern(QStringLiteral("%{message}"));
    UserDefaults defaults(UserDefaults::standardFilePath());
    SettingsStore store(defaults);
    std::printf("path=%s\n", qPrintable(defaults.filePath()));
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    for (const QString& argument : arguments) {
        if (!step(argument, defaults, store)) {
            std::printf("failed=%s\n", qPrintable(argument));
            return 1;
        }
        const std::string_view raw = rawValue(store.separator());
        std::printf("separator=%.*s\n", int(raw.size()), raw.data());
    }
    return 0;
}
