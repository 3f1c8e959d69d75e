#include "core/MonitoringScheduler.h"

#include "model/AppId.h"

#include <QBasicTimer>
#include <QTimerEvent>

#include <cmath>
#include <mutex>

namespace lumetra {

namespace {

// Seconds → whole nanoseconds (truncating), then the timer's milliseconds.
std::chrono::milliseconds sleepFor(double seconds) {
    if (!std::isfinite(seconds) || seconds <= 0)
        return std::chrono::milliseconds(0);
    const auto nanoseconds = static_cast<std::uint64_t>(seconds * 1e9);
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::nanoseconds(nanoseconds));
}

} // namespace

// A way back to the worker for jobs finishing on other threads (thermal, disk). The worker
// clears it when it goes, so a late job finds nobody instead of a dangling pointer.
struct WorkerChannel {
    std::mutex mutex;
    SchedulerWorker* worker = nullptr;

    template <typename Function>
    void post(Function function);
};

class SchedulerWorker : public QObject {
public:
    SchedulerWorker(MonitoringProviders providers, double updateInterval,
                    double temperatureInterval)
        : providers_(std::move(providers)), updateInterval_(updateInterval),
          temperatureInterval_(temperatureInterval),
          fastSampler_({providers_.cpu, providers_.memory, providers_.network, providers_.diskIO}),
          diskExecutor_(QString::fromLatin1(kAppId) + ".disks"),
          channel_(std::make_shared<WorkerChannel>()) {
        channel_->worker = this;
    }

    ~SchedulerWorker() override {
        std::lock_guard guard(channel_->mutex);
        channel_->worker = nullptr;
    }

    void setSink(MetricsSink* sink) { sink_ = sink; }
    void setUpdateInterval(double seconds) { updateInterval_ = seconds; }
    void setTemperatureInterval(double seconds) { temperatureInterval_ = seconds; }
    void setReadings(FastReadings readings) { fastSampler_.setReadings(readings); }

    void start() {
        if (running_)
            return;
        running_ = true;
        ++generation_;
        fastTick();
        slowTick();
    }

    void stop() {
        running_ = false;
        ++generation_; // children of a slow tick still in flight will not re-arm the loop
        fastTimer_.stop();
        slowTimer_.stop();
    }

    void refreshDiskVolumes() {
        if (providers_.disk)
            startDiskChild(std::nullopt);
    }

protected:
    void timerEvent(QTimerEvent* event) override {
        if (event->timerId() == fastTimer_.timerId()) {
            fastTimer_.stop();
            fastTick();
        } else if (event->timerId() == slowTimer_.timerId()) {
            slowTimer_.stop();
            slowTick();
        } else {
            QObject::timerEvent(event);
        }
    }

private:
    void fastTick() {
        if (!running_)
            return;
        FastSample sample = fastSampler_.sample();
        deliver([sample = std::move(sample)](MetricsSink& sink) { sink.applyFastSample(sample); });
        // A sink on this thread may have stopped the loop from inside the delivery.
        if (running_)
            fastTimer_.start(int(sleepFor(updateInterval_).count()), Qt::PreciseTimer, this);
    }

    void slowTick() {
        if (!running_)
            return;
        pendingSlowChildren_ = providers_.disk ? 2 : 1;
        const std::uint64_t generation = generation_;
        startThermalChild(generation);
        if (providers_.disk)
            startDiskChild(generation);
    }

    void startThermalChild(std::uint64_t generation) {
        providers_.thermal->requestReading([channel = channel_,
                                            generation](const TemperatureReading& reading) {
            channel->post([reading, generation](SchedulerWorker& worker) {
                worker.deliver([reading](MetricsSink& sink) { sink.applyThermalReading(reading); });
                worker.slowChildDone(generation);
            });
        });
    }

    // `generation` is absent for a refresh outside the loop.
    void startDiskChild(std::optional<std::uint64_t> generation) {
        diskExecutor_.post([disk = providers_.disk, channel = channel_, generation] {
            DiskVolumeList volumes = disk->currentVolumes();
            channel->post([volumes = std::move(volumes), generation](SchedulerWorker& worker) {
                worker.deliver([volumes](MetricsSink& sink) { sink.applyDiskVolumes(volumes); });
                if (generation)
                    worker.slowChildDone(*generation);
            });
        });
    }

