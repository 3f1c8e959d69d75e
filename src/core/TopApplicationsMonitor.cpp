#include "core/TopApplicationsMonitor.h"

#include "samplers/process/ProcessTable.h"

#include <QLocale>
#include <QThread>
#include <QTimer>

#include <cmath>
#include <csignal>

namespace lumetra {

namespace {

// The first CPU figures come this soon after the list opens, instead of a whole interval,
// and before the terminal mode's first line (one interval after its start).
double firstInterval(double interval) {
    return std::min(0.5, interval / 2);
}

std::chrono::milliseconds milliseconds(double seconds) {
    if (!std::isfinite(seconds) || seconds <= 0)
        return std::chrono::milliseconds(0);
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}

} // namespace

class TopApplicationsWorker : public QObject {
public:
    using Deliver = std::function<void(TopApplications, std::uint64_t)>;

    TopApplicationsWorker(std::shared_ptr<ProcessTable> table, double interval, int keep,
                          Deliver deliver)
        : table_(std::move(table)), interval_(interval), keep_(keep), deliver_(std::move(deliver)) {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        connect(&timer_, &QTimer::timeout, this, &TopApplicationsWorker::tick);
    }

    void start(std::uint64_t generation) {
        generation_ = generation;
        running_ = true;
        first_ = true;
        tick();
    }

    void stop() {
        running_ = false;
        timer_.stop();
        table_->forgetBaseline();
    }

    void setInterval(double seconds) { interval_ = seconds; }
    void setKeep(int keep) { keep_ = keep; }

private:
    void tick() {
        if (!running_)
            return;
        deliver_(table_->refresh(keep_), generation_);
        timer_.start(milliseconds(first_ ? firstInterval(interval_) : interval_));
        first_ = false;
    }

    std::shared_ptr<ProcessTable> table_;
    double interval_;
    int keep_;
    Deliver deliver_;
    QTimer timer_{this};
    bool running_ = false;
    bool first_ = true;
    std::uint64_t generation_ = 0;
};

TopApplicationsMonitor::TopApplicationsMonitor(std::shared_ptr<ProcessTable> table, QThread* thread,
                                               double updateInterval, int keep, QObject* parent)
    : QObject(parent), thread_(thread) {
    QPointer<TopApplicationsMonitor> self(this);
    worker_ = new TopApplicationsWorker(std::move(table), updateInterval, keep,
                                        [self](TopApplications top, std::uint64_t generation) {
                                            QMetaObject::invokeMethod(
                                                self.data(),
                                                [self, top = std::move(top), generation] {
                                                    if (self)
                                                        self->publish(top, generation);
                                                },
                                                Qt::QueuedConnection);
                                        });
    worker_->moveToThread(thread_);
}

TopApplicationsMonitor::~TopApplicationsMonitor() {
    // The worker's timer belongs to the monitoring thread, so it is deleted there.
    if (thread_->isRunning() && QThread::currentThread() != thread_)
        QMetaObject::invokeMethod(
            worker_, [worker = worker_] { delete worker; }, Qt::BlockingQueuedConnection);
    else
        delete worker_;
}

void TopApplicationsMonitor::beginWatching() {
    if (watchers_++ > 0)
        return;
    const std::uint64_t generation = ++generation_;
    QMetaObject::invokeMethod(worker_,
                              [worker = worker_, generation] { worker->start(generation); });
    emit watchingChanged();
}

void TopApplicationsMonitor::endWatching() {
    if (watchers_ == 0 || --watchers_ > 0)
        return;
    ++generation_;
    QMetaObject::invokeMethod(worker_, [worker = worker_] { worker->stop(); });
    // What was read is stale from now on; a new watch starts from an empty list.
    if (!(top_ == TopApplications{})) {
        top_ = {};
        emit topApplicationsChanged();
    }
    emit watchingChanged();
}

void TopApplicationsMonitor::setUpdateInterval(double seconds) {
    QMetaObject::invokeMethod(worker_,
                              [worker = worker_, seconds] { worker->setInterval(seconds); });
}

void TopApplicationsMonitor::setKeep(int keep) {
    QMetaObject::invokeMethod(worker_, [worker = worker_, keep] { worker->setKeep(keep); });
}

void TopApplicationsMonitor::publish(const TopApplications& top, std::uint64_t generation) {
    if (generation != generation_ || watchers_ == 0 || top == top_)
        return;
    top_ = top;
    emit topApplicationsChanged();
}

StopOutcome TopApplicationsMonitor::stopApplication(const TopApplication& application,
                                                    bool force) const {
    return signaller_.send(application.processes, force ? SIGKILL : SIGTERM);
}

std::shared_ptr<ProcessTable> liveProcessTable(const KernelRoots& roots) {
    return std::make_shared<ProcessTable>(
        roots, DesktopEntries(DesktopEntries::xdgDataDirs(), QLocale().name().toStdString()));
}

} // namespace lumetra
