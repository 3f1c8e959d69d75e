#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumetra {

// A file system's size in bytes.
struct VolumeCapacity {
    std::int64_t total = 0;
    std::int64_t available = 0;

    bool operator==(const VolumeCapacity&) const = default;
};

// statvfs(2): total = f_blocks × f_frsize, available = f_bavail × f_frsize, clamped to what a
// signed 64-bit count holds. Nothing when the call fails or the path is not a directory.
std::optional<VolumeCapacity> statvfsCapacity(const std::string& path);

// Measures file systems on a helper thread, under a deadline: statvfs on a stuck mount (a
// FUSE server that stopped answering, a dead USB disk, an unreachable server) blocks in the
// kernel, and the caller must not block with it. A path that misses the deadline is left
// out, with one log line, until its pending call returns; the thread that is stuck in it is
// abandoned and a fresh one carries on. At most `maxStuck` threads are ever left stuck.
class DiskCapacityProbe {
public:
    using Measure = std::function<std::optional<VolumeCapacity>(const std::string& path)>;

    explicit DiskCapacityProbe(Measure measure = statvfsCapacity,
                               std::chrono::milliseconds deadline = std::chrono::seconds(1),
                               std::size_t maxStuck = 8);
    ~DiskCapacityProbe();
    DiskCapacityProbe(const DiskCapacityProbe&) = delete;
    DiskCapacityProbe& operator=(const DiskCapacityProbe&) = delete;

    // One result per path, in order; nothing for a path that failed, missed the deadline or
    // is still stuck from an earlier call. Not for concurrent use.
    std::vector<std::optional<VolumeCapacity>> measureAll(const std::vector<std::string>& paths);

    // Paths whose calls have not returned yet.
    std::size_t stuckCount() const;

private:
    struct State;
    struct Worker;
    static void run(std::shared_ptr<State> state, std::shared_ptr<Worker> worker);
    bool startWorker(); // with the state's lock held

    std::shared_ptr<State> state_; // shared with the threads, which may outlive the probe
};

} // namespace lumetra
