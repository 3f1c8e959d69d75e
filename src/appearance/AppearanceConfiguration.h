#pragma once

#include "appearance/AppearanceMode.h"
#include "appearance/VisualEffectMaterial.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace lumetra {

// What the window background is drawn from. The type does not clamp: the controls that edit
// a custom configuration enforce their own ranges.
struct AppearanceConfiguration {
    AppearanceMode mode = AppearanceMode::custom;
    double backgroundOpacity = 0.85;
    double overlayOpacity = 0.3;
    double blurIntensity = 50;
    VisualEffectMaterial material = VisualEffectMaterial::automatic;
    bool vibrancyEnabled = true;

    friend bool operator==(const AppearanceConfiguration&,
                           const AppearanceConfiguration&) = default;

    // The configuration a fixed mode stands for; for `custom` the one used while the user
    // has stored none (which is also the default-constructed value).
    static AppearanceConfiguration preset(AppearanceMode mode);

    // Compact JSON with the six keys in field order. No value when a number is not finite,
    // since JSON cannot carry it.
    std::optional<QByteArray> toJson() const;

    // Strict: a JSON object with all six keys, the raw texts exact, numbers as numbers and
    // the flag as a boolean. Other keys are ignored.
    static std::optional<AppearanceConfiguration> fromJson(QByteArrayView json);

    // The configuration actually drawn for the selected mode, after the two accessibility
    // overrides.
    static AppearanceConfiguration
    resolve(AppearanceMode selected, const std::optional<AppearanceConfiguration>& storedCustom,
            bool reduceTransparency, bool increaseContrast);
};

} // namespace lumetra
