#pragma once

#include "settings/SettingsFileFormat.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <ostream>

// Readable test failures for the settings' texts.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace lumetra::testing {

// A settings directory in a temporary folder, laid out as $XDG_CONFIG_HOME/lumetra.
class SettingsDir {
public:
    QString root() const { return dir_.path(); }
    QString directory() const { return dir_.path() + QStringLiteral("/lumetra"); }
    QString file() const { return directory() + QStringLiteral("/settings.json"); }

    void write(const QByteArray& bytes) const {
        QDir().mkpath(directory());
        QFile out(file());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(bytes);
    }

    void copyFixture(const QString& name) const { write(fixture(name)); }

    static QByteArray fixture(const QString& name) {
        QFile in(QStringLiteral(LUMETRA_FIXTURES_DIR "/settings/") + name);
        EXPECT_TRUE(in.open(QIODevice::ReadOnly)) << name.toStdString();
        return in.readAll();
    }

    QByteArray bytes() const {
        QFile in(file());
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

    // The file as it stands on disk, parsed with the typed encoding.
    QVariantMap domain() const {
        const auto parsed = SettingsFileFormat::parse(bytes());
        EXPECT_TRUE(parsed.domain.has_value()) << parsed.error.toStdString();
        return parsed.domain.value_or(QVariantMap());
    }

    // Everything in the directory except the settings file itself.
    QStringList others() const {
        QStringList names = QDir(directory()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        names.removeAll(QStringLiteral("settings.json"));
        return names;
    }

private:
    QTemporaryDir dir_;
};

// Collects the messages of the settings log category while it lives.
class SettingsLog {
public:
    SettingsLog();
    ~SettingsLog();
    QStringList lines() const { return lines_; }

private:
    static void handler(QtMsgType type, const QMessageLogContext& context, const QString& text);
    static SettingsLog* current_;
    QtMessageHandler previous_;
    QStringList lines_;
};

} // namespace lumetra::testing
