#pragma once

#include "model/TopApplications.h"
#include "samplers/process/ProcessSignaller.h"

#include <QObject>
#include <QPointer>

#include <memory>

class QThread;

namespace lumetra {

class KernelRoots;
class ProcessTable;
class TopApplicationsWorker;

// The applications and processes using the machine, for the dashboard's list and --top.
// Reading every process is not free, so it happens only while someone watches (a counted
// beginWatching()/endWatching()), at the update interval, on the monitoring thread; with
// nobody watching, no process file is opened at all. Lives on the main thread.
class TopApplicationsMonitor : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        lumetra::TopApplications topApplications READ topApplications NOTIFY topApplicationsChanged)
    Q_PROPERTY(bool watching READ isWatching NOTIFY watchingChanged)

public:
    // `thread` is the monitoring thread (running for the monitor's life); `keep` how many
    // leaders by CPU and by memory each reading holds.
    TopApplicationsMonitor(std::shared_ptr<ProcessTable> table, QThread* thread,
                           double updateInterval, int keep = 5, QObject* parent = nullptr);
    ~TopApplicationsMonitor() override;

    const TopApplications& topApplications() const { return top_; }
    bool isWatching() const { return watchers_ > 0; }

    void beginWatching();
    void endWatching();
    void setUpdateInterval(double seconds);
    void setKeep(int keep);

    // SIGTERM (or SIGKILL when `force`) to every process of the group that is still the one
    // listed and the user's own.
    StopOutcome stopApplication(const TopApplication& application, bool force) const;

signals:
    void topApplicationsChanged();
    void watchingChanged();

private:
    void publish(const TopApplications& top, std::uint64_t generation);

    QThread* thread_;
    TopApplicationsWorker* worker_; // lives on thread_
    ProcessSignaller signaller_;
    TopApplications top_;
    int watchers_ = 0;
    std::uint64_t generation_ = 0; // readings of an earlier watch are dropped
};

// The process table of the live machine (or a root's), with the desktop entries of the
// user's XDG data directories, named in the user's language.
std::shared_ptr<ProcessTable> liveProcessTable(const KernelRoots& roots);

} // namespace lumetra
