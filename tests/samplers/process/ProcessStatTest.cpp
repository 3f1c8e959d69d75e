#include "samplers/process/ProcessStat.h"

#include <gtest/gtest.h>

#include <string>

using namespace lumetra;

namespace {

std::string line(const std::string& comm, char state = 'S', const std::string& flags = "4194560") {
    // pid (comm) state ppid pgrp session tty tpgid flags minflt cminflt majflt cmajflt utime
    // stime cutime cstime priority nice threads itreal starttime vsize rss ...
    return "42 (" + comm + ") " + state + " 1 42 42 0 -1 " + flags +
           " 10 0 1 0 700 300 5 5 20 0 4 0 123456 99999 2500 18446744073709551615 1 1\n";
}

TEST(ProcessStatTest, CommRunsToTheLastParenthesisWhateverItHolds) {
    // The last is a name made to look like fields.
    for (const std::string comm :
         {"firefox", "Web Content", "(sd-pam)", "a)b)", "", ") S 1 2 3 4"}) {
        const std::string text = line(comm); // the comm points into it
        const auto stat = parseProcessStat(text);
        ASSERT_TRUE(stat) << comm;
        // The ticks are utime + stime, not the children's.
        EXPECT_EQ(std::tuple(stat->comm, stat->state, stat->cpuTicks, stat->startTime,
                             stat->threads, stat->residentPages),
                  std::tuple(comm, 'S', 1000u, 123456u, 4u, 2500u));
    }
}

TEST(ProcessStatTest, KernelThreadsAndZombiesAreToldApart) {
    const std::tuple<char, const char*, bool, bool> cases[] = {
        {'S', "4194560", false, false}, // an ordinary task
        {'I', "69238880", true, false}, // kworker: PF_KTHREAD
        {'S', "2129984", true, false},  // kthreadd
        {'Z', "4227084", false, true},  // exited, not reaped
        {'X', "4227084", false, true},  {'R', "0", false, false}};
    for (const auto& [state, flags, kernel, zombie] : cases) {
        const auto stat = parseProcessStat(line("t", state, flags));
        ASSERT_TRUE(stat) << flags;
        EXPECT_EQ(stat->isKernelThread(), kernel) << flags;
        EXPECT_EQ(stat->isZombie(), zombie) << state;
    }
}

TEST(ProcessStatTest, CutOrGarbledLinesGiveNothing) {
    const std::string full = line("bash");
    const std::string cases[] = {
        "",
        "42 bash S 1",                         // no parentheses
        "42 (bash S 1 42",                     // no closing one
        "42 (bash) S 1 42 42 0 -1 4194560 10", // cut before the times
        full.substr(0, full.find("2500")),     // cut before rss
        "42 (bash) S 1 42 42 0 -1 4194560 10 0 1 0 x 300 5 5 20 0 4 0 1 2 3\n",
        "42 (bash) S 1 42 42 0 -1 4194560 10 0 1 0 7 -3 5 5 20 0 4 0 1 2 3\n",
        "42 (bash) SS 1 42 42 0 -1 4194560 10 0 1 0 7 3 5 5 20 0 4 0 1 2 3\n",
        "\x01\xff)(\n"};
    for (const std::string& text : cases)
        EXPECT_FALSE(parseProcessStat(text)) << text;
}

} // namespace
