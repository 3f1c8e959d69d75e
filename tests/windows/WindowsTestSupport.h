#pragma once

#include "appearance/AppearanceManager.h"
#include "core/AppState.h"
#include "core/SystemMonitor.h"
#include "desktop/LoginItemService.h"
#include "settings/SettingsStore.h"
#include "settings/SettingsTestSupport.h"
#include "updates/UpdateAlertPresenting.h"
#include "updates/UpdateChecking.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

namespace lumetra::testing {

struct FakeLoginItem : LoginItemService {
    bool isEnabled() const override { return enabled; }
    std::optional<QString> registerItem() override {
        calls << QStringLiteral("register");
        enabled = true;
        return std::nullopt;
    }
    std::optional<QString> unregisterItem() override {
        calls << QStringLiteral("unregister");
        enabled = false;
        return std::nullopt;
    }
    bool enabled = false;
    QStringList calls;
};

struct QuietUpdates : UpdateChecking, UpdateAlertPresenting {
    void fetchLatestManifest(Completion) override { ++fetches; }
    int present(const UpdateAlert&) override { return 0; }
    void openURL(const QUrl&) override {}
    int fetches = 0;
};

struct StillMachine : CPUProviding,
                      MemoryProviding,
                      NetworkProviding,
                      TemperatureProviding,
                      DiskProviding {
    std::optional<double> currentUsage() override { return 23; }
    std::optional<MemorySnapshot> currentSnapshot() override { return std::nullopt; }
    MemoryPressureLevel pressure() override { return MemoryPressureLevel::normal; }
    std::optional<NetworkCounterSample> currentCounters() override { return std::nullopt; }
    TemperatureReading currentReading() override { return {}; }
    DiskVolumeList currentVolumes() override { return {}; }
};

// One application state over a temporary settings file, a fake login item, no network and a
// monitor that samples nothing until started.
struct WindowsHarness {
    explicit WindowsHarness(const QByteArray& settingsFile = {}) : folder(settingsFile) {
        qputenv("XDG_CONFIG_HOME", folder.dir.path().toUtf8());
        defaults = std::make_unique<UserDefaults>(folder.file());
        settings = std::make_unique<SettingsStore>(*defaults);
        auto machine = std::make_shared<StillMachine>();
        state = std::make_unique<AppState>(
            AppState::Services{*settings, appearance, updates, updates, loginItem},
            std::make_unique<SystemMonitor>(
                SystemMonitor::Providers{machine, machine, machine, machine, machine}, 1, 2));
        state->setCurrentVersionForTesting(QStringLiteral("1.2"));
    }

    // The value stored under `key` in the settings file as it is on disk now.
    QVariant stored(const QString& key) const { return folder.domain().value(key); }
    bool storedHas(const QString& key) const { return folder.domain().contains(key); }

    SettingsFolder folder;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<SettingsStore> settings;
    AppearanceManager appearance{false, false};
    QuietUpdates updates;
    FakeLoginItem loginItem;
    std::unique_ptr<AppState> state;
};

template <typename T = QWidget>
T* child(const QWidget& root, const QString& name) {
    T* found = root.findChild<T*>(name);
    EXPECT_NE(found, nullptr) << name.toStdString();
    return found;
}

// Runs queued tasks (interval hand-overs, coalesced redraws).
inline void settle() {
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

} // namespace lumetra::testing
