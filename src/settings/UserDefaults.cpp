#include "settings/UserDefaults.h"

#include "model/LogOnce.h"
#include "model/Logging.h"
#include "model/XdgConfigHome.h"
#include "settings/AtomicFileWriter.h"
#include "settings/SettingsFileFormat.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>

#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumetra {

namespace {

// Far above any settings file; a bigger one is not ours and is moved aside unread.
constexpr qint64 kMaxFileSize = 4 * 1024 * 1024;

// The application replaces the file with a rename and may touch its directory several times
// in a row; one reload after the burst is enough.
constexpr int kReloadDelayMs = 50;

QString systemError(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

// The home directory the password database names for this user, when it exists: system
// users without one are given "/nonexistent", which nobody should create.
} // namespace

UserDefaults::UserDefaults(QString filePath, Access access, QObject* parent)
    : QObject(parent), filePath_(std::move(filePath)), access_(access) {
    load();
    // Both modes follow the file: the terminal mode to pick up the application's changes,
    // the application to pick up the user's hand edits.
    if (!filePath_.isEmpty()) {
        reloadTimer_.setSingleShot(true);
        reloadTimer_.setInterval(kReloadDelayMs);
        connect(&reloadTimer_, &QTimer::timeout, this, &UserDefaults::reloadFromDisk);
        watcher_ = new QFileSystemWatcher(this);
        connect(watcher_, &QFileSystemWatcher::fileChanged, &reloadTimer_,
                qOverload<>(&QTimer::start));
        connect(watcher_, &QFileSystemWatcher::directoryChanged, &reloadTimer_,
                qOverload<>(&QTimer::start));
        watch();
    }
}

UserDefaults::~UserDefaults() = default;

QString UserDefaults::standardFilePath() {
    const QString folder = currentXdgConfigHome();
    if (folder.isEmpty()) {
        static LogOnce noFolder;
        if (noFolder.failed())
            qCWarning(logSettings,
                      "No folder for the settings: XDG_CONFIG_HOME and HOME are not set and the "
                      "password database names no home directory; running on the defaults "
                      "without saving");
        return {};
    }
    return folder + QLatin1StringView("/lumetra/settings.json");
}

UserDefaults::FileProblem UserDefaults::readFile(QByteArray& bytes, QString& error) const {
    bytes.clear();
    const QByteArray path = QFile::encodeName(filePath_);
    struct stat info {};
    if (::stat(path.constData(), &info) != 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return FileProblem::missing;
        error = systemError(errno); // a folder on the way we may not enter
        return FileProblem::unreadable;
    }
    if (S_ISDIR(info.st_mode)) {
        error = QStringLiteral("it is a directory");
        return FileProblem::unusable;
    }
    if (!S_ISREG(info.st_mode)) {
        error = QStringLiteral("it is not a regular file");
        return FileProblem::unusable;
    }
    // Non-blocking, so a pipe put in its place since the check cannot stall the start.
    const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) {
        if (errno == ENOENT)
            return FileProblem::missing;
        error = systemError(errno);
        return FileProblem::unreadable;
    }
    // Read to the end in chunks with a cap: the size a file reports can change while we read
    // it, and reserving the cap at once would allocate all of it every time.
    char chunk[16 * 1024];
    while (true) {
        const ssize_t count = ::read(fd, chunk, sizeof chunk);
        if (count < 0) {
            if (errno == EINTR)
                continue;
            error = systemError(errno);
            ::close(fd);
            return FileProblem::unreadable;
        }
        if (count == 0)
            break;
        bytes.append(chunk, count);
        if (bytes.size() > kMaxFileSize) {
            error = QStringLiteral("it is larger than %1 bytes").arg(kMaxFileSize);
            ::close(fd);
            return FileProblem::unusable;
        }
    }
    ::close(fd);
    return FileProblem::none;
}

