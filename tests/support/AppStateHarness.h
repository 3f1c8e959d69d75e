#pragma once

#include "appearance/AppearanceManager.h"
#include "core/AppState.h"
#include "core/SystemMonitor.h"
#include "desktop/LoginItemService.h"
#include "settings/SettingsStore.h"
#include "settings/SettingsTestSupport.h"
#include "updates/UpdateAlertPresenting.h"
#include "updates/UpdateChecking.h"

#include <memory>

namespace lumetra::testing {

struct FakeLoginItem : LoginItemService {
    bool isEnabled() const override { return enabled; }
    std::optional<QString> registerItem() override { return record("register", true); }
    std::optional<QString> unregisterItem() override { return record("unregister", false); }
    std::optional<QString> record(const char* call, bool on) {
        calls << QString::fromLatin1(call);
        if (!failure)
            enabled = on;
        return failure;
    }
    bool enabled = false;
    std::optional<QString> failure;
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
    std::optional<CPUUsage> currentUsage() override { return CPUUsage{23, {}}; }
    std::optional<MemorySnapshot> currentSnapshot() override { return std::nullopt; }
    MemoryPressureLevel pressure() override { return MemoryPressureLevel::normal; }
    std::optional<NetworkCounterSample> currentCounters() override { return std::nullopt; }
    TemperatureReading currentReading() override { return {}; }
    DiskVolumeList currentVolumes() override { return {}; }
};

// One application state over a temporary settings file, a fake login item, no network and a
// monitor that samples nothing until started. The state is made on first use, so a test can
// set the services up first.
struct AppStateHarness {
    explicit AppStateHarness(const QByteArray& settingsFile = {}) : folder(settingsFile) {
        qputenv("XDG_CONFIG_HOME", folder.dir.path().toUtf8());
        defaults = std::make_unique<UserDefaults>(folder.file());
        settings = std::make_unique<SettingsStore>(*defaults);
    }

    AppState& state() {
        if (!appState) {
            auto machine = std::make_shared<StillMachine>();
            appState = std::make_unique<AppState>(
                AppState::Services{*settings, appearance, updates, updates, loginItem},
                std::make_unique<SystemMonitor>(
                    SystemMonitor::Providers{machine, machine, machine, machine, machine}, 1, 2));
            appState->setCurrentVersionForTesting(QStringLiteral("1.2"));
        }
        return *appState;
    }

    // The value stored under `key` in the settings file as it is on disk now.
    QVariant stored(const QString& key) const { return folder.domain().value(key); }

    SettingsFolder folder;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<SettingsStore> settings;
    AppearanceManager appearance{false, false};
    QuietUpdates updates;
    FakeLoginItem loginItem;
    std::unique_ptr<AppState> appState;
};

} // namespace lumetra::testing
