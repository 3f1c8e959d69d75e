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
    const std::pair<std::string, std::string> cases[] = {
        {"firefox", "firefox"},
        {"Web Content", "Web Content"},
        {"(sd-pam)", "(sd-pam)"},
        {"a)b)", "a)b)"},
        {") S 1 2 3 4", ") S 1 2 3 4"}, // a name made to look like fields
        {"", ""},
        {"kworker/0:1-events", "kworker/0:1-events"}};
    for (const auto& [comm, expected] : cases) {
        const std::string text = line(comm);
        const auto stat = parseProcessStat(text);
        ASSERT_TRUE(stat) << comm;
        EXPECT_EQ(stat->comm, expected);
        EXPECT_EQ(stat->state, 'S') << comm;
        EXPECT_EQ(stat->cpuTicks, 1000u) << "utime + stime, not the children's";
        EXPECT_EQ(stat->startTime, 123456u) << comm;
        EXPECT_EQ(stat->threads, 4u) << comm;
        EXPECT_EQ(stat->residentPages, 2500u) << comm;
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
