// Every settings enumeration and both appearance ones, through the store that holds them.
#include "settings/SettingsStore.h"

#include <QTranslator>

#include <sstream>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

// The raw values in picker order, each checked to construct its own case; then the near
// misses given, each checked to construct nothing.
template <TableEnum E>
std::string casesOf(std::initializer_list<RawType<E>> nearMisses) {
    std::ostringstream raws;
    for (E value : allCases<E>()) {
        raws << rawValue(value) << ' ';
        EXPECT_EQ(fromRaw<E>(rawValue(value)), value);
    }
    for (const RawType<E> miss : nearMisses)
        EXPECT_FALSE(fromRaw<E>(miss).has_value()) << miss;
    return raws.str();
}

// The raw values are what the settings file holds; construction is exact and case-sensitive,
// and the intervals compare seconds exactly.
TEST(SettingsValueTypesTest, RawValuesInPickerOrderConstructOnlyTheirOwnCase) {
    const std::pair<std::string, const char*> table[] = {
        {casesOf<MenuBarMetric>({"CPU", " cpu", "cpu ", "", "cpu\n", "gpu"}),
         "cpu memory temperature download upload "},
        {casesOf<MenuBarSeparator>({"VerticalBar"}), "space dot verticalBar bullet "},
        {casesOf<MemoryDisplayFormat>({"percentage"}),
         "percentageOnly usedOnly usedOverTotal both "},
        {casesOf<TemperatureDisplayFormat>({"degreeswithunit"}),
         "degreesOnly degreesWithUnit labeledCPU labeledTemp "},
        {casesOf<MenuBarDisplayStyle>({"text"}), "textOnly iconAndText compactGraph miniBar "},
        {casesOf<ThemePreference>({"System"}), "system light dark "},
        {casesOf<MetricCardStyle>({"compactRows"}), "classic ring compactRow sparklineArea grid "},
        {casesOf<UpdateInterval>({0.25, 0.49, 1.5, 3, 10, 1.0000000000000002, -1}), "0.5 1 2 5 "},
        {casesOf<TemperatureInterval>({0.5, 1.5, 2.0000000000000004}), "1 2 5 10 "},
    };
    for (const auto& [actual, expected] : table)
        EXPECT_EQ(actual, expected);
}

// Answers every lookup with its context and key, to see that labels go through translation
// with the English text as key; the material "HUD" reads the same in every language.
TEST(SettingsValueTypesTest, LabelsAreLookedUpWithTheEnglishTextAsKey) {
    struct Marking : QTranslator {
        QString translate(const char* context, const char* source, const char*,
                          int) const override {
            return QStringLiteral("%1:%2").arg(context, source);
        }
        bool isEmpty() const override { return false; }
    } translator;
    QCoreApplication::installTranslator(&translator);
    const QStringList labels{displayName(MenuBarSeparator::verticalBar),
                             title(AppearanceMode::subtle), description(AppearanceMode::solid),
                             title(VisualEffectMaterial::sidebar),
                             title(VisualEffectMaterial::hud)};
    QCoreApplication::removeTranslator(&translator);
    EXPECT_EQ(labels.join('|'), "MenuBarSeparator:Vertical Bar|AppearanceMode:Subtle|"
                                "AppearanceMode:Nearly opaque background for maximum legibility.|"
                                "VisualEffectMaterial:Sidebar|HUD");
    EXPECT_EQ(displayName(MenuBarSeparator::verticalBar), QStringLiteral("Vertical Bar"));
}

} // namespace