void UserDefaults::load() {
    if (filePath_.isEmpty())
        return;
    QByteArray bytes;
    QString error;
    switch (readFile(bytes, error)) {
    case FileProblem::missing:
        return;
    case FileProblem::unreadable:
        unreadable_ = true;
        if (access_ == Access::readOnly)
            qCWarning(logSettings, "Settings file %s cannot be read (%s); using the defaults",
                      qUtf8Printable(filePath_), qUtf8Printable(error));
        else
            qCWarning(logSettings,
                      "Settings file %s cannot be read (%s); running on the defaults and not "
                      "saving over it until it can be read again",
                      qUtf8Printable(filePath_), qUtf8Printable(error));
        return;
    case FileProblem::none: {
        SettingsFileFormat::Parsed parsed = SettingsFileFormat::parse(bytes);
        if (parsed.domain) {
            domain_ = std::move(*parsed.domain);
            lastBytes_ = bytes;
            return;
        }
        error = parsed.error;
        break;
    }
    case FileProblem::unusable:
        break;
    }
    if (access_ == Access::readOnly) {
        qCWarning(logSettings, "Settings file %s cannot be used (%s); using the defaults",
                  qUtf8Printable(filePath_), qUtf8Printable(error));
        reloadFailed_ = true;
        lastBytes_ = bytes;
        return;
    }
    moveAside(error);
}

void UserDefaults::moveAside(const QString& reason) {
    const QString stamp =
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    QString target = filePath_ + QLatin1StringView(".corrupt-") + stamp;
    for (int attempt = 2; QFileInfo::exists(target) || QFileInfo(target).isSymLink(); ++attempt)
        target =
            filePath_ + QLatin1StringView(".corrupt-") + stamp + '-' + QString::number(attempt);
    // A rename keeps the old file byte for byte (and works for a directory in the way too).
    if (QDir().rename(filePath_, target)) {
        qCWarning(logSettings,
                  "Settings file %s could not be read (%s); moved it to %s and loaded the "
                  "defaults",
                  qUtf8Printable(filePath_), qUtf8Printable(reason), qUtf8Printable(target));
        return;
    }
    // Saving would replace a file we could not keep: leave it alone and keep changes in memory.
    writable_ = false;
    qCWarning(logSettings,
              "Settings file %s could not be read (%s) nor moved aside; loaded the defaults "
              "and will not save changes",
              qUtf8Printable(filePath_), qUtf8Printable(reason));
}

void UserDefaults::keepBrokenEditAside() {
    // The user's unreadable edit is about to be replaced: keep it beside the file.
    reloadFailed_ = false;
    const QString target = filePath_ + QLatin1StringView(".unreadable-edit");
    QFile::remove(target);
    if (QFile::rename(filePath_, target))
        qCWarning(logSettings, "Kept the unreadable edit of %s as %s before saving",
                  qUtf8Printable(filePath_), qUtf8Printable(target));
}

void UserDefaults::setValue(const QString& key, const QVariant& value) {
    if (!value.isValid()) {
        remove(key);
        return;
    }
    const std::optional<QVariant> normal = SettingsFileFormat::normalized(value);
    if (!normal) {
        qCWarning(logSettings,
                  "Not storing \"%s\": a %s value cannot be saved in the settings file",
                  qUtf8Printable(key), value.typeName() ? value.typeName() : "null");
        return;
    }
    domain_.insert(key, *normal);
    markDirty();
    emit stored(key);
}

void UserDefaults::remove(const QString& key) {
    domain_.remove(key);
    markDirty();
    emit stored(key);
}

void UserDefaults::markDirty() {
    if (batchDepth_ > 0) {
        dirty_ = true;
        return;
    }
    save();
}

