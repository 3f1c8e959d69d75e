#include "appearance/AppearanceConfiguration.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTranslator>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace lumetra;

namespace {

using Material = VisualEffectMaterial;
using Mode = AppearanceMode;

void expectConfiguration(const AppearanceConfiguration& actual,
                         const AppearanceConfiguration& expected) {
    EXPECT_EQ(actual.mode, expected.mode);
    EXPECT_DOUBLE_EQ(actual.backgroundOpacity, expected.backgroundOpacity);
    EXPECT_DOUBLE_EQ(actual.overlayOpacity, expected.overlayOpacity);
    EXPECT_DOUBLE_EQ(actual.blurIntensity, expected.blurIntensity);
    EXPECT_EQ(actual.material, expected.material);
    EXPECT_EQ(actual.vibrancyEnabled, expected.vibrancyEnabled);
}

TEST(AppearanceModeTest, CasesInPickerOrderWithTheirTexts) {
    std::vector<std::string> raw;
    std::vector<std::string> titles;
    for (Mode mode : kAllAppearanceModes) {
        raw.emplace_back(rawValue(mode));
        titles.push_back(title(mode).toStdString());
        EXPECT_EQ(appearanceModeFromRaw(QString::fromLatin1(rawValue(mode).data())), mode);
    }
    EXPECT_EQ(raw, (std::vector<std::string>{"solid", "subtle", "translucent", "glass", "custom"}));
    EXPECT_EQ(titles,
              (std::vector<std::string>{"Solid", "Subtle", "Translucent", "Glass", "Custom"}));
    EXPECT_EQ(description(Mode::glass),
              QStringLiteral("Maximum glass effect, macOS-style vibrancy."));
    EXPECT_EQ(description(Mode::solid),
              QStringLiteral("Nearly opaque background for maximum legibility."));
    EXPECT_FALSE(appearanceModeFromRaw(u"Glass").has_value());
}

class UpperCaseTranslator : public QTranslator {
public:
    QString translate(const char*, const char* source, const char*, int) const override {
        return QString::fromUtf8(source).toUpper();
    }
    bool isEmpty() const override { return false; }
};

TEST(VisualEffectMaterialTest, TitlesAreTranslatedExceptHUD) {
    std::vector<std::string> raw;
    for (Material material : kAllVisualEffectMaterials)
        raw.emplace_back(rawValue(material));
    EXPECT_EQ(raw, (std::vector<std::string>{"automatic", "popover", "hud", "sidebar", "menu"}));

    UpperCaseTranslator translator;
    QCoreApplication::installTranslator(&translator);
    EXPECT_EQ(title(Material::sidebar), QStringLiteral("SIDEBAR"));
    EXPECT_EQ(title(Mode::subtle), QStringLiteral("SUBTLE"));
    QCoreApplication::removeTranslator(&translator);
    EXPECT_EQ(title(Material::hud), QStringLiteral("HUD"));
    EXPECT_EQ(title(Material::automatic), QStringLiteral("Automatic"));
}

TEST(AppearanceConfigurationTest, PresetsOfTheFixedModes) {
    expectConfiguration(AppearanceConfiguration::preset(Mode::solid),
                        {Mode::solid, 0.98, 0.94, 0, Material::sidebar, false});
    expectConfiguration(AppearanceConfiguration::preset(Mode::subtle),
                        {Mode::subtle, 0.93, 0.55, 25, Material::sidebar, true});
    expectConfiguration(AppearanceConfiguration::preset(Mode::translucent),
                        {Mode::translucent, 0.82, 0.32, 60, Material::popover, true});
    expectConfiguration(AppearanceConfiguration::preset(Mode::glass),
                        {Mode::glass, 0.68, 0.12, 90, Material::hud, true});
    expectConfiguration(AppearanceConfiguration::preset(Mode::custom),
                        {Mode::custom, 0.85, 0.30, 50, Material::automatic, true});
    EXPECT_EQ(AppearanceConfiguration(), AppearanceConfiguration::preset(Mode::custom));
}

struct ResolveCase {
    const char* name;
    Mode selected;
    std::optional<AppearanceConfiguration> stored;
    bool reduceTransparency;
    bool increaseContrast;
    AppearanceConfiguration expected;
};

class ResolveTest : public ::testing::TestWithParam<ResolveCase> {};

TEST_P(ResolveTest, GivesTheEffectiveConfiguration) {
    const ResolveCase& c = GetParam();
    expectConfiguration(AppearanceConfiguration::resolve(c.selected, c.stored, c.reduceTransparency,
                                                         c.increaseContrast),
                        c.expected);
}

const AppearanceConfiguration kStored{Mode::glass, 0.4, 0.95, 12, Material::menu, true};

INSTANTIATE_TEST_SUITE_P(
    Table, ResolveTest,
    ::testing::Values(ResolveCase{"GlassWithContrast",
                                  Mode::glass,
                                  std::nullopt,
                                  false,
                                  true,
                                  {Mode::glass, 0.68, 0.27, 90, Material::hud, true}},
                      ResolveCase{"SubtleWithReducedTransparency",
                                  Mode::subtle,
                                  std::nullopt,
                                  true,
                                  false,
                                  {Mode::subtle, 1.0, 1.0, 25, Material::sidebar, false}},
                      ResolveCase{"BothFlagsKeepTheOverlayAtOne",
                                  Mode::translucent,
                                  std::nullopt,
                                  true,
                                  true,
                                  {Mode::translucent, 1.0, 1.0, 60, Material::popover, false}},
                      ResolveCase{"CustomWithNothingStored",
                                  Mode::custom,
                                  std::nullopt,
                                  false,
                                  false,
                                  {Mode::custom, 0.85, 0.30, 50, Material::automatic, true}},
                      // The stored configuration's own mode field is carried through.
                      ResolveCase{"StoredCustomClampsContrastAtOne",
                                  Mode::custom,
                                  kStored,
                                  false,
                                  true,
                                  {Mode::glass, 0.4, 1.0, 12, Material::menu, true}},
                      ResolveCase{"StoredCustomIgnoredForAFixedMode",
                                  Mode::solid,
                                  kStored,
                                  false,
                                  false,
                                  {Mode::solid, 0.98, 0.94, 0, Material::sidebar, false}}),
    [](const auto& info) { return std::string(info.param.name); });

constexpr const char* kDefaultJson =
    R"({"mode":"custom","backgroundOpacity":0.85,"overlayOpacity":0.3,"blurIntensity":50,)"
    R"("material":"automatic","vibrancyEnabled":true})";

TEST(AppearanceConfigurationTest, EncodesTheSixKeysInFieldOrder) {
    EXPECT_EQ(AppearanceConfiguration().toJson(), QByteArray(kDefaultJson));
    const AppearanceConfiguration glass = AppearanceConfiguration::preset(Mode::glass);
    EXPECT_EQ(AppearanceConfiguration::fromJson(*glass.toJson()), glass);
}

TEST(AppearanceConfigurationTest, NumbersJsonCannotCarryFailToEncode) {
    AppearanceConfiguration configuration;
    configuration.blurIntensity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(configuration.toJson().has_value());
    configuration.blurIntensity = 10;
    configuration.overlayOpacity = std::nan("");
    EXPECT_FALSE(configuration.toJson().has_value());
}

// Decodes kDefaultJson with one member replaced (or removed when `value` is null).
std::optional<AppearanceConfiguration> decodeWith(const char* key, const QJsonValue& value) {
    QJsonObject object = QJsonDocument::fromJson(kDefaultJson).object();
    if (value.isUndefined())
        object.remove(QLatin1StringView(key));
    else
        object.insert(QLatin1StringView(key), value);
    return AppearanceConfiguration::fromJson(QJsonDocument(object).toJson());
}

struct DecodeCase {
    const char* name;
    const char* key;
    QJsonValue value;
    bool decodes;
};

class DecodeTest : public ::testing::TestWithParam<DecodeCase> {};

TEST_P(DecodeTest, IsStrictAboutKeysAndTypes) {
    const DecodeCase& c = GetParam();
    EXPECT_EQ(decodeWith(c.key, c.value).has_value(), c.decodes);
}

INSTANTIATE_TEST_SUITE_P(
    Table, DecodeTest,
    ::testing::Values(
        DecodeCase{"MaterialHud", "material", QStringLiteral("hud"), true},
        DecodeCase{"MaterialCapitalHud", "material", QStringLiteral("Hud"), false},
        DecodeCase{"ModeUnknown", "mode", QStringLiteral("frosted"), false},
        DecodeCase{"ModeNotAString", "mode", 1, false},
        DecodeCase{"MissingMode", "mode", QJsonValue::Undefined, false},
        DecodeCase{"MissingBackground", "backgroundOpacity", QJsonValue::Undefined, false},
        DecodeCase{"MissingOverlay", "overlayOpacity", QJsonValue::Undefined, false},
        DecodeCase{"MissingBlur", "blurIntensity", QJsonValue::Undefined, false},
        DecodeCase{"MissingMaterial", "material", QJsonValue::Undefined, false},
        DecodeCase{"MissingVibrancy", "vibrancyEnabled", QJsonValue::Undefined, false},
        DecodeCase{"OpacityAsText", "backgroundOpacity", QStringLiteral("0.5"), false},
        DecodeCase{"BlurNull", "blurIntensity", QJsonValue::Null, false},
        DecodeCase{"VibrancyAsNumber", "vibrancyEnabled", 1, false},
        DecodeCase{"OutOfRangeIsNotClamped", "overlayOpacity", 7.5, true},
        DecodeCase{"ExtraKeyIgnored", "shadow", true, true}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(AppearanceConfigurationTest, OnlyAnObjectDecodes) {
    for (const char* text : {"", "[]", "null", "\"custom\"", "{", "{}"})
        EXPECT_FALSE(AppearanceConfiguration::fromJson(QByteArray(text)).has_value()) << text;
}

} // namespace
