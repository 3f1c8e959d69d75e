// The German catalogue as the build compiles it, loaded the way the application loads it: each
// case calls the real code, so a text whose context or key differs between the code and the
// catalogue (a helper with a fixed context, a dotted key, an escaped dash) shows up here.

#include "appearance/AppearanceMode.h"
#include "format/MetricCatalogue.h"
#include "format/MetricsTooltip.h"
#include "model/ThermalState.h"
#include "settings/MenuBarMetric.h"
#include "settings/ThemePreference.h"
#include "updates/UpdateAlert.h"

#include <QCoreApplication>
#include <QTranslator>

#include <functional>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace lumetra {
namespace {

struct TranslatedText {
    const char* name;
    std::function<QString()> text;
    const char* english;
    const char* german;
};

void PrintTo(const TranslatedText& text, std::ostream* out) {
    *out << text.name;
}

SystemMetrics metricsWithoutTemperature() {
    SystemMetrics metrics;
    metrics.temperature = std::nullopt;
    return metrics;
}

QString tooltipLine(int index) {
    return metricsTooltip(metricsWithoutTemperature(), {}).split(u'\n').value(index);
}

const TranslatedText kTexts[] = {
    {"MetricName", [] { return metricName(MenuBarMetric::memory); }, "Memory", "Speicher"},
    {"ThemeLabel", [] { return displayName(ThemePreference::dark); }, "Dark", "Dunkel"},
    {"AppearanceTitle", [] { return title(AppearanceMode::glass); }, "Glass", "Glas"},
    {"ThermalState", [] { return label(ThermalState::fair); }, "Fair", "Erhöht"},
    {"DottedThermalKey", [] { return label(ThermalState::critical); }, "Critical", "Kritisch"},
    // The line's last word is the raw pressure level, which stays untranslated.
    {"TooltipPressure", [] { return tooltipLine(2).section(u' ', 0, -2); }, "Memory pressure",
     "Speicherdruck"},
    {"TooltipNoTemperature", [] { return tooltipLine(3); }, "Temperature Unavailable",
     "Temperatur nicht verfügbar"},
    {"UpdateTitle", [] { return UpdateAlert::updateAvailable("2.0", "1.0").message; },
     "A New Version is Available", "Eine neue Version ist verfügbar"},
    {"UpdateTextWithDash",
     [] { return UpdateAlert::updateAvailable("2.0", "1.0").informativeText; },
     "lumetra 2.0 is available \u2014 you have 1.0.", "lumetra 2.0 ist verfügbar – Sie haben 1.0."},
    {"DottedDownloadKey",
     [] { return UpdateAlert::updateAvailable("2.0", "1.0").buttons.join(u'|'); }, "Download|Later",
     "Herunterladen|Später"},
    {"CheckFailed", [] { return UpdateAlert::checkFailed().message; }, "Couldn't Check for Updates",
     "Suche nach Updates fehlgeschlagen"},
};

class GermanCatalogueTest : public ::testing::TestWithParam<TranslatedText> {};

TEST_P(GermanCatalogueTest, TranslatesThroughTheCodesOwnContextAndKey) {
    const TranslatedText& text = GetParam();
    QTranslator translator;
    ASSERT_TRUE(translator.load(QStringLiteral("lumetra_de"),
                                QStringLiteral(LUMETRA_TRANSLATIONS_BUILD_DIR)))
        << "no lumetra_de.qm in " << LUMETRA_TRANSLATIONS_BUILD_DIR;
    // The English text first: it shows the case reads the text it means to.
    const QString english = text.text();
    ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
    const QString german = text.text();
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(english.toStdString(), text.english);
    EXPECT_EQ(german.toStdString(), text.german);
}

INSTANTIATE_TEST_SUITE_P(Texts, GermanCatalogueTest, ::testing::ValuesIn(kTexts),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace lumetra
