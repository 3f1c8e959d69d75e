#include "samplers/process/ProcessSignaller.h"
#include "samplers/process/ProcessTable.h"

#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>

using namespace lumetra;

namespace {

// A child process of the test, killed and reaped when the object goes.
class Child {
public:
    // `work` runs in the child until it is killed; the parent waits for its first signal of
    // life through a pipe, so the child's set-up is done when the constructor returns.
    template <typename Work>
    explicit Child(Work work) {
        int ready[2];
        if (::pipe(ready) != 0)
            return;
        pid_ = ::fork();
        if (pid_ == 0) {
            ::close(ready[0]);
            work([fd = ready[1]] {
                const char byte = 1;
                (void)!::write(fd, &byte, 1);
                ::close(fd);
            });
            ::_exit(0);
        }
        ::close(ready[1]);
        char byte = 0;
        (void)!::read(ready[0], &byte, 1);
        ::close(ready[0]);
    }
    ~Child() {
        if (pid_ > 0) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
    }
    int pid() const { return pid_; }

private:
    int pid_ = -1;
};

void spinForever(const std::function<void()>& ready) {
    // On a shared machine other work takes a share of each core; where the test may (root),
    // the spinner goes first so it gets the whole core the test expects to see.
    (void)::setpriority(PRIO_PROCESS, 0, -10);
    ready();
    volatile std::uint64_t counter = 0;
    for (;;)
        counter = counter + 1;
}

std::optional<TopApplication> rowOf(const QList<TopApplication>& rows, int pid) {
    for (const TopApplication& row : rows)
        for (const ProcessRef& process : row.processes)
            if (process.pid == pid)
                return row;
    return std::nullopt;
}

bool contains(const TopApplication& row, int pid) {
    return rowOf({row}, pid).has_value();
}

// The child's CPU time as the kernel keeps it, in seconds.
double cpuSeconds(int pid) {
    clockid_t clock;
    timespec now{};
    if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &now) != 0)
        return -1;
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

double wallSeconds() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

TEST(ProcessTableLiveTest, AChildSpinningOneCoreShowsItsShareOfACoreAboveLighterRows) {
    // On a loaded machine the spinner gets less than a whole core: the reading must match the
    // share the kernel gave it over the same second, and only rows busier than it rank above.
    Child spinner(spinForever);
    ProcessTable table{KernelRoots(), DesktopEntries({})};
    table.refresh();
    const double cpuBefore = cpuSeconds(spinner.pid());
    const double wallBefore = wallSeconds();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const QList<TopApplication> rows = table.refresh().top(TopApplicationOrder::cpu, -1);
    const double share =
        100 * (cpuSeconds(spinner.pid()) - cpuBefore) / (wallSeconds() - wallBefore);
    ASSERT_GT(share, 0) << "the child's CPU clock could not be read";

    qsizetype position = 0;
    while (position < rows.size() && !contains(rows[position], spinner.pid())) {
        EXPECT_GE(rows[position].cpuPercent, share - 5) << rows[position].name.toStdString();
        ++position;
    }
    ASSERT_LT(position, rows.size());
    const TopApplication& row = rows[position];
    if (row.processCount() == 1)
        EXPECT_NEAR(row.cpuPercent, share, 5.0);
    else
        EXPECT_GE(row.cpuPercent, share - 5) << "grouped with the application running the test";
    EXPECT_LE(row.cpuPercent, 100.0 * row.processCount());
}

// Busy for half of every 10 ms.
void spinHalfTheTime(const std::function<void()>& ready) {
    ready();
    using namespace std::chrono;
    for (;;) {
        const auto until = steady_clock::now() + milliseconds(5);
        volatile std::uint64_t counter = 0;
        while (steady_clock::now() < until)
            counter = counter + 1;
        std::this_thread::sleep_for(milliseconds(5));
    }
}

TEST(ProcessTableLiveTest, CpuAgreesWithPsutilOverTheSameInterval) {
    // Debian's python3-psutil belongs to the system's interpreter, not to one found first on
    // PATH (pyenv).
    QString python = QStandardPaths::findExecutable("python3", {"/usr/bin"});
    if (python.isEmpty())
        python = QStandardPaths::findExecutable("python3");
    QProcess probe;
    probe.start(python, {"-c", "import psutil"});
    if (python.isEmpty() || !probe.waitForFinished(10000) || probe.exitCode() != 0)
        GTEST_SKIP() << "python3-psutil is not installed";

    Child worker(spinHalfTheTime);
    ProcessTable table{KernelRoots(), DesktopEntries({})};
    // psutil measures its second inside ours: both windows hold the same steady load.
    QProcess psutil;
    psutil.start(python, {"-c", QString("import psutil, time\n"
                                        "p = psutil.Process(%1)\n"
                                        "p.cpu_percent()\n"
                                        "print('ready', flush=True)\n"
                                        "time.sleep(1.0)\n"
                                        "print(p.cpu_percent(), flush=True)\n")
                                    .arg(worker.pid())});
    ASSERT_TRUE(psutil.waitForReadyRead(10000));
    psutil.readLine();
    table.refresh();
    ASSERT_TRUE(psutil.waitForFinished(10000));
    const TopApplications reading = table.refresh();
    const double theirs = psutil.readAll().trimmed().toDouble();
    const std::optional<TopApplication> ours =
        rowOf(reading.top(TopApplicationOrder::cpu, 100), worker.pid());
    ASSERT_TRUE(ours);
    EXPECT_NEAR(ours->cpuPercent, theirs, 5.0);
    EXPECT_GT(theirs, 10.0) << "the worker did run";
}

TEST(ProcessSignallerLiveTest, StopsOnlyTheListedProcessOfTheUser) {
    Child sleeper([](const std::function<void()>& ready) {
        ready();
        for (;;)
            ::pause();
    });
    ProcessTable table{KernelRoots(), DesktopEntries({})};
    const std::optional<TopApplication> row =
        rowOf(table.refresh(100000).top(TopApplicationOrder::memory, -1), sleeper.pid());
    ASSERT_TRUE(row);
    ASSERT_TRUE(row->ownedByUser);
    const QList<ProcessRef> listed = {ProcessRef{sleeper.pid(), row->processes[0].startTime}};
    QList<ProcessRef> reused = listed;
    reused[0].startTime += 1;

    EXPECT_EQ(ProcessSignaller().send(reused, SIGTERM), (StopOutcome{0, 1, 0, 0}))
        << "another start time is another process";
    EXPECT_EQ(ProcessSignaller(KernelRoots(), ::geteuid() + 4242).send(listed, SIGTERM),
              (StopOutcome{0, 0, 1, 0}))
        << "not the user's own";
    EXPECT_EQ(::kill(sleeper.pid(), 0), 0) << "still running";
    EXPECT_EQ(ProcessSignaller().send(listed, SIGTERM), (StopOutcome{1, 0, 0, 0}));
    int status = 0;
    ASSERT_EQ(::waitpid(sleeper.pid(), &status, 0), sleeper.pid());
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_EQ(ProcessSignaller().send(listed, SIGKILL), (StopOutcome{0, 1, 0, 0}))
        << "gone already";
}

} // namespace
