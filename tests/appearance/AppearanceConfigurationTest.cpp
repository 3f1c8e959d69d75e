#include "appearance/AppearanceConfiguration.h"

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
