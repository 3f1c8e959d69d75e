#include "samplers/disk/MountWatcher.h"

#include "model/Logging.h"

#include <QDir>
#include <QFileSystemWatcher>
#include <QSocketNotifier>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace lumetra {

namespace {

constexpr int kCoalesceMilliseconds = 100;

} // namespace

MountWatcher::MountWatcher(const KernelRoots& roots, QObject* parent)
    : QObject(parent), roots_(roots) {
    coalesce_.setSingleShot(true);
    coalesce_.setInterval(kCoalesceMilliseconds);
    connect(&coalesce_, &QTimer::timeout, this, &MountWatcher::mountsChanged);

    const std::string path = roots_.mountTable();
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct statfs info {};
    if (fd < 0) {
        qCWarning(logMonitoring, "Cannot watch mounts: %s: %s", path.c_str(), std::strerror(errno));
    } else if (::fstatfs(fd, &info) != 0 || info.f_type != PROC_SUPER_MAGIC) {
        // Only the kernel's own table signals changes; a saved copy is read as it is.
        ::close(fd);
    } else {
        mountTableFd_ = fd;
        mountNotifier_ = new QSocketNotifier(fd, QSocketNotifier::Exception, this);
        connect(mountNotifier_, &QSocketNotifier::activated, this, &MountWatcher::noteChange);
    }

    labelWatcher_ = new QFileSystemWatcher(this);
    connect(labelWatcher_, &QFileSystemWatcher::directoryChanged, this, [this] {
        watchLabels(); // by-label may just have been created or removed
        noteChange();
    });
    watchLabels();
}

MountWatcher::~MountWatcher() {
    delete mountNotifier_;
    if (mountTableFd_ >= 0)
        ::close(mountTableFd_);
}

// udev creates /dev/disk/by-label with the first labelled disk and may remove it with the
// last, so its parent is watched while it is missing.
void MountWatcher::watchLabels() {
    const QString labels = QString::fromStdString(roots_.at("dev/disk/by-label"));
    const QString disks = QString::fromStdString(roots_.at("dev/disk"));
    const QString wanted = QDir(labels).exists() ? labels : disks;
    const QStringList watched = labelWatcher_->directories();
    if (watched.size() == 1 && watched.front() == wanted)
        return;
    if (!watched.isEmpty())
        labelWatcher_->removePaths(watched);
    if (QDir(wanted).exists())
        labelWatcher_->addPath(wanted);
}

void MountWatcher::noteChange() {
    if (!coalesce_.isActive())
        coalesce_.start();
}

} // namespace lumetra
