#pragma once

#include "model/LogOnce.h"
#include "model/TopApplications.h"
#include "samplers/kernel/KernelRoots.h"
#include "samplers/process/AppScope.h"
#include "samplers/process/DesktopEntries.h"
#include "samplers/process/ProcessStat.h"

#include <atomic>
#include <cstdint>
#include <dirent.h>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <unordered_map>
#include <vector>

namespace lumetra {

// Reads every process under the root's proc/ and groups them by the application that launched
// them (its systemd scope), the rest as themselves.
//
// Cost: a refresh lists proc/ and reads one file per process, its stat. What does not change
// while a process lives (its application, name, owner) is read once, when a pid is first seen
// with a start time, and kept until the pid goes or comes back with another start time. Kernel
// threads and zombies are skipped; threads are never listed (/proc shows only thread-group
// leaders). Nothing is opened before the first refresh.
//
// Not thread-safe: one thread refreshes (the monitoring thread); filesOpened() may be read from
// any.
class ProcessTable {
public:
    ProcessTable(const KernelRoots& roots, DesktopEntries desktopEntries, uid_t user = ::geteuid());
    ~ProcessTable();
    ProcessTable(const ProcessTable&) = delete;
    ProcessTable& operator=(const ProcessTable&) = delete;

    // One reading: the `keep` leading groups by CPU and the `keep` leading by memory. CPU is
    // measured against the previous refresh; the first has none (cpuValid false).
    TopApplications refresh(int keep = 10);

    // Forgets the CPU baseline (the list was closed): the next refresh starts a new one.
    void forgetBaseline();

    // Files and directories opened below proc/ so far.
    std::uint64_t filesOpened() const { return filesOpened_.load(std::memory_order_relaxed); }

    // Seconds of a steady clock; tests replace it to make CPU percentages exact.
    void setClock(std::function<double()> clock) { clock_ = std::move(clock); }
    void setTicksPerSecond(long ticks) { ticksPerSecond_ = ticks; }
    void setLogicalCpuCount(int count) { logicalCpuCount_ = count; }

private:
    struct App {
        std::string id;
        std::string name;
        std::string icon;
    };
    // What does not change while a process lives.
    struct Identity {
        std::shared_ptr<const App> app; // null: the process stands alone
        std::string name;               // comm, or the executable's name where comm was cut
        bool ownedByUser = false;
    };
    struct Entry {
        std::uint64_t startTime = 0;
        std::uint64_t cpuTicks = 0;
        std::uint32_t seen = 0; // the refresh that last saw it
        Identity identity;
    };
    static constexpr std::uint32_t kNoMember = UINT32_MAX;
    struct Group {
        const Entry* first = nullptr;
        std::uint64_t cpuTicks = 0;
        std::uint64_t residentPages = 0;
        int count = 0;
        bool ownedByUser = true;
        std::uint32_t firstMember = kNoMember; // the group's members, linked through Member::next
    };
    struct Member {
        int pid;
        std::uint64_t startTime;
        std::uint32_t next;
    };

    bool openProc();
    int readAt(const char* relative, char* buffer, std::size_t size, int* error);
    Identity identify(int pid, const ProcessStat& stat);
    std::shared_ptr<const App> appOf(const AppScope& scope);
    TopApplication materialise(std::uint32_t group, double ticksToPercent) const;

    std::string procPath_;
    DesktopEntries desktopEntries_;
    uid_t user_;
    DIR* procDir_ = nullptr;
    int procFd_ = -1;
    std::atomic<std::uint64_t> filesOpened_{0};

    std::unordered_map<int, Entry> entries_;
    std::unordered_map<std::string, std::shared_ptr<const App>> apps_;
    std::uint32_t refreshNumber_ = 0;
    std::optional<double> previousTime_;

    // Reused between refreshes so a refresh allocates nothing once they have grown.
    std::vector<Group> groups_;
    std::vector<Member> members_;
    std::unordered_map<const App*, std::uint32_t> appGroups_;
    std::vector<std::uint32_t> order_;

    std::function<double()> clock_;
    long ticksPerSecond_;
    long pageSize_;
    int logicalCpuCount_;
    LogOnce listFailure_;
    LogOnce statFailure_;
};

} // namespace lumetra
