#pragma once

#include "samplers/kernel/KernelRoots.h"

#include <QObject>
#include <QTimer>

class QFileSystemWatcher;
class QSocketNotifier;

namespace lumetra {

// Tells when a file system was mounted, unmounted or relabelled. The kernel marks the
// mount table as changed with POLLPRI (every mount, unmount and remount); labels show up as
// udev's /dev/disk/by-label links, watched with inotify. A burst of changes (a desktop
// session starting its snaps) is reported once.
class MountWatcher : public QObject {
    Q_OBJECT
public:
    explicit MountWatcher(const KernelRoots& roots = KernelRoots(), QObject* parent = nullptr);
    ~MountWatcher() override;

    // Whether the mount table is being watched (a saved tree's file never changes).
    bool isWatchingMounts() const { return mountTableFd_ >= 0; }

signals:
    void mountsChanged();

private:
    void watchLabels();
    void noteChange();

    KernelRoots roots_;
    int mountTableFd_ = -1;
    QSocketNotifier* mountNotifier_ = nullptr;
    QFileSystemWatcher* labelWatcher_ = nullptr;
    QTimer coalesce_;
};

} // namespace lumetra
