#include "samplers/disk/DiskCapacityProbe.h"

#include "model/LogOnce.h"
#include "model/Logging.h"
#include "samplers/kernel/TextScan.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <set>
#include <thread>

namespace lumetra {

namespace {

std::int64_t clampedBytes(std::uint64_t blocks, std::uint64_t blockSize) {
    const std::uint64_t bytes = textscan::saturatingMultiply(blocks, blockSize);
    return bytes > static_cast<std::uint64_t>(INT64_MAX) ? INT64_MAX
                                                         : static_cast<std::int64_t>(bytes);
}

} // namespace

std::optional<VolumeCapacity> statvfsCapacity(const std::string& path) {
    // O_DIRECTORY: containers bind-mount single files (/etc/hostname, /etc/resolv.conf),
    // which are not volumes.
    const int fd = ::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return std::nullopt;
    struct statvfs stats {};
    const int status = ::fstatvfs(fd, &stats);
    ::close(fd);
    if (status != 0)
        return std::nullopt;
    // A few old drivers leave the fragment size 0; the block size is the unit then.
    const std::uint64_t unit = stats.f_frsize != 0 ? stats.f_frsize : stats.f_bsize;
    return VolumeCapacity{clampedBytes(stats.f_blocks, unit), clampedBytes(stats.f_bavail, unit)};
}

struct DiskCapacityProbe::Worker {
    bool busy = false;
    bool abandoned = false;
    bool exited = false;
    std::string path; // what it is measuring while busy
    std::chrono::steady_clock::time_point startedAt;
};

struct DiskCapacityProbe::State {
    struct Job {
        std::uint64_t batch = 0;
        std::size_t index = 0;
        std::string path;
    };

    Measure measure;
    std::chrono::milliseconds deadline;
    std::size_t maxStuck = 0;

    mutable std::mutex lock; // guards everything below
    std::condition_variable wakeWorker;
    std::condition_variable resultReady;
    std::deque<Job> queue;
    std::shared_ptr<Worker> active;
    std::set<std::string> stuck; // paths whose abandoned calls have not returned
    bool stopping = false;
    LogOnce overload;
    std::uint64_t batch = 0;
    std::vector<std::optional<VolumeCapacity>> results;
    std::size_t pending = 0;
};

DiskCapacityProbe::DiskCapacityProbe(Measure measure, std::chrono::milliseconds deadline,
                                     std::size_t maxStuck)
    : state_(std::make_shared<State>()) {
    state_->measure = std::move(measure);
    state_->deadline = deadline;
    state_->maxStuck = maxStuck;
}

DiskCapacityProbe::~DiskCapacityProbe() {
    std::unique_lock guard(state_->lock);
    state_->stopping = true;
    state_->queue.clear();
    state_->wakeWorker.notify_all();
    // An idle worker leaves at once; one inside a slow call is given the deadline, then left
    // to finish on its own (it only touches the shared state).
    if (const auto worker = state_->active) {
        state_->resultReady.wait_for(guard, state_->deadline, [&] { return worker->exited; });
    }
}

void DiskCapacityProbe::run(std::shared_ptr<State> state, std::shared_ptr<Worker> worker) {
    std::unique_lock guard(state->lock);
    for (;;) {
        state->wakeWorker.wait(
            guard, [&] { return state->stopping || worker->abandoned || !state->queue.empty(); });
        if (state->stopping || worker->abandoned)
            break;
        State::Job job = std::move(state->queue.front());
        state->queue.pop_front();
        worker->busy = true;
        worker->path = job.path;
        worker->startedAt = std::chrono::steady_clock::now();
        guard.unlock();
        std::optional<VolumeCapacity> capacity = state->measure(job.path);
        guard.lock();
        worker->busy = false;
        if (worker->abandoned) {
            state->stuck.erase(job.path);
            qCInfo(logMonitoring, "statvfs(%s) answered again", job.path.c_str());
            break;
        }
        if (job.batch == state->batch && state->pending > 0) {
            state->results[job.index] = capacity;
            --state->pending;
            state->resultReady.notify_all();
        }
    }
    worker->exited = true;
    state->resultReady.notify_all();
}

bool DiskCapacityProbe::startWorker() {
    if (state_->active && !state_->active->abandoned && !state_->active->exited)
        return true;
    if (state_->stuck.size() >= state_->maxStuck) {
        if (state_->overload.failed())
            qCWarning(logMonitoring, "%zu mounts do not answer statvfs; not measuring others",
                      state_->stuck.size());
        return false;
    }
    state_->overload.recovered();
    state_->active = std::make_shared<Worker>();
    std::thread(run, state_, state_->active).detach();
    return true;
}

std::vector<std::optional<VolumeCapacity>>
DiskCapacityProbe::measureAll(const std::vector<std::string>& paths) {
    State& state = *state_;
    std::unique_lock guard(state.lock);
    ++state.batch;
    state.results.assign(paths.size(), std::nullopt);
    state.pending = 0;
    state.queue.clear();
    for (std::size_t index = 0; index < paths.size(); ++index) {
        if (state.stuck.contains(paths[index]))
            continue;
        state.queue.push_back({state.batch, index, paths[index]});
        ++state.pending;
    }

    while (state.pending > 0) {
        if (!startWorker())
            break;
        state.wakeWorker.notify_all();
        const auto worker = state.active;
        // Wait for the results, until the call in progress has run past the deadline.
        while (state.pending > 0 && !worker->exited) {
            const auto limit = worker->busy ? worker->startedAt + state.deadline
                                            : std::chrono::steady_clock::now() + state.deadline;
            state.resultReady.wait_until(guard, limit);
            if (worker->busy &&
                std::chrono::steady_clock::now() >= worker->startedAt + state.deadline)
                break;
        }
        if (state.pending == 0 || worker->exited)
            continue;
        // Leave the overrunning path out and carry on with the rest on a fresh thread.
        worker->abandoned = true;
        state.stuck.insert(worker->path);
        --state.pending;
        qCWarning(logMonitoring,
                  "statvfs(%s) did not answer within %lld ms; leaving the volume out until it "
                  "does",
                  worker->path.c_str(), static_cast<long long>(state.deadline.count()));
    }
    state.queue.clear();
    state.pending = 0;
    return std::move(state.results);
}

std::size_t DiskCapacityProbe::stuckCount() const {
    std::lock_guard guard(state_->lock);
    return state_->stuck.size();
}

} // namespace lumetra