void UserDefaults::save() {
    // A file we cannot read may hold everything the user set: never replace it blindly.
    if (filePath_.isEmpty() || access_ == Access::readOnly || !writable_ || unreadable_)
        return;
    if (reloadFailed_)
        keepBrokenEditAside();
    const QByteArray bytes = SettingsFileFormat::serialize(domain_);
    // Written beside the file and renamed over it only once all of it is on the disk, so
    // neither a reader nor a full disk ever leaves less than the old file.
    const AtomicFileWriter::Result result = AtomicFileWriter::write(filePath_, bytes);
    if (!result.ok()) {
        if (!saveFailed_) {
            qCWarning(logSettings,
                      "Could not save settings: %s (%s); keeping them in memory and trying again "
                      "at the next change",
                      qUtf8Printable(result.reason()), qUtf8Printable(filePath_));
        }
        saveFailed_ = true;
        return;
    }
    if (saveFailed_)
        qCInfo(logSettings, "Settings saved to %s again", qUtf8Printable(filePath_));
    saveFailed_ = false;
    lastBytes_ = bytes;
}

UserDefaults::Batch::Batch(UserDefaults& defaults) : defaults_(defaults) {
    ++defaults_.batchDepth_;
}

UserDefaults::Batch::~Batch() {
    if (--defaults_.batchDepth_ == 0 && defaults_.dirty_) {
        defaults_.dirty_ = false;
        defaults_.save();
    }
}

void UserDefaults::watch() {
    // The file itself is replaced by a rename (a new inode each time), so its directory is
    // watched as well; until the directory exists, its parent is.
    const QFileInfo file(filePath_);
    const QString directory = file.path();
    QStringList wanted;
    if (file.exists())
        wanted << filePath_;
    if (QFileInfo(directory).isDir())
        wanted << directory;
    else if (QFileInfo(QFileInfo(directory).path()).isDir())
        wanted << QFileInfo(directory).path();
    const QStringList watched = watcher_->files() + watcher_->directories();
    QStringList stale;
    for (const QString& path : watched) {
        if (!wanted.contains(path))
            stale << path;
    }
    if (!stale.isEmpty())
        watcher_->removePaths(stale);
    QStringList fresh;
    for (const QString& path : wanted) {
        if (!watched.contains(path))
            fresh << path;
    }
    if (!fresh.isEmpty())
        watcher_->addPaths(fresh);
}

void UserDefaults::reloadFromDisk() {
    watch();
    QVariantMap fresh;
    QByteArray bytes;
    QString error;
    const FileProblem problem = readFile(bytes, error);
    if (problem == FileProblem::unreadable) {
        if (!unreadable_)
            qCWarning(logSettings,
                      "Settings file %s cannot be read any more (%s); keeping the settings in "
                      "memory and not saving over it until it can be read again",
                      qUtf8Printable(filePath_), qUtf8Printable(error));
        unreadable_ = true;
        return;
    }
    // Readable again (or gone): whatever it holds now replaces what ran in memory.
    const bool wasUnreadable = std::exchange(unreadable_, false);
    if (wasUnreadable)
        qCInfo(logSettings, "Settings file %s can be read again", qUtf8Printable(filePath_));
    if (problem != FileProblem::missing) {
        if (problem == FileProblem::none) {
            if (bytes == lastBytes_ && !wasUnreadable)
                return;
            SettingsFileFormat::Parsed parsed = SettingsFileFormat::parse(bytes);
            if (parsed.domain)
                fresh = std::move(*parsed.domain);
            else
                error = parsed.error;
        }
        if (!error.isEmpty()) {
            // Keep what we have: the application may be about to replace the file.
            if (!reloadFailed_) {
                qCWarning(logSettings,
                          "Settings file %s cannot be used (%s); keeping the settings "
                          "read before",
                          qUtf8Printable(filePath_), qUtf8Printable(error));
            }
            reloadFailed_ = true;
            lastBytes_ = bytes;
            return;
        }
    }
    reloadFailed_ = false;
    lastBytes_ = bytes;
    if (SettingsFileFormat::identical(domain_, fresh))
        return;
    domain_ = std::move(fresh);
    emit changedExternally();
}

} // namespace lumetra
