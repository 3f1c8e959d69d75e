#include "samplers/process/ProcessSignaller.h"

#include "model/Logging.h"
#include "samplers/kernel/KernelFile.h"
#include "samplers/process/ProcessStat.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <sys/stat.h>

namespace lumetra {

ProcessSignaller::ProcessSignaller(const KernelRoots& roots, uid_t user)
    : roots_(roots), user_(user) {}

StopOutcome ProcessSignaller::send(const QList<ProcessRef>& processes, int signal) const {
    StopOutcome outcome;
    std::string buffer;
    for (const ProcessRef& process : processes) {
        const std::string directory = roots_.proc(std::to_string(process.pid));
        const KernelFileRead read = KernelFile::readOnce(directory + "/stat", buffer);
        const std::optional<ProcessStat> stat =
            read.ok() ? parseProcessStat(read.text) : std::nullopt;
        if (!stat || stat->startTime != process.startTime || stat->isZombie()) {
            ++outcome.gone;
            continue;
        }
        struct stat info {};
        if (::stat(directory.c_str(), &info) != 0) {
            ++outcome.gone;
            continue;
        }
        if (info.st_uid != user_) {
            ++outcome.notPermitted;
            continue;
        }
        if (!roots_.isLiveSystem()) {
            // A saved tree's processes are not this machine's: nothing to signal.
            ++outcome.gone;
            continue;
        }
        if (::kill(process.pid, signal) == 0) {
            ++outcome.signalled;
            continue;
        }
        const int error = errno;
        if (error == ESRCH)
            ++outcome.gone;
        else if (error == EPERM)
            ++outcome.notPermitted;
        else
            ++outcome.failed;
        qCWarning(logMonitoring, "kill(%d, %d): %s", process.pid, signal, std::strerror(error));
    }
    return outcome;
}

} // namespace lumetra
