#pragma once

#include "settings/SettingsFileFormat.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>

// Readable test failures for the settings' texts.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace lumetra::testing {

inline QByteArray readFile(const QString& path) {
    QFile in(path);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

// Replaces `path` with `bytes`.
inline void writeFile(const QString& path, const QByteArray& bytes) {
    QFile out(path);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    out.write(bytes);
}

inline QVariantMap parsed(QByteArrayView text) {
    return SettingsFileFormat::parse(text).domain.value();
}

// A settings file in a temporary $XDG_CONFIG_HOME/lumetra, holding `bytes` (none: no file).
struct SettingsFolder {
    explicit SettingsFolder(const QByteArray& bytes = {}) {
        if (!bytes.isNull())
            write(bytes);
    }
    QString directory() const { return dir.path() + QStringLiteral("/lumetra"); }
    QString file() const { return directory() + QStringLiteral("/settings.json"); }
    QByteArray bytes() const { return readFile(file()); }
    void write(const QByteArray& bytes) const {
        QDir().mkpath(directory());
        writeFile(file(), bytes);
    }
    // The file parsed with the typed encoding.
    QVariantMap domain() const { return parsed(bytes()); }
    // Everything in the directory except the settings file itself.
    QStringList others() const {
        QStringList names = QDir(directory()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        names.removeAll(QStringLiteral("settings.json"));
        return names;
    }
    QTemporaryDir dir;
};

// A store loaded from such a file.
struct LoadedStore : SettingsFolder {
    explicit LoadedStore(const QByteArray& bytes = {}) : SettingsFolder(bytes) {}
    UserDefaults defaults{file()};
    SettingsStore store{defaults};
};

} // namespace lumetra::testing
