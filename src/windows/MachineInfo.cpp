#include "windows/MachineInfo.h"

#include <QFile>

#include <sys/utsname.h>

namespace lumetra {

namespace {

// Small firmware attributes; device-tree strings end in NUL and may hold several.
QByteArray readSmall(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.read(4096);
}

QString firstString(const QByteArray& bytes) {
    const qsizetype end = bytes.indexOf('\0');
    return QString::fromUtf8(end < 0 ? bytes : bytes.left(end)).trimmed();
}

} // namespace

MachineInfo MachineInfo::read(const QString& root, const QString& machine) {
    MachineInfo info;
    const QString base = root.endsWith(QLatin1Char('/')) ? root.chopped(1) : root;
    info.hardwareModel =
        firstString(readSmall(base + QStringLiteral("/sys/devices/virtual/dmi/id/product_name")));
    // Placeholders some firmware leaves in the DMI table say nothing about the machine.
    static const QStringList kPlaceholders{QStringLiteral("To Be Filled By O.E.M."),
                                           QStringLiteral("System Product Name"),
                                           QStringLiteral("Default string")};
    if (kPlaceholders.contains(info.hardwareModel))
        info.hardwareModel.clear();
    if (info.hardwareModel.isEmpty())
        info.hardwareModel =
            firstString(readSmall(base + QStringLiteral("/proc/device-tree/model")));

    if (machine == QLatin1String("aarch64") || machine == QLatin1String("arm64")) {
        const QByteArray compatible =
            readSmall(base + QStringLiteral("/proc/device-tree/compatible"));
        for (const QByteArray& entry : compatible.split('\0')) {
            if (entry.startsWith("apple,")) {
                info.appleSilicon = true;
                break;
            }
        }
    }
    return info;
}

MachineInfo MachineInfo::current() {
    struct utsname names {};
    const QString machine = uname(&names) == 0 ? QString::fromUtf8(names.machine) : QString();
    return read(QStringLiteral("/"), machine);
}

} // namespace lumetra
