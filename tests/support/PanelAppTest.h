#pragma once

#include "settings/SettingsTestSupport.h"

#include <gtest/gtest.h>

namespace lumetra::testing {

// The whole panel app over a temporary configuration folder (onboarded, no welcome), with
// update checks aimed at a closed local port.
class PanelAppTest : public ::testing::Test {
protected:
    void SetUp() override {
        qputenv("XDG_CONFIG_HOME", folder.dir.path().toUtf8());
        qputenv("LUMETRA_UPDATE_MANIFEST_URL", "http://127.0.0.1:9/appcast.json");
        qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS");
    }
    void TearDown() override { qunsetenv("LUMETRA_UITEST_OPEN_SETTINGS"); }

    SettingsFolder folder{
        QByteArray(R"({"hasCompletedOnboarding": true, "showWelcomeScreen": false})")};
};

} // namespace lumetra::testing
