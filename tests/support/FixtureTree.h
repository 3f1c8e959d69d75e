#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <string>

namespace lumetra::testing {

// The fixture trees of real machines under tests/fixtures/<machine>.
inline std::string fixtureRoot(const std::string& machine) {
    return std::string(LUMETRA_FIXTURES_DIR) + "/" + machine;
}

// A scratch root the test fills with the files it needs; removed with the object.
class ScratchTree {
public:
    ScratchTree() { dir_.setAutoRemove(true); }

    std::string root() const { return dir_.path().toStdString(); }

    std::string path(const QString& relative) const {
        return (dir_.path() + '/' + relative).toStdString();
    }

    void write(const QString& relative, const QByteArray& content) const {
        const QString full = dir_.path() + '/' + relative;
        QDir().mkpath(QFileInfo(full).path());
        QFile file(full);
        file.open(QIODevice::WriteOnly | QIODevice::Truncate);
        file.write(content);
    }

    // Writes a new file beside the old one and renames it over it, as atomic writers do.
    void replace(const QString& relative, const QByteArray& content) const {
        write(relative + ".new", content);
        QFile::remove(dir_.path() + '/' + relative);
        QFile::rename(dir_.path() + '/' + relative + ".new", dir_.path() + '/' + relative);
    }

    void makeDirectory(const QString& relative) const {
        QDir().mkpath(dir_.path() + '/' + relative);
    }

    void remove(const QString& relative) const { QFile::remove(dir_.path() + '/' + relative); }

private:
    QTemporaryDir dir_;
};

} // namespace lumetra::testing