    void slowChildDone(std::uint64_t generation) {
        if (!running_ || generation != generation_)
            return;
        if (--pendingSlowChildren_ == 0)
            slowTimer_.start(int(sleepFor(temperatureInterval_).count()), Qt::PreciseTimer, this);
    }

    // Hands a call to the sink on its own thread (at once when that is this one); without a
    // sink the result is dropped.
    template <typename Call>
    void deliver(Call call) {
        if (!sink_)
            return;
        if (sink_->thread() == QThread::currentThread()) {
            call(*sink_);
            return;
        }
        QMetaObject::invokeMethod(
            sink_.data(), [sink = sink_, call = std::move(call)] { call(*sink); },
            Qt::QueuedConnection);
    }

    MonitoringProviders providers_;
    double updateInterval_;
    double temperatureInterval_;
    QPointer<MetricsSink> sink_;
    FastSampler fastSampler_; // keeps the counters' baselines across a stop
    bool running_ = false;
    std::uint64_t generation_ = 0;
    int pendingSlowChildren_ = 0;
    // Basic timers, single-shot by stopping them as they fire: a tick then costs one timer
    // event, without a signal in between. They belong to the worker's thread.
    QBasicTimer fastTimer_;
    QBasicTimer slowTimer_;
    SerialExecutor diskExecutor_;
    std::shared_ptr<WorkerChannel> channel_;
};

template <typename Function>
void WorkerChannel::post(Function function) {
    std::lock_guard guard(mutex);
    if (!worker)
        return;
    SchedulerWorker* target = worker;
    QMetaObject::invokeMethod(
        target, [target, function = std::move(function)] { function(*target); },
        Qt::QueuedConnection);
}

MonitoringScheduler::MonitoringScheduler(MonitoringProviders providers, double updateInterval,
                                         double temperatureInterval, SamplingThread thread)
    : worker_(new SchedulerWorker(std::move(providers), updateInterval, temperatureInterval)) {
    if (thread == SamplingThread::caller)
        return;
    thread_.setObjectName(QString::fromLatin1(kAppId) + ".scheduler");
    worker_->moveToThread(&thread_);
    thread_.start();
}

MonitoringScheduler::~MonitoringScheduler() {
    if (!thread_.isRunning()) {
        delete worker_; // it lives on this thread
        return;
    }
    // The worker's timers belong to its thread, so it is deleted there, then the thread ends.
    QMetaObject::invokeMethod(
        worker_, [worker = worker_] { delete worker; }, Qt::BlockingQueuedConnection);
    thread_.quit();
    thread_.wait();
}

void MonitoringScheduler::setSink(MetricsSink* sink) {
    QMetaObject::invokeMethod(worker_, [worker = worker_, sink] { worker->setSink(sink); });
}

void MonitoringScheduler::start() {
    QMetaObject::invokeMethod(worker_, [worker = worker_] { worker->start(); });
}

void MonitoringScheduler::stop() {
    QMetaObject::invokeMethod(worker_, [worker = worker_] { worker->stop(); });
}

void MonitoringScheduler::setUpdateInterval(double seconds) {
    QMetaObject::invokeMethod(worker_,
                              [worker = worker_, seconds] { worker->setUpdateInterval(seconds); });
}

void MonitoringScheduler::setTemperatureInterval(double seconds) {
    QMetaObject::invokeMethod(
        worker_, [worker = worker_, seconds] { worker->setTemperatureInterval(seconds); });
}

void MonitoringScheduler::setReadings(FastReadings readings) {
    QMetaObject::invokeMethod(worker_,
                              [worker = worker_, readings] { worker->setReadings(readings); });
}

void MonitoringScheduler::refreshDiskVolumes() {
    QMetaObject::invokeMethod(worker_, [worker = worker_] { worker->refreshDiskVolumes(); });
}

QThread* MonitoringScheduler::thread() const {
    return worker_->thread(); // the loops' own, or the caller's (SamplingThread::caller)
}

} // namespace lumetra
