#include "appearance/AppearanceConfiguration.h"
#include "appearance/GlassBackground.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace lumetra;

namespace lumetra {
static void PrintTo(const AppearanceConfiguration& c, std::ostream* out) {
    *out << rawValue(c.mode) << ' ' << c.backgroundOpacity << ' ' << c.overlayOpacity << ' '
         << c.blurIntensity << ' ' << rawValue(c.material) << ' ' << c.vibrancyEnabled;
}
} // namespace lumetra

namespace {

using M = AppearanceMode;
using Material = VisualEffectMaterial;
using Configuration = AppearanceConfiguration;

// The preset of the selected mode, or the stored custom configuration as stored (its own
// mode included), then the two accessibility overrides.
TEST(AppearanceConfigurationTest, ResolvesThePresetOrTheStoredConfigurationAfterTheOverrides) {
    using enum AppearanceMode;
    using enum VisualEffectMaterial;
    const Configuration stored{glass, 0.4, 0.95, 12, menu, true};
    struct Case {
        M selected;
        std::optional<Configuration> stored;
        bool reduceTransparency;
        bool increaseContrast;
        Configuration expected;
    };
    for (const Case& c : std::initializer_list<Case>{
             {glass, {}, false, false, {glass, 0.68, 0.12, 90, hud, true}},
             {glass, {}, false, true, {glass, 0.68, 0.27, 90, hud, true}},
             {subtle, {}, true, false, {subtle, 1.0, 1.0, 25, sidebar, false}},
             {translucent, {}, true, true, {translucent, 1.0, 1.0, 60, popover, false}},
             {custom, stored, false, true, {glass, 0.4, 1.0, 12, menu, true}},
             {solid, stored, false, false, {solid, 0.98, 0.94, 0, sidebar, false}}}) {
        SCOPED_TRACE(std::string(rawValue(c.selected)) + (c.stored ? " stored" : "") +
                     (c.reduceTransparency ? " reduced" : "") +
                     (c.increaseContrast ? " contrast" : ""));
        EXPECT_EQ(
            Configuration::resolve(c.selected, c.stored, c.reduceTransparency, c.increaseContrast),
            c.expected);
    }
    EXPECT_EQ(Configuration(), Configuration::preset(custom));
}

constexpr char kDefaultJson[] =
    R"({"mode":"custom","backgroundOpacity":0.85,"overlayOpacity":0.3,"blurIntensity":50,)"
    R"("material":"automatic","vibrancyEnabled":true})";

// Strict: an object with all six keys, the raw texts exact, numbers as numbers, the flag a
// boolean; other keys ignored, no clamping.
TEST(AppearanceConfigurationTest, DecodesStrictlyAndEncodesOnlyFiniteNumbers) {
    // kDefaultJson changed: "key=json" sets a member, "key" alone removes it.
    const auto decodes = [](const QString& change) {
        QJsonObject object = QJsonDocument::fromJson(kDefaultJson).object();
        const QString key = change.section('=', 0, 0);
        object.remove(key);
        if (change.contains('='))
            object.insert(key,
                          QJsonDocument::fromJson("[" + change.section('=', 1).toUtf8() + "]")[0]);
        return Configuration::fromJson(QJsonDocument(object).toJson()).has_value();
    };
    for (const char* change : {"material=\"hud\"", "overlayOpacity=7.5", "shadow=true"})
        EXPECT_TRUE(decodes(change)) << change;
    for (const char* change :
         {"material=\"Hud\"", "mode=\"frosted\"", "mode=1", "mode", "backgroundOpacity",
          "overlayOpacity", "blurIntensity", "material", "vibrancyEnabled",
          "backgroundOpacity=\"0.5\"", "blurIntensity=null", "vibrancyEnabled=1"})
        EXPECT_FALSE(decodes(change)) << change;
    for (const char* text : {"", "[]", "null", "\"custom\"", "{", "{}"})
        EXPECT_FALSE(Configuration::fromJson(QByteArray(text)).has_value()) << text;

    EXPECT_EQ(Configuration().toJson(), QByteArray(kDefaultJson));
    for (double Configuration::*field :
         {&Configuration::backgroundOpacity, &Configuration::overlayOpacity,
          &Configuration::blurIntensity}) {
        for (const double bad : {std::numeric_limits<double>::infinity(), std::nan("")}) {
            Configuration configuration;
            configuration.*field = bad;
            EXPECT_FALSE(configuration.toJson().has_value());
        }
    }
}

} // namespace

TEST(GlassBackgroundTest, LayersComeToOneColourAtTheBackgroundOpacity) {
    using lumetra::GlassBackground;
    lumetra::AppearanceConfiguration glass =
        lumetra::AppearanceConfiguration::preset(lumetra::AppearanceMode::glass);
    // With vibrancy the material's tint lies under the window colour.
    ASSERT_TRUE(GlassBackground::materialTint(glass, false).has_value());
    // Reduce transparency: no material, an opaque window-colour fill.
    const lumetra::AppearanceConfiguration opaque = lumetra::AppearanceConfiguration::resolve(
        lumetra::AppearanceMode::glass, std::nullopt, true, false);
    EXPECT_FALSE(GlassBackground::materialTint(opaque, true).has_value());
    EXPECT_EQ(GlassBackground::compositeColor(opaque, true), GlassBackground::windowColor(true));
    // Nothing but the overlay at half strength, drawn at half opacity: a quarter alpha.
    lumetra::AppearanceConfiguration thin = opaque;
    thin.overlayOpacity = 0.5;
    thin.backgroundOpacity = 0.5;
    EXPECT_NEAR(GlassBackground::compositeColor(thin, false).alphaF(), 0.25, 0.01);
    // `automatic` under glass is the HUD material.
    lumetra::AppearanceConfiguration hud = glass;
    hud.material = lumetra::VisualEffectMaterial::hud;
    glass.material = lumetra::VisualEffectMaterial::automatic;
    EXPECT_EQ(GlassBackground::materialTint(glass, true), GlassBackground::materialTint(hud, true));
    // Opaque drawing (no compositor) ends fully opaque.
    EXPECT_EQ(GlassBackground::compositeColor(glass, false, true).alpha(), 255);
}
