#pragma once

#include "samplers/CPUProviding.h"
#include "samplers/DiskProviding.h"
#include "samplers/MemoryProviding.h"
#include "samplers/NetworkProviding.h"
#include "samplers/TemperatureProviding.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <atomic>
#include <deque>
#include <mutex>

namespace lumetra::testing {

// Scripted providers: each call takes the next scripted value (the last one repeats).
template <typename Value>
class Script {
public:
    void push(Value value) {
        std::lock_guard guard(mutex_);
        values_.push_back(std::move(value));
    }
    void clear() {
        std::lock_guard guard(mutex_);
        values_.clear();
    }
    Value next() {
        std::lock_guard guard(mutex_);
        ++calls_;
        if (values_.size() > 1) {
            Value value = values_.front();
            values_.pop_front();
            return value;
        }
        return values_.empty() ? Value{} : values_.front();
    }
    int calls() const {
        std::lock_guard guard(mutex_);
        return calls_;
    }

private:
    mutable std::mutex mutex_;
    std::deque<Value> values_;
    int calls_ = 0;
};

struct FakeCPU : CPUProviding {
    Script<double> usage;
    double currentUsage() override { return usage.next(); }
};

struct FakeMemory : MemoryProviding {
    Script<std::optional<MemorySnapshot>> snapshots;
    std::atomic<MemoryPressureLevel> level{MemoryPressureLevel::normal};
    std::optional<MemorySnapshot> currentSnapshot() override { return snapshots.next(); }
    MemoryPressureLevel pressure() override { return level; }
};

struct FakeNetwork : NetworkProviding {
    Script<std::optional<NetworkCounterSample>> samples;
    std::optional<NetworkCounterSample> currentCounters() override { return samples.next(); }
};

struct FakeTemperature : TemperatureProviding {
    Script<TemperatureReading> readings;
    TemperatureReading currentReading() override { return readings.next(); }
};

struct FakeDisk : DiskProviding {
    Script<DiskVolumeList> lists;
    DiskVolumeList currentVolumes() override { return lists.next(); }
};

// Runs the event loop until `predicate` holds or `timeoutMs` passes.
template <typename Predicate>
bool processEventsUntil(Predicate predicate, int timeoutMs = 10000) {
    QElapsedTimer timer;
    timer.start();
    while (!predicate()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

inline void processEventsFor(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

inline NetworkCounterSample counters(double seconds, std::uint64_t received, std::uint64_t sent) {
    const auto at = Instant(std::chrono::duration_cast<Instant::duration>(
        std::chrono::duration<double>(1'700'000'000.0 + seconds)));
    return {at, received, sent};
}

} // namespace lumetra::testing
