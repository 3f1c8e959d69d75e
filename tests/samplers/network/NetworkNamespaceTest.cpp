// Real traffic between two network namespaces joined by a veth pair. Needs root (CI runs
// as root); skipped otherwise. Everything it creates is removed, even when a check fails.

#include "samplers/network/NetworkMonitor.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

#include <thread>

using namespace lumetra;
using lumetra::testing::ScratchTree;

namespace {

bool run(const QString& program, const QStringList& arguments) {
    QProcess process; // killed on destruction if it hangs
    process.start(program, arguments);
    const bool ran = process.waitForFinished(10000) &&
                     process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!ran)
        ADD_FAILURE() << program.toStdString() << ' ' << arguments.join(' ').toStdString() << ": "
                      << process.readAllStandardError().toStdString();
    return ran;
}

// Runs `work` on a thread that has joined network namespace `name`: sockets it opens and
// sysfs it mounts belong to that namespace.
template <typename Work>
auto inNamespace(const std::string& name, Work work) {
    decltype(work()) result{};
    std::thread([&] {
        const int fd = ::open(("/run/netns/" + name).c_str(), O_RDONLY | O_CLOEXEC);
        if (fd >= 0 && ::setns(fd, CLONE_NEWNET) == 0)
            result = work();
        if (fd >= 0)
            ::close(fd);
    }).join();
    return result;
}

// `ip netns add` makes /run/netns a mount point of its own and `ip netns del` leaves it.
constexpr char kNamespaceDirectory[] = "/run/netns";

bool isMountPoint(const char* path) {
    QFile table("/proc/self/mountinfo");
    if (!table.open(QIODevice::ReadOnly))
        return false;
    for (const QByteArray& line : table.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() > 4 && fields[4] == path)
            return true;
    }
    return false;
}

sockaddr_in receiverAddress() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(7777);
    ::inet_pton(AF_INET, "10.77.0.2", &address.sin_addr);
    return address;
}

constexpr std::size_t kPayload = 1000;
// What a veth counts for one datagram: UDP, IPv4 and Ethernet headers around the payload.
constexpr std::uint64_t kWireBytes = kPayload + 8 + 20 + 14;

class NetworkNamespaceTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "needs root to create network namespaces";
        const QString id = QString::number(::getpid());
        nsA_ = "lumetra-" + id + "-a";
        nsB_ = "lumetra-" + id + "-b";
        ifA_ = "lmt" + id + "a";
        ifB_ = "lmt" + id + "b";
        namespaceDirectoryExisted_ = QFileInfo::exists(kNamespaceDirectory);
        namespaceDirectoryMounted_ = isMountPoint(kNamespaceDirectory);
        for (const auto& [ns, tree] : {std::pair{nsA_, &rootA_}, std::pair{nsB_, &rootB_}}) {
            ASSERT_TRUE(run("ip", {"netns", "add", ns}));
            created_.push_back(ns);
            // No IPv6 chatter (router and neighbour solicitations) in the counts.
            ASSERT_TRUE(
                run("ip", {"netns", "exec", ns, "sysctl", "-qw", "net.ipv6.conf.all.disable_ipv6=1",
                           "net.ipv6.conf.default.disable_ipv6=1"}));
            tree->makeDirectory("sys");
            const std::string target = tree->path("sys");
            const auto mountSysfs = [&] {
                return ::mount("sysfs", target.c_str(), "sysfs", MS_NOSUID | MS_NODEV | MS_NOEXEC,
                               nullptr);
            };
            ASSERT_EQ(inNamespace(ns.toStdString(), mountSysfs), 0) << std::strerror(errno);
            mounted_.push_back(target);
        }
        createPair();
        sender_ = inNamespace(nsA_.toStdString(),
                              [] { return ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0); });
        receiver_ = inNamespace(nsB_.toStdString(), [] {
            const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
            const sockaddr_in address = receiverAddress();
            if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
                ::close(fd);
                return -1;
            }
            timeval timeout{2, 0};
            ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
            return fd;
        });
        ASSERT_GE(sender_, 0);
        ASSERT_GE(receiver_, 0);
    }

    void TearDown() override {
        if (sender_ >= 0)
            ::close(sender_);
        if (receiver_ >= 0)
            ::close(receiver_);
        for (const std::string& target : mounted_)
            ::umount2(target.c_str(), MNT_DETACH);
        for (const QString& ns : created_)
            QProcess::execute("ip", {"netns", "del", ns}); // takes its interfaces with it
        removeNamespaceDirectory();
    }

    // Undoes what ip did to /run/netns, unless it was so before or another namespace uses it.
    void removeNamespaceDirectory() const {
        if (created_.empty() || !QDir(kNamespaceDirectory).isEmpty())
            return;
        if (!namespaceDirectoryMounted_ && isMountPoint(kNamespaceDirectory))
            ::umount2(kNamespaceDirectory, MNT_DETACH);
        if (!namespaceDirectoryExisted_)
            ::rmdir(kNamespaceDirectory);
    }

    void createPair() {
        ASSERT_TRUE(run("ip", {"link", "add", ifA_, "netns", nsA_, "type", "veth", "peer", "name",
                               ifB_, "netns", nsB_}));
        ASSERT_TRUE(run("ip", {"-n", nsA_, "addr", "add", "10.77.0.1/24", "dev", ifA_}));
        ASSERT_TRUE(run("ip", {"-n", nsB_, "addr", "add", "10.77.0.2/24", "dev", ifB_}));
        ASSERT_TRUE(run("ip", {"-n", nsA_, "link", "set", ifA_, "up"}));
        ASSERT_TRUE(run("ip", {"-n", nsB_, "link", "set", ifB_, "up"}));
        // The kernel updates operstate from the carrier asynchronously, up to a second later.
        waitUntilRunning(rootA_, ifA_);
        waitUntilRunning(rootB_, ifB_);
    }

    static void waitUntilRunning(const ScratchTree& root, const QString& interface) {
        const QString path = QString::fromStdString(root.path("sys/class/net/" + interface));
        for (int attempt = 0; attempt < 100; ++attempt) {
            QFile operstate(path + "/operstate");
            if (operstate.open(QIODevice::ReadOnly) && operstate.readAll().trimmed() == "up")
                return;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        ADD_FAILURE() << interface.toStdString() << " did not come up";
    }

    // Sends `count` datagrams from A to B and waits until B has them all.
    void send(int count) {
        const sockaddr_in address = receiverAddress();
        std::vector<char> payload(kPayload, 'x');
        for (int index = 0; index < count; ++index) {
            ASSERT_EQ(::sendto(sender_, payload.data(), payload.size(), 0,
                               reinterpret_cast<const sockaddr*>(&address), sizeof address),
                      static_cast<ssize_t>(payload.size()));
            ASSERT_EQ(::recv(receiver_, payload.data(), payload.size(), 0),
                      static_cast<ssize_t>(payload.size()));
        }
    }

    QString nsA_, nsB_, ifA_, ifB_;
    ScratchTree rootA_, rootB_;
    std::vector<QString> created_;
    std::vector<std::string> mounted_;
    bool namespaceDirectoryExisted_ = false;
    bool namespaceDirectoryMounted_ = false;
    int sender_ = -1;
    int receiver_ = -1;
};

