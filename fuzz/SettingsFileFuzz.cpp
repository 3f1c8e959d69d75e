// Arbitrary bytes as the settings file: the typed format must write back what it read, and
// the store must load anything without crashing, moving a bad file aside whole and keeping
// every key it does not know when it writes.
#include "settings/SettingsFileFormat.h"
#include "settings/SettingsStore.h"
#include "settings/UserDefaults.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

using namespace lumetra;

namespace {

QTemporaryDir* scratch = nullptr;

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void check(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static QCoreApplication app(*argc, *argv);
    // Every bad input logs a line; the fuzzer's own output matters more.
    QLoggingCategory::setFilterRules(QStringLiteral("io.lumetra.Lumetra.settings.warning=false"));
    // Memory-backed when available: the store saves through fsync on every assignment.
    const QString base =
        QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : QDir::tempPath();
    scratch = new QTemporaryDir(base + QStringLiteral("/lumetra-fuzz-XXXXXX"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));

    const SettingsFileFormat::Parsed parsed = SettingsFileFormat::parse(bytes);
    check(parsed.domain.has_value() != !parsed.error.isEmpty());
    if (parsed.domain) {
        const QByteArray text = SettingsFileFormat::serialize(*parsed.domain);
        const SettingsFileFormat::Parsed again = SettingsFileFormat::parse(text);
        check(again.domain.has_value());
        check(SettingsFileFormat::identical(*again.domain, *parsed.domain));
        check(SettingsFileFormat::serialize(*again.domain) == text);
    }

    const QString directory = scratch->path() + QStringLiteral("/lumetra");
    const QString path = directory + QStringLiteral("/settings.json");
    QDir(directory).removeRecursively();
    QDir().mkpath(directory);
    {
        QFile file(path);
        check(file.open(QIODevice::WriteOnly));
        check(file.write(bytes) == bytes.size());
    }

    UserDefaults defaults(path);
    SettingsStore store(defaults);
    const QStringList others = QDir(directory).entryList(QDir::Files | QDir::NoDotAndDotDot);
    QVariantMap loaded;
    if (parsed.domain) {
        // Loading writes nothing but an order offered the metrics its file did not know.
        check(others.size() == 1);
        const QByteArray now = readAll(path);
        if (now != bytes) {
            const SettingsFileFormat::Parsed upgraded = SettingsFileFormat::parse(now);
            check(upgraded.domain.has_value());
            loaded = *upgraded.domain;
            QVariantMap rest = loaded;
            QVariantMap before = *parsed.domain;
            for (const QString& key :
                 {QStringLiteral("metricOrder"), QStringLiteral("knownMetrics")}) {
                rest.remove(key);
                before.remove(key);
            }
            check(SettingsFileFormat::identical(rest, before));
        } else {
            loaded = *parsed.domain;
        }
    } else {
        // Moved aside, byte for byte.
        check(others.size() == 1 && others[0] != QStringLiteral("settings.json"));
        check(readAll(directory + '/' + others[0]) == bytes);
    }

    store.setSeparator(store.separator());
    const SettingsFileFormat::Parsed written = SettingsFileFormat::parse(readAll(path));
    check(written.domain.has_value());
    QVariantMap kept = *written.domain;
    check(kept.take(QStringLiteral("separator")).typeId() == QMetaType::QString);
    QVariantMap original = loaded;
    original.remove(QStringLiteral("separator"));
    check(SettingsFileFormat::identical(kept, original));
    return 0;
}
