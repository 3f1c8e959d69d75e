#include "settings/MemoryDisplayFormat.h"
#include "settings/MenuBarDisplayStyle.h"
#include "settings/MenuBarMetric.h"
#include "settings/MenuBarMetricSet.h"
#include "settings/MenuBarSeparator.h"
#include "settings/MetricCardStyle.h"
#include "settings/TemperatureDisplayFormat.h"
#include "settings/TemperatureInterval.h"
#include "settings/ThemePreference.h"
#include "settings/UpdateInterval.h"

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace lumetra;

namespace {

template <typename E>
std::vector<std::string> raws() {
    std::vector<std::string> all;
    for (E value : allCases<E>())
        all.emplace_back(rawValue(value));
    return all;
}

template <typename E>
std::vector<std::string> labels() {
    std::vector<std::string> all;
    for (E value : allCases<E>())
        all.push_back(displayName(value).toStdString());
    return all;
}

using Texts = std::vector<std::string>;

// The raw values are what the settings file holds and the order is what pickers show.
TEST(SettingsValueTypesTest, CasesRawValuesAndLabelsInDeclarationOrder) {
    EXPECT_EQ(raws<MenuBarMetric>(), (Texts{"cpu", "memory", "temperature", "download", "upload"}));
    EXPECT_EQ(labels<MenuBarMetric>(),
              (Texts{"CPU", "Memory", "Temperature", "Download", "Upload"}));
    EXPECT_EQ(raws<MenuBarSeparator>(), (Texts{"space", "dot", "verticalBar", "bullet"}));
    EXPECT_EQ(labels<MenuBarSeparator>(), (Texts{"Space", "Dot", "Vertical Bar", "Bullet"}));
    EXPECT_EQ(raws<MemoryDisplayFormat>(),
              (Texts{"percentageOnly", "usedOnly", "usedOverTotal", "both"}));
    EXPECT_EQ(labels<MemoryDisplayFormat>(),
              (Texts{"Percentage only", "Used only", "Used / Total", "Both"}));
    EXPECT_EQ(raws<TemperatureDisplayFormat>(),
              (Texts{"degreesOnly", "degreesWithUnit", "labeledCPU", "labeledTemp"}));
    EXPECT_EQ(raws<MenuBarDisplayStyle>(),
              (Texts{"textOnly", "iconAndText", "compactGraph", "miniBar"}));
    EXPECT_EQ(labels<MenuBarDisplayStyle>(),
              (Texts{"Text", "Icon & Text", "Compact Graph", "Mini Bar"}));
    EXPECT_EQ(raws<ThemePreference>(), (Texts{"system", "light", "dark"}));
    EXPECT_EQ(labels<ThemePreference>(), (Texts{"System", "Light", "Dark"}));
    EXPECT_EQ(raws<MetricCardStyle>(),
              (Texts{"classic", "ring", "compactRow", "sparklineArea", "grid"}));
    // The case is singular, the label plural.
    EXPECT_EQ(labels<MetricCardStyle>(),
              (Texts{"Classic", "Ring", "Compact Rows", "Sparkline Area", "Grid"}));
    EXPECT_EQ(labels<UpdateInterval>(), (Texts{"0.5 s", "1 s", "2 s", "5 s"}));
    EXPECT_EQ(labels<TemperatureInterval>(), (Texts{"1 s", "2 s", "5 s", "10 s"}));
}

template <typename E>
void expectEveryRawValueConstructsItsCase() {
    for (E value : allCases<E>())
        EXPECT_EQ(fromRaw<E>(rawValue(value)), value);
}

TEST(SettingsValueTypesTest, EveryRawValueConstructsItsOwnCase) {
    expectEveryRawValueConstructsItsCase<MenuBarMetric>();
    expectEveryRawValueConstructsItsCase<MenuBarSeparator>();
    expectEveryRawValueConstructsItsCase<MemoryDisplayFormat>();
    expectEveryRawValueConstructsItsCase<TemperatureDisplayFormat>();
    expectEveryRawValueConstructsItsCase<MenuBarDisplayStyle>();
    expectEveryRawValueConstructsItsCase<ThemePreference>();
    expectEveryRawValueConstructsItsCase<MetricCardStyle>();
    expectEveryRawValueConstructsItsCase<UpdateInterval>();
    expectEveryRawValueConstructsItsCase<TemperatureInterval>();
}

TEST(SettingsValueTypesTest, ConstructionFromTextIsExactAndCaseSensitive) {
    for (const char* text : {"CPU", "Cpu", " cpu", "cpu ", "", "cpu\n", "gpu"}) {
        EXPECT_FALSE(fromRaw<MenuBarMetric>(std::string_view(text)).has_value()) << text;
        EXPECT_FALSE(fromRaw<MenuBarMetric>(QStringView(QString::fromUtf8(text)))) << text;
    }
    EXPECT_EQ(fromRaw<MenuBarMetric>(QStringView(u"cpu")), MenuBarMetric::cpu);
    EXPECT_FALSE(fromRaw<MetricCardStyle>("compactRows").has_value());
    EXPECT_FALSE(fromRaw<TemperatureDisplayFormat>("degreeswithunit").has_value());
}

struct IntervalCase {
    double seconds;
    std::optional<UpdateInterval> update;
    std::optional<TemperatureInterval> temperature;
};

class IntervalFromSecondsTest : public ::testing::TestWithParam<IntervalCase> {};

TEST_P(IntervalFromSecondsTest, ComparesSecondsExactly) {
    const IntervalCase& c = GetParam();
    EXPECT_EQ(fromRaw<UpdateInterval>(c.seconds), c.update);
    EXPECT_EQ(fromRaw<TemperatureInterval>(c.seconds), c.temperature);
}

INSTANTIATE_TEST_SUITE_P(
    Table, IntervalFromSecondsTest,
    ::testing::Values(IntervalCase{0.5, UpdateInterval::half, std::nullopt},
                      IntervalCase{1, UpdateInterval::one, TemperatureInterval::one},
                      IntervalCase{2, UpdateInterval::two, TemperatureInterval::two},
                      IntervalCase{5, UpdateInterval::five, TemperatureInterval::five},
                      IntervalCase{10, std::nullopt, TemperatureInterval::ten},
                      IntervalCase{0.25, std::nullopt, std::nullopt},
                      IntervalCase{0.49, std::nullopt, std::nullopt},
                      IntervalCase{1.5, std::nullopt, std::nullopt},
                      IntervalCase{3, std::nullopt, std::nullopt},
                      IntervalCase{1.0000000000000002, std::nullopt, std::nullopt},
                      IntervalCase{-1, std::nullopt, std::nullopt}));

TEST(SettingsValueTypesTest, SecondsAreTheRawValues) {
    EXPECT_EQ(seconds(UpdateInterval::half), 0.5);
    EXPECT_EQ(seconds(UpdateInterval::five), 5.0);
    EXPECT_EQ(seconds(TemperatureInterval::one), 1.0);
    EXPECT_EQ(seconds(TemperatureInterval::ten), 10.0);
}

TEST(SettingsValueTypesTest, JsonHoldsIntervalsAsNumbersAndTheRestAsStrings) {
    const QJsonValue half = toJson(UpdateInterval::half);
    ASSERT_TRUE(half.isDouble());
    EXPECT_EQ(half.toDouble(), 0.5);
    EXPECT_EQ(toJson(TemperatureInterval::ten).toDouble(), 10.0);
    EXPECT_EQ(toJson(MenuBarSeparator::verticalBar), QJsonValue(QStringLiteral("verticalBar")));

    EXPECT_EQ(fromJson<UpdateInterval>(QJsonValue(2)), UpdateInterval::two);
    EXPECT_FALSE(fromJson<UpdateInterval>(QJsonValue(QStringLiteral("0.5"))).has_value());
    EXPECT_EQ(fromJson<MetricCardStyle>(QJsonValue(QStringLiteral("grid"))), MetricCardStyle::grid);
    EXPECT_FALSE(fromJson<MetricCardStyle>(QJsonValue(4)).has_value());
    EXPECT_FALSE(fromJson<ThemePreference>(QJsonValue()).has_value());
}

// Answers every lookup in one context, to see that labels go through translation with the
// English text as key.
class MarkingTranslator : public QTranslator {
public:
    QString translate(const char* context, const char* source, const char*, int) const override {
        if (QByteArrayView(context) == "MenuBarSeparator")
            return QStringLiteral("<%1>").arg(QString::fromUtf8(source));
        return {};
    }
    bool isEmpty() const override { return false; }
};

TEST(SettingsValueTypesTest, LabelsAreLookedUpWithTheEnglishTextAsKey) {
    MarkingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    EXPECT_EQ(displayName(MenuBarSeparator::verticalBar), QStringLiteral("<Vertical Bar>"));
    EXPECT_EQ(displayName(MenuBarMetric::cpu), QStringLiteral("CPU"));
    QCoreApplication::removeTranslator(&translator);
    EXPECT_EQ(displayName(MenuBarSeparator::verticalBar), QStringLiteral("Vertical Bar"));
}

TEST(MenuBarMetricSetTest, MembersComeOutInDeclarationOrderWithoutDuplicates) {
    MenuBarMetricSet set{MenuBarMetric::upload, MenuBarMetric::cpu, MenuBarMetric::upload};
    EXPECT_EQ(set.size(), 2);
    EXPECT_EQ(set.values(), (QList<MenuBarMetric>{MenuBarMetric::cpu, MenuBarMetric::upload}));
    set.remove(MenuBarMetric::cpu);
    set.remove(MenuBarMetric::memory);
    EXPECT_EQ(set, MenuBarMetricSet{MenuBarMetric::upload});
    set.remove(MenuBarMetric::upload);
    EXPECT_TRUE(set.isEmpty());
}

} // namespace
