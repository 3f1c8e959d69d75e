#include "samplers/process/ProcessTable.h"

#include "model/Logging.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace lumetra {

namespace {

// TASK_COMM_LEN - 1: a comm this long may have been cut.
constexpr std::size_t kCommLimit = 15;
// A stat line is under 400 bytes; 52 fields of 20 digits still fit.
constexpr std::size_t kStatLimit = 2048;
constexpr std::size_t kSmallFileLimit = 4096;

std::optional<int> parsePid(const char* name) {
    int pid = 0;
    const char* end = name + std::strlen(name);
    const auto [ptr, ec] = std::from_chars(name, end, pid);
    if (ec != std::errc{} || ptr != end || pid <= 0)
        return std::nullopt;
    return pid;
}

// "1234/stat" into `out`; returns it.
const char* pidPath(char* out, std::size_t size, int pid, const char* file) {
    const auto [end, ec] = std::to_chars(out, out + size - 16, pid);
    (void)ec;
    *end = '/';
    std::strcpy(end + 1, file);
    return out;
}

bool isVanished(int error) {
    return error == ENOENT || error == ESRCH || error == ENOTDIR;
}

double steadySeconds() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

ProcessTable::ProcessTable(const KernelRoots& roots, DesktopEntries desktopEntries, uid_t user)
    : procPath_(roots.proc("")), desktopEntries_(std::move(desktopEntries)), user_(user),
      clock_(steadySeconds), ticksPerSecond_(::sysconf(_SC_CLK_TCK)),
      pageSize_(::sysconf(_SC_PAGESIZE)),
      logicalCpuCount_(int(std::max(1L, ::sysconf(_SC_NPROCESSORS_ONLN)))) {
    if (ticksPerSecond_ <= 0)
        ticksPerSecond_ = 100;
    if (pageSize_ <= 0)
        pageSize_ = 4096;
}

ProcessTable::~ProcessTable() {
    if (procDir_)
        ::closedir(procDir_);
}

bool ProcessTable::openProc() {
    if (procDir_)
        return true;
    filesOpened_.fetch_add(1, std::memory_order_relaxed);
    procDir_ = ::opendir(procPath_.c_str());
    if (!procDir_) {
        if (listFailure_.failed())
            qCCritical(logMonitoring, "%s: %s", procPath_.c_str(), std::strerror(errno));
        return false;
    }
    procFd_ = ::dirfd(procDir_);
    return true;
}

int ProcessTable::readAt(const char* relative, char* buffer, std::size_t size, int* error) {
    filesOpened_.fetch_add(1, std::memory_order_relaxed);
    const int fd = ::openat(procFd_, relative, O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        *error = errno;
        return -1;
    }
    const ssize_t count = ::read(fd, buffer, size);
    *error = count < 0 ? errno : 0;
    ::close(fd);
    return int(count);
}

void ProcessTable::forgetBaseline() {
    previousTime_.reset();
}

std::shared_ptr<const ProcessTable::App> ProcessTable::appOf(const AppScope& scope) {
    auto found = apps_.find(scope.appId);
    if (found != apps_.end())
        return found->second;
    const DesktopEntry& entry = desktopEntries_.find(scope.desktopId);
    auto app = std::make_shared<const App>(
        App{scope.appId, entry.name.empty() ? scope.fallbackName : entry.name, entry.icon});
    apps_.emplace(scope.appId, app);
    return app;
}

ProcessTable::Identity ProcessTable::identify(int pid, const ProcessStat& stat) {
    Identity identity;
    identity.name.assign(stat.comm);
    char path[64];
    char buffer[kSmallFileLimit];
    int error = 0;

    const int cgroupLength =
        readAt(pidPath(path, sizeof path, pid, "cgroup"), buffer, sizeof buffer, &error);
    if (cgroupLength > 0) {
        if (std::optional<AppScope> scope =
                parseAppScope(std::string_view(buffer, std::size_t(cgroupLength))))
            identity.app = appOf(*scope);
    }

    if (stat.comm.size() == kCommLimit) {
        // comm was cut at 15 characters: the executable's name from the first argument, when
        // it is the longer form of the same name ("gnome-shell-calendar-server").
        const int length =
            readAt(pidPath(path, sizeof path, pid, "cmdline"), buffer, sizeof buffer, &error);
        if (length > 0) {
            std::string_view first(buffer, std::size_t(length));
            first = first.substr(0, first.find('\0'));
            first =
                first.substr(first.rfind('/') == std::string_view::npos ? 0 : first.rfind('/') + 1);
            first = first.substr(0, first.find(' '));
            if (first.size() > kCommLimit && first.starts_with(stat.comm))
                identity.name.assign(first);
        }
    }

    struct stat info {};
    identity.ownedByUser = ::fstatat(procFd_, pidPath(path, sizeof path, pid, ""), &info, 0) == 0 &&
                           info.st_uid == user_;
    return identity;
}

TopApplications ProcessTable::refresh(int keep) {
    TopApplications result;
    result.logicalCpuCount = logicalCpuCount_;
    if (!openProc())
        return result;
    listFailure_.recovered();

    const double now = clock_();
    const bool cpuValid = previousTime_.has_value() && now > *previousTime_;
    const double ticksToPercent =
        cpuValid ? 100.0 / double(ticksPerSecond_) / (now - *previousTime_) : 0.0;
    const bool haveBaseline = previousTime_.has_value();
    // The clock is read once a refresh but each stat a little later: a busy thread can show a
    // few ticks more than the interval holds. It cannot have run longer than the interval on
    // each of its threads, nor on more CPUs than there are.
    const double ticksPerThread = cpuValid ? double(ticksPerSecond_) * (now - *previousTime_) : 0.0;
    ++refreshNumber_;
    groups_.clear();
    members_.clear();
    appGroups_.clear();

    bool sawInit = false;
    bool statFailed = false;
    char path[64];
    char buffer[kStatLimit];
    ::rewinddir(procDir_);
    while (const dirent* item = ::readdir(procDir_)) {
        if (item->d_name[0] < '1' || item->d_name[0] > '9')
            continue;
        const std::optional<int> pid = parsePid(item->d_name);
        if (!pid)
            continue;
        int error = 0;
        const int length =
            readAt(pidPath(path, sizeof path, *pid, "stat"), buffer, sizeof buffer, &error);
        if (length <= 0) {
            // Gone between the listing and the read (ENOENT, or ESRCH from a dying task's
            // file) is ordinary; anything else is worth one line.
            const bool bad = length < 0 && !isVanished(error);
            statFailed = statFailed || bad;
            if (bad && statFailure_.failed())
                qCWarning(logMonitoring, "%s%d/stat: %s", procPath_.c_str(), *pid,
                          std::strerror(error));
            continue;
        }
        const std::optional<ProcessStat> stat =
            parseProcessStat(std::string_view(buffer, std::size_t(length)));
        if (!stat) {
            statFailed = true;
            if (statFailure_.failed())
                qCWarning(logMonitoring, "%s%d/stat: not a process status line", procPath_.c_str(),
                          *pid);
            continue;
        }
        if (*pid == 1)
            sawInit = true;
        if (stat->isKernelThread() || stat->isZombie())
            continue;

        auto [slot, inserted] = entries_.try_emplace(*pid);
        Entry& entry = slot->second;
        std::uint64_t ticks = 0;
        if (inserted || entry.startTime != stat->startTime) {
            // A new process, or the pid reused by one: it began after the last refresh, so
            // all of its time falls into this interval.
            entry.startTime = stat->startTime;
            entry.identity = identify(*pid, *stat);
            ticks = haveBaseline ? stat->cpuTicks : 0;
        } else {
            ticks = stat->cpuTicks > entry.cpuTicks ? stat->cpuTicks - entry.cpuTicks : 0;
        }
        if (cpuValid) {
            const double most =
                ticksPerThread *
                double(std::min<std::uint64_t>(stat->threads, std::uint64_t(logicalCpuCount_)));
            ticks = std::min(ticks, std::uint64_t(most));
        }
        entry.cpuTicks = stat->cpuTicks;
        entry.seen = refreshNumber_;

        std::uint32_t groupIndex = std::uint32_t(groups_.size());
        if (const App* app = entry.identity.app.get()) {
            const auto [found, added] = appGroups_.try_emplace(app, groupIndex);
            if (!added)
                groupIndex = found->second;
        }
        if (groupIndex == groups_.size())
            groups_.push_back(Group{&entry});
        Group& group = groups_[groupIndex];
        group.cpuTicks += ticks;
        group.residentPages += stat->residentPages;
        ++group.count;
        group.ownedByUser = group.ownedByUser && entry.identity.ownedByUser;
        members_.push_back(Member{*pid, stat->startTime, group.firstMember});
        group.firstMember = std::uint32_t(members_.size() - 1);
    }
    if (!statFailed)
        statFailure_.recovered();

    std::erase_if(entries_,
                  [this](const auto& item) { return item.second.seen != refreshNumber_; });
    previousTime_ = now;

    result.cpuValid = cpuValid;
    result.processCount = int(members_.size());
    // pid 1 is in every pid namespace; not seeing it means /proc hides other users' processes.
    result.onlyOwnProcessesVisible = !sawInit && !members_.empty();

    // The leaders by each order; only they become names and pid lists.
    const auto pick = [this, keep](auto larger) {
        order_.resize(groups_.size());
        for (std::uint32_t i = 0; i < order_.size(); ++i)
            order_[i] = i;
        const std::size_t count =
            std::min<std::size_t>(std::size_t(std::max(keep, 0)), order_.size());
        std::partial_sort(
            order_.begin(), order_.begin() + std::ptrdiff_t(count), order_.end(),
            [&](std::uint32_t a, std::uint32_t b) { return larger(groups_[a], groups_[b]); });
        order_.resize(count);
    };
    std::vector<std::uint32_t> chosen;
    if (cpuValid) {
        pick([](const Group& a, const Group& b) { return a.cpuTicks > b.cpuTicks; });
        chosen = order_;
    }
    pick([](const Group& a, const Group& b) { return a.residentPages > b.residentPages; });
    for (std::uint32_t index : order_)
        if (std::find(chosen.begin(), chosen.end(), index) == chosen.end())
            chosen.push_back(index);
    result.groups.reserve(qsizetype(chosen.size()));
    for (std::uint32_t index : chosen)
        result.groups.push_back(materialise(index, ticksToPercent));
    return result;
}

TopApplication ProcessTable::materialise(std::uint32_t index, double ticksToPercent) const {
    const Group& group = groups_[index];
    const Identity& identity = group.first->identity;
    TopApplication row;
    if (const App* app = identity.app.get()) {
        row.name = QString::fromStdString(app->name);
        row.icon = QString::fromStdString(app->icon);
        row.appId = QString::fromStdString(app->id);
    } else {
        row.name = QString::fromStdString(identity.name);
    }
    row.cpuPercent = double(group.cpuTicks) * ticksToPercent;
    row.residentBytes = group.residentPages * std::uint64_t(pageSize_);
    row.ownedByUser = group.ownedByUser;
    row.processes.reserve(group.count);
    for (std::uint32_t m = group.firstMember; m != kNoMember; m = members_[m].next)
        row.processes.push_back(ProcessRef{members_[m].pid, members_[m].startTime});
    std::reverse(row.processes.begin(), row.processes.end());
    return row;
}

} // namespace lumetra
