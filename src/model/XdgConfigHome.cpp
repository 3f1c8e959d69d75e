#include "model/XdgConfigHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

#include <vector>

namespace lumetra {

namespace {

QString accountHome() {
    long size = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? std::size_t(size) : 16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found ||
        !found->pw_dir)
        return {};
    const QString home = QFile::decodeName(found->pw_dir);
    return QFileInfo(home).isDir() ? home : QString();
}

} // namespace

QString xdgConfigHome(const QString& xdgConfigHome, const QString& home,
                      const QString& accountHome) {
    // The base directory specification ignores relative paths; HOME is held to the same.
    if (QDir::isAbsolutePath(xdgConfigHome))
        return QDir::cleanPath(xdgConfigHome);
    for (const QString& base : {home, accountHome}) {
        if (QDir::isAbsolutePath(base))
            return QDir::cleanPath(base + QLatin1StringView("/.config"));
    }
    return {};
}

QString currentXdgConfigHome() {
    const QString home = qEnvironmentVariable("HOME");
    return xdgConfigHome(qEnvironmentVariable("XDG_CONFIG_HOME"), home,
                         QDir::isAbsolutePath(home) ? QString() : accountHome());
}

} // namespace lumetra
