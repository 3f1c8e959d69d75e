#pragma once

#include "model/LogOnce.h"
#include "samplers/kernel/KernelFile.h"
#include "samplers/kernel/KernelRoots.h"
#include "samplers/network/NetworkProviding.h"

#include <dirent.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace lumetra {

// Received and sent bytes summed over the up, running, non-loopback interfaces of
// /sys/class/net; with physicalOnly, only over those with a device behind them (a `device`
// link), which leaves out VPN, container and bridge interfaces that count traffic twice.
class NetworkMonitor final : public NetworkProviding {
public:
    using Clock = std::function<Instant()>;

    explicit NetworkMonitor(
        const KernelRoots& roots = KernelRoots(), Clock now = [] { return WallClock::now(); });
    ~NetworkMonitor() override;
    NetworkMonitor(const NetworkMonitor&) = delete;
    NetworkMonitor& operator=(const NetworkMonitor&) = delete;

    std::optional<NetworkCounterSample> currentCounters() override;

    // From any thread; applies from the next reading.
    void setPhysicalOnly(bool physicalOnly) { physicalOnly_ = physicalOnly; }

private:
    struct Interface;

    // Nothing when the interfaces are known, else why they cannot be listed.
    const char* refreshInterfaces();
    bool listingMatchesInterfaces();
    bool rebuildInterfaces();
    void closeDirectory();
    void reportFailure(const char* why);

    std::string directory_;
    Clock now_;

    std::mutex lock_; // the cached listing and the files' buffers are shared by callers
    DIR* listing_ = nullptr;
    std::vector<std::unique_ptr<Interface>> interfaces_;
    LogOnce failure_;
    std::atomic<bool> physicalOnly_ = false;
    // The names counted last time, shared with every sample until the set changes.
    std::vector<const Interface*> counted_;
    std::vector<const Interface*> countedBefore_;
    QStringList countedNames_;
};

} // namespace lumetra
