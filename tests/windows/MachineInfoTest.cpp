#include "windows/MachineInfo.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

void put(const QString& path, const QByteArray& bytes) {
    if (bytes.isEmpty())
        return;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

// Device-tree files hold NUL-terminated strings, given here with '|' for each NUL.
QByteArray nuls(const char* text) {
    return QByteArray(text).replace('|', '\0');
}

TEST(MachineInfoTest, ReadsTheModelAndTellsAppleSilicon) {
    struct Case {
        QByteArray productName; // empty: no DMI table
        QByteArray deviceTreeModel;
        QByteArray compatible;
        QString machine;
        QString model;
        bool appleSilicon;
    };
    for (const Case& c :
         {Case{"ThinkPad X1 Carbon Gen 9\n", "", "", "x86_64", "ThinkPad X1 Carbon Gen 9", false},
          Case{"", nuls("Apple MacBook Air (M1, 2020)|"),
               nuls("apple,j313|apple,t8103|apple,arm-platform|"), "aarch64",
               "Apple MacBook Air (M1, 2020)", true},
          Case{"", nuls("Raspberry Pi 4 Model B Rev 1.4|"),
               nuls("raspberrypi,4-model-b|brcm,bcm2711|"), "aarch64",
               "Raspberry Pi 4 Model B Rev 1.4", false},
          // An x86 machine never counts, whatever a stray device tree says.
          Case{"Mac mini\n", "", nuls("apple,j274|"), "x86_64", "Mac mini", false},
          // A placeholder in the DMI table falls back to the device tree.
          Case{"To Be Filled By O.E.M.\n", nuls("Board X|"), "", "x86_64", "Board X", false},
          Case{"", "", "", "x86_64", "", false}}) {
        QTemporaryDir root;
        put(root.path() + "/sys/devices/virtual/dmi/id/product_name", c.productName);
        put(root.path() + "/proc/device-tree/model", c.deviceTreeModel);
        put(root.path() + "/proc/device-tree/compatible", c.compatible);
        const MachineInfo info = MachineInfo::read(root.path(), c.machine);
        EXPECT_EQ(info.hardwareModel, c.model);
        EXPECT_EQ(info.appleSilicon, c.appleSilicon) << c.model.toStdString();
    }
}

} // namespace
