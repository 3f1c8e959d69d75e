#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lumetra {

// The fields of /proc/PID/stat a process list needs.
struct ProcessStat {
    std::string_view comm; // inside the text parsed: between the first '(' and the last ')'
    char state = '?';
    std::uint64_t flags = 0;
    std::uint64_t cpuTicks = 0; // utime + stime, clock ticks
    std::uint64_t threads = 1;
    std::uint64_t startTime = 0; // clock ticks after boot; with the pid, who the process is
    std::uint64_t residentPages = 0;

    // PF_KTHREAD: kernel threads have no memory of their own and no application.
    bool isKernelThread() const { return (flags & 0x00200000u) != 0; }
    // Exited, not yet reaped: nothing left to measure or to stop.
    bool isZombie() const { return state == 'Z' || state == 'X' || state == 'x'; }
};

// Parses one stat line. comm may hold spaces and parentheses ("(sd-pam)", "Web Content",
// "a)b)"), so it runs to the last ')' and the numbered fields are counted after it.
// Nothing for text that is cut short or not numbers where numbers belong.
std::optional<ProcessStat> parseProcessStat(std::string_view text);

} // namespace lumetra