TEST_F(NetworkNamespaceTest, CountsTrafficAndFollowsInterfacesThatGoAndComeBack) {
    NetworkMonitor sideA{KernelRoots(rootA_.root())};
    NetworkMonitor sideB{KernelRoots(rootB_.root())};
    NetworkMonitor physicalA{KernelRoots(rootA_.root())};
    physicalA.setPhysicalOnly(true);
    send(1); // resolves the neighbour, so no ARP lands in the counted interval
    const auto beforeA = sideA.currentCounters();
    const auto beforeB = sideB.currentCounters();
    ASSERT_TRUE(beforeA && beforeB);
    send(25);
    const auto afterA = sideA.currentCounters();
    const auto afterB = sideB.currentCounters();
    ASSERT_TRUE(afterA && afterB);
    EXPECT_EQ(afterA->bytesSent - beforeA->bytesSent, 25 * kWireBytes);
    EXPECT_EQ(afterB->bytesReceived - beforeB->bytesReceived, 25 * kWireBytes);
    EXPECT_EQ(afterA->bytesReceived, beforeA->bytesReceived);
    EXPECT_EQ(afterA->interfaces, QStringList{ifA_});
    // A veth has no device behind it: physicalOnly leaves it out.
    const auto physical = physicalA.currentCounters();
    ASSERT_TRUE(physical);
    EXPECT_EQ(physical->bytesSent, 0u);
    EXPECT_EQ(physical->interfaces, QStringList());

    // Gone: only lo is left, which never counts, and the totals drop (a 0 rate).
    ASSERT_TRUE(run("ip", {"-n", nsA_, "link", "del", ifA_}));
    const auto gone = sideA.currentCounters();
    ASSERT_TRUE(gone);
    EXPECT_EQ(gone->bytesSent + gone->bytesReceived, 0u);

    // Back under the same names between two readings: sysfs's listing looks the same, the
    // old attribute files answer ENODEV, and the new counters are read.
    createPair();
    send(1);
    const auto back = sideA.currentCounters();
    ASSERT_TRUE(back);
    ASSERT_TRUE(run("ip", {"-n", nsA_, "link", "del", ifA_}));
    createPair();
    send(3);
    const auto reset = sideA.currentCounters();
    ASSERT_TRUE(reset);
    EXPECT_EQ(reset->bytesSent, 3 * kWireBytes + (back->bytesSent - kWireBytes))
        << "the fresh pair's ARP request plus three datagrams";

    // Down: nothing counts.
    ASSERT_TRUE(run("ip", {"-n", nsA_, "link", "set", ifA_, "down"}));
    const auto down = sideA.currentCounters();
    ASSERT_TRUE(down);
    EXPECT_EQ(down->bytesSent + down->bytesReceived, 0u);
}

} // namespace
