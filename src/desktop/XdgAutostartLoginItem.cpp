#include "desktop/XdgAutostartLoginItem.h"

#include "model/AppId.h"
#include "model/XdgConfigHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace lumetra {

namespace {

QString quotedExec(const QString& path) {
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    bool needsQuotes = false;
    for (QChar c : path)
        needsQuotes = needsQuotes || reserved.contains(c);
    if (!needsQuotes)
        return path;
    QString quoted = path;
    // Inside quotes the backslash, quote, backtick and dollar are escaped; the desktop-entry
    // string escape doubles the backslashes once more.
    quoted.replace(u'\\', QStringLiteral("\\\\\\\\"));
    quoted.replace(u'"', QStringLiteral("\\\\\""));
    quoted.replace(u'`', QStringLiteral("\\\\`"));
    quoted.replace(u'$', QStringLiteral("\\\\$"));
    return u'"' + quoted + u'"';
}

} // namespace

XdgAutostartLoginItem::XdgAutostartLoginItem(QString autostartDirectory, QString executable)
    : directory_(autostartDirectory.isEmpty() ? standardDirectory()
                                              : std::move(autostartDirectory)),
      executable_(std::move(executable)) {}

QString XdgAutostartLoginItem::standardDirectory() {
    // The settings' rule: without HOME, never "//.config/autostart".
    const QString configHome = currentXdgConfigHome();
    return configHome.isEmpty() ? QString() : configHome + QStringLiteral("/autostart");
}

QString XdgAutostartLoginItem::filePath() const {
    return directory_ + u'/' + QString::fromLatin1(kAppId) + QStringLiteral(".desktop");
}

bool XdgAutostartLoginItem::isEnabled() const {
    if (directory_.isEmpty())
        return false;
    QFile file(filePath());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    // An entry is hidden by `Hidden=true` in its [Desktop Entry] group; other groups
    // (actions) do not count. Small file: read it whole.
    bool inEntryGroup = false;
    const QList<QByteArray> lines = file.read(64 * 1024).split('\n');
    for (const QByteArray& raw : lines) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[')) {
            inEntryGroup = line == "[Desktop Entry]";
            continue;
        }
        if (!inEntryGroup)
            continue;
        const qsizetype equals = line.indexOf('=');
        if (equals < 0)
            continue;
        if (line.left(equals).trimmed() == "Hidden" && line.mid(equals + 1).trimmed() == "true")
            return false;
    }
    return true;
}

QByteArray XdgAutostartLoginItem::entryText(const QString& executable) {
    QByteArray text;
    text += "[Desktop Entry]\n";
    text += "Type=Application\n";
    text += "Name=Lumetra\n";
    text += "Comment=A lightweight system monitor that lives in your menu bar.\n";
    text += "Exec=" + quotedExec(executable).toUtf8() + '\n';
    // A removed binary leaves the entry behind; the session then skips it quietly.
    text += "TryExec=" + executable.toUtf8() + '\n';
    text += "Icon=" + QByteArray(kAppId) + '\n';
    text += "Terminal=false\n";
    text += "X-GNOME-Autostart-enabled=true\n";
    return text;
}

std::optional<QString> XdgAutostartLoginItem::registerItem() {
    if (directory_.isEmpty())
        return QStringLiteral("No folder for the autostart entry: XDG_CONFIG_HOME and HOME are "
                              "not set and the password database names no home directory");
    if (!QDir().mkpath(directory_))
        return QStringLiteral("%1: cannot create the folder").arg(directory_);
    const QString executable =
        executable_.isEmpty() ? QCoreApplication::applicationFilePath() : executable_;
    QSaveFile file(filePath());
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("%1: %2").arg(filePath(), file.errorString());
    file.write(entryText(executable));
    if (!file.commit())
        return QStringLiteral("%1: %2").arg(filePath(), file.errorString());
    return std::nullopt;
}

std::optional<QString> XdgAutostartLoginItem::unregisterItem() {
    if (directory_.isEmpty())
        return std::nullopt;
    QFile file(filePath());
    if (!file.exists())
        return std::nullopt;
    if (!file.remove())
        return QStringLiteral("%1: %2").arg(filePath(), file.errorString());
    return std::nullopt;
}

} // namespace lumetra
