// A small ext4 image loop-mounted in a temporary directory: it shows up in the volume list,
// the watcher reports its mount and unmount, and it leaves the list again. Needs root (CI
// runs as root); skipped otherwise. The mount is removed even when a check fails.

#include "samplers/disk/MountWatcher.h"
#include "samplers/disk/DiskMonitor.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <string>
#include <vector>

#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace lumetra;
using lumetra::testing::ScratchTree;

namespace {

// Runs a program to its end; its exit status, or -1. Through fork(), not QProcess: QProcess
// starts programs with a vfork-style clone that ThreadSanitizer does not see, and the child's
// steps on the parent's memory leave it blind to this thread's locks from then on, so every
// lock-guarded access of the disk probe's worker looked like a race.
int execute(const char* program, std::vector<std::string> arguments) {
    std::vector<char*> argv{const_cast<char*>(program)};
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        ::execvp(program, argv.data());
        ::_exit(127);
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

const DiskVolume* findVolume(const DiskVolumeList& volumes, const QString& id) {
    const auto found = std::ranges::find(volumes, id, &DiskVolume::id);
    return found == volumes.end() ? nullptr : &*found;
}

class LoopMountTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "needs root to mount";
        if (QStandardPaths::findExecutable("mkfs.ext4", {"/usr/sbin", "/sbin", "/usr/bin"})
                .isEmpty())
            GTEST_SKIP() << "needs mkfs.ext4 (e2fsprogs)";
        ASSERT_TRUE(dir_.isValid());
        // A space in the mount point: the kernel's table writes it as \040.
        ASSERT_TRUE(QDir().mkpath(mountPoint_));
        QFile file(image_);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(16 << 20));
        file.close();
        ASSERT_EQ(execute("mkfs.ext4", {"-q", "-F", "-L", "LumetraTest", image_.toStdString()}), 0);
    }

    void TearDown() override {
        if (mounted_)
            ::umount2(mountPoint_.toLocal8Bit().constData(), MNT_DETACH);
    }

    QTemporaryDir dir_;
    QString image_ = dir_.filePath("disk.img");
    QString mountPoint_ = dir_.filePath(QString("Lumetra Test %1").arg(::getpid()));
    bool mounted_ = false;
};

TEST_F(LoopMountTest, VolumeComesAndGoesAndTheWatcherSaysSo) {
    MountWatcher watcher;
    ASSERT_TRUE(watcher.isWatchingMounts());
    QSignalSpy changes(&watcher, &MountWatcher::mountsChanged);
    DiskMonitor monitor;
    EXPECT_FALSE(findVolume(monitor.currentVolumes(), mountPoint_));

    mounted_ =
        execute("mount", {"-o", "loop", image_.toStdString(), mountPoint_.toStdString()}) == 0;
    ASSERT_TRUE(mounted_);
    EXPECT_TRUE(changes.wait(5000)) << "mount reported";
    const DiskVolumeList volumes = monitor.currentVolumes();
    const DiskVolume* volume = findVolume(volumes, mountPoint_);
    ASSERT_TRUE(volume);
    // By its label where udev keeps /dev/disk/by-label, else by its directory's name.
    EXPECT_TRUE(volume->name == "LumetraTest" || volume->name == QFileInfo(mountPoint_).fileName())
        << volume->name.toStdString();
    const auto measured = statvfsCapacity(mountPoint_.toStdString());
    ASSERT_TRUE(measured);
    EXPECT_EQ(volume->totalCapacity, measured->total);
    EXPECT_GT(volume->totalCapacity, 8 << 20);
    // A loop device is neither removable nor on USB.
    EXPECT_EQ(std::tuple(volume->isInternal, volume->isRemovable, volume->isEjectable,
                         volume->isBootVolume),
              std::tuple(true, false, false, false));

    changes.clear();
    mounted_ = execute("umount", {mountPoint_.toStdString()}) != 0;
    ASSERT_FALSE(mounted_);
    EXPECT_TRUE(changes.wait(5000)) << "unmount reported";
    EXPECT_FALSE(findVolume(monitor.currentVolumes(), mountPoint_));
}

// A saved tree's mount table is not watched; its labels directory is, once it appears.
TEST(MountWatcherTest, SavedTreeReportsNewLabelsOnly) {
    ScratchTree tree;
    tree.write("proc/1/mountinfo", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n");
    tree.makeDirectory("dev/disk");
    MountWatcher watcher{KernelRoots(tree.root())};
    EXPECT_FALSE(watcher.isWatchingMounts());
    QSignalSpy changes(&watcher, &MountWatcher::mountsChanged);
    tree.makeDirectory("dev/disk/by-label");
    ASSERT_TRUE(changes.wait(5000)) << "by-label appeared";
    changes.clear();
    ASSERT_TRUE(
        QFile::link("../../sdb1", QString::fromStdString(tree.path("dev/disk/by-label/Photos"))));
    EXPECT_TRUE(changes.wait(5000)) << "a label appeared";
}

} // namespace
