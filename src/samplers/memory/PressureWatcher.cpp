#include "samplers/memory/PressureWatcher.h"

#include "model/AppId.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/magic.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace lumetra {

namespace {

bool isOnProcfs(const std::string& path) {
    struct statfs info {};
    return ::statfs(path.c_str(), &info) == 0 && info.f_type == PROC_SUPER_MAGIC;
}

int armOne(const std::string& path, const char* spec, std::string& whyNot) {
    const int fd = ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        whyNot = std::strerror(errno);
        return -1;
    }
    // The kernel wants the terminating NUL too.
    if (::write(fd, spec, std::strlen(spec) + 1) < 0) {
        whyNot = std::strerror(errno);
        ::close(fd);
        return -1;
    }
    return fd;
}

} // namespace

std::vector<PressureTrigger> armPressureTriggers(const std::string& path, std::string& whyNot) {
    if (!isOnProcfs(path)) {
        whyNot = "not the live kernel's pressure file";
        return {};
    }
    const int warning = armOne(path, "some 200000 2000000", whyNot);
    if (warning < 0)
        return {};
    const int critical = armOne(path, "full 200000 2000000", whyNot);
    if (critical < 0) {
        ::close(warning);
        return {};
    }
    return {{warning, PressureEvent::warning, POLLPRI},
            {critical, PressureEvent::critical, POLLPRI}};
}

QString PressureWatcher::threadName() {
    return QString::fromLatin1(kAppId) + QStringLiteral(".memory-pressure");
}

int PressureWatcher::makeEventFd() {
    return ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
}

std::unique_ptr<PressureWatcher> PressureWatcher::start(std::vector<PressureTrigger> triggers,
                                                        EventHandler onEvent, LossHandler onLost,
                                                        std::string& whyNot,
                                                        const WakeFdMaker& makeWakeFd) {
    const int wakeFd = makeWakeFd();
    if (wakeFd < 0) {
        whyNot = std::string("eventfd: ") + std::strerror(errno);
        for (const PressureTrigger& trigger : triggers)
            ::close(trigger.fd);
        return nullptr;
    }
    return std::unique_ptr<PressureWatcher>(
        new PressureWatcher(std::move(triggers), std::move(onEvent), std::move(onLost), wakeFd));
}

PressureWatcher::PressureWatcher(std::vector<PressureTrigger> triggers, EventHandler onEvent,
                                 LossHandler onLost, int wakeFd)
    : triggers_(std::move(triggers)), onEvent_(std::move(onEvent)), onLost_(std::move(onLost)),
      wakeFd_(wakeFd) {
    thread_ = std::thread([this] {
        // The kernel keeps 15 characters of a name: "memory-pressure" is the telling tail.
        ::pthread_setname_np(::pthread_self(), threadName().right(15).toUtf8().constData());
        run();
    });
}

PressureWatcher::~PressureWatcher() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(wakeFd_, &one, sizeof one);
    thread_.join();
    for (const PressureTrigger& trigger : triggers_)
        ::close(trigger.fd);
    ::close(wakeFd_);
}

void PressureWatcher::run() {
    std::vector<pollfd> fds;
    fds.push_back({wakeFd_, POLLIN, 0});
    for (const PressureTrigger& trigger : triggers_)
        fds.push_back({trigger.fd, trigger.events, 0});

    for (;;) {
        if (::poll(fds.data(), fds.size(), -1) < 0) {
            if (errno == EINTR)
                continue;
            onLost_();
            return;
        }
        if (fds[0].revents != 0)
            return; // asked to stop
        // Report critical before warning, so an interval carrying both ends up critical.
        bool sawWarning = false;
        bool sawCritical = false;
        for (std::size_t i = 1; i < fds.size(); ++i) {
            const short revents = fds[i].revents;
            if (revents & (POLLERR | POLLNVAL | POLLHUP)) {
                onLost_();
                return;
            }
            if (revents & fds[i].events) {
                const PressureTrigger& trigger = triggers_[i - 1];
                (trigger.event == PressureEvent::critical ? sawCritical : sawWarning) = true;
                if (trigger.events & POLLIN) {
                    std::array<char, 256> drain{};
                    while (::read(trigger.fd, drain.data(), drain.size()) > 0) {
                    }
                }
            }
        }
        if (sawWarning && !sawCritical)
            onEvent_(PressureEvent::warning);
        if (sawCritical)
            onEvent_(PressureEvent::critical);
    }
}

} // namespace lumetra
