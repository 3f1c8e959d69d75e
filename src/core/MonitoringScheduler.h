#pragma once

#include "core/FastSampler.h"
#include "core/MetricsSink.h"
#include "model/SerialExecutor.h"
#include "samplers/cpu/CPUProviding.h"
#include "samplers/disk/DiskProviding.h"
#include "samplers/memory/MemoryProviding.h"
#include "samplers/network/NetworkProviding.h"
#include "samplers/temperature/ThermalMonitor.h"

#include <QPointer>
#include <QThread>

#include <memory>

namespace lumetra {

class SchedulerWorker;

// Where the sampling loops run: on a thread of their own (the panel app, whose main thread
// draws), or on the thread that owns the scheduler (the terminal mode, whose main thread
// does nothing else: sampling there saves a thread hop on every tick).
enum class SamplingThread { own, caller };

// The providers a scheduler samples.
struct MonitoringProviders {
    std::shared_ptr<CPUProviding> cpu;
    std::shared_ptr<MemoryProviding> memory;
    std::shared_ptr<NetworkProviding> network;
    std::shared_ptr<ThermalMonitor> thermal;
    std::shared_ptr<DiskProviding> disk; // null: no disks are listed (a line that shows none)
    std::shared_ptr<DiskIOProviding> diskIO = nullptr; // null: no disk throughput
};

// Runs the two sampling loops on a thread of its own:
//  - the fast loop reads CPU, memory with pressure, network and disk throughput every update
//    interval;
//  - the slow loop reads temperature and disks every temperature interval, the two
//    concurrently (temperature on the thermal monitor's thread, disks on a disk thread).
// Each loop samples first, then sleeps the interval read at that moment, so the first values
// arrive at once and an interval change applies from the next sleep. Stopping cancels a
// sleeping loop at once and keeps the CPU and network baselines, so the first tick after a
// restart measures over the whole pause. Results reach the sink as values, on its thread.
//
// All public functions are called from the owner's thread and only post to the loop thread.
class MonitoringScheduler {
public:
    MonitoringScheduler(MonitoringProviders providers, double updateInterval,
                        double temperatureInterval, SamplingThread thread = SamplingThread::own);
    ~MonitoringScheduler(); // ends both loops and joins the thread
    MonitoringScheduler(const MonitoringScheduler&) = delete;
    MonitoringScheduler& operator=(const MonitoringScheduler&) = delete;

    // Held weakly: a sink that has gone silently discards results.
    void setSink(MetricsSink* sink);
    void start(); // idempotent
    void stop();
    void setUpdateInterval(double seconds);
    void setTemperatureInterval(double seconds);
    // Which optional readings the fast loop takes (all at first).
    void setReadings(FastReadings readings);
    // One disk reading outside the slow loop, running or not.
    void refreshDiskVolumes();
    // The loops' thread, for other readers that sample on it (the process list).
    QThread* thread() const;

private:
    QThread thread_;
    SchedulerWorker* worker_; // lives on thread_, deleted there
};

} // namespace lumetra
