#include "samplers/kernel/KernelFile.h"
#include "support/FixtureTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace lumetra;
using lumetra::testing::ScratchTree;

namespace {

// A saved tree may be rewritten while lumetra --watch keeps its files open: every way of
// rewriting it must show on the next read, or CPU and rates would freeze at the old text.
TEST(KernelFileTest, ANextReadSeesTheFileAsItIsNow) {
    ScratchTree tree;
    tree.write("proc/stat", "first\n");
    KernelFile file(tree.path("proc/stat"));
    ASSERT_EQ(file.readAll().text, "first\n");

    tree.write("proc/stat", "rewritten in place\n");
    EXPECT_EQ(file.readAll().text, "rewritten in place\n");
    tree.replace("proc/stat", "replaced by rename\n");
    EXPECT_EQ(file.readAll().text, "replaced by rename\n");
    tree.replace("proc/stat", "prefix, replaced again\n");
    EXPECT_EQ(file.readPrefix(6).text, "prefix");

    tree.remove("proc/stat");
    EXPECT_EQ(file.readAll().error, KernelFileError::missing);
    tree.makeDirectory("proc/stat");
    EXPECT_EQ(file.readAll().error, KernelFileError::notAFile);
    QDir(QString::fromStdString(tree.path("proc/stat"))).removeRecursively();
    ASSERT_EQ(::mkfifo(tree.path("proc/stat").c_str(), 0600), 0);
    EXPECT_EQ(file.readAll().error, KernelFileError::notAFile) << "a FIFO is not waited on";
    tree.remove("proc/stat");
    tree.write("proc/stat", "back\n");
    EXPECT_EQ(file.readAll().text, "back\n");
}

} // namespace
