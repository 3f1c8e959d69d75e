#pragma once

#include <QString>

namespace lumetra {

// What the Advanced tab says about the machine, read from the firmware's tables under a root
// ("/" on a live system, a fixture tree in tests).
struct MachineInfo {
    // The firmware's product name (DMI), else the device tree's model; empty when neither.
    QString hardwareModel;
    // An Apple Silicon Mac: a 64-bit ARM machine whose device tree says "apple,".
    bool appleSilicon = false;

    // `machine` is uname's machine field ("aarch64", "x86_64").
    static MachineInfo read(const QString& root, const QString& machine);
    // The live system.
    static MachineInfo current();
};

} // namespace lumetra
