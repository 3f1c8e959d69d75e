#include "format/MetricCatalogue.h"

#include "format/ValueFormatters.h"
#include "model/TemperatureText.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace lumetra {

namespace {

using Shape = MetricValueShape;

QString tooltipText(const char* text) {
    return QCoreApplication::translate("MetricsTooltip", text);
}

// Memory-style figures (memory, swap): percent, used, used / total or used and percent.
Shape appendUsage(QString& out, std::uint64_t used, std::uint64_t total, double percentage,
                  MemoryDisplayFormat format) {
    switch (format) {
    case MemoryDisplayFormat::percentageOnly:
        appendWholePercent(out, percentage);
        return Shape::prefixed;
    case MemoryDisplayFormat::usedOnly:
        appendBytes(out, used);
        return Shape::prefixed;
    case MemoryDisplayFormat::usedOverTotal:
        // The slash form stands alone, without a prefix.
        appendUsedOverTotal(out, used, total);
        return Shape::alone;
    case MemoryDisplayFormat::both:
        appendBytes(out, used);
        out.append(u' ');
        appendWholePercent(out, percentage);
        return Shape::prefixed;
    }
    return Shape::missing;
}

// --- CPU --------------------------------------------------------------------------------

Shape cpuValue(QString& out, const SystemMetrics& m, const LabelSettings&) {
    appendWholePercent(out, m.cpuUsage);
    return Shape::prefixed;
}
std::optional<double> cpuLevel(const SystemMetrics& m) {
    return m.cpuUsage;
}
// Before the first baseline the graph still moves on, at 0.
std::optional<double> cpuSampled(const SystemMetrics& m) {
    return m.cpuUsage;
}
void cpuWiden(SystemMetrics& m) {
    m.cpuUsage = 100;
}
void cpuWrite(FigureWriter& out, const SystemMetrics& m) {
    // A figure that could not be read is null, never a made-up 0.
    out.number("cpuUsage", m.cpuUsageValid ? std::optional(m.cpuUsage) : std::nullopt);
    out.numbers("cpuCores", m.cpuCores);
}
std::span<const double> cpuParts(const SystemMetrics& m) {
    return m.cpuCores;
}
QString cpuTooltip(const SystemMetrics& m) {
    return tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "CPU")) + u' ' +
           wholePercentText(m.cpuUsage);
}

// --- Memory -----------------------------------------------------------------------------

Shape memoryValue(QString& out, const SystemMetrics& m, const LabelSettings& settings) {
    return appendUsage(out, m.memoryUsed, m.memoryTotal, m.memoryPercentage, settings.memoryFormat);
}
std::optional<double> memoryLevel(const SystemMetrics& m) {
    return m.memoryPercentage;
}
std::optional<double> memorySampled(const SystemMetrics& m) {
    return m.memoryValid ? std::optional(m.memoryPercentage) : std::nullopt;
}
void memoryWiden(SystemMetrics& m) {
    m.memoryPercentage = 100;
    m.memoryUsed = m.memoryTotal;
}
void memoryWrite(FigureWriter& out, const SystemMetrics& m) {
    const bool valid = m.memoryValid;
    out.count("memoryUsed", valid ? std::optional(m.memoryUsed) : std::nullopt);
    out.count("memoryTotal", valid ? std::optional(m.memoryTotal) : std::nullopt);
    out.number("memoryPercentage", valid ? std::optional(m.memoryPercentage) : std::nullopt);
    out.word("memoryPressure", rawValue(m.memoryPressure));
}
QString memoryTooltip(const SystemMetrics& m) {
    return tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Memory")) + u' ' +
           formatUsedOverTotal(m.memoryUsed, m.memoryTotal) + QStringLiteral(" (") +
           wholePercentText(m.memoryPercentage) + QStringLiteral(")\n") +
           tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Memory pressure")) + u' ' +
           QString::fromLatin1(rawValue(m.memoryPressure));
}

// --- Temperature ------------------------------------------------------------------------

Shape temperatureValue(QString& out, const SystemMetrics& m, const LabelSettings& settings) {
    if (!m.temperature)
        return Shape::missing;
    out.append(temperatureText(*m.temperature, settings.temperatureFormat));
    return Shape::prefixed;
}
std::optional<double> temperatureLevelOf(const SystemMetrics& m) {
    if (!m.temperature)
        return std::nullopt;
    return temperatureLevel(*m.temperature);
}
std::optional<double> noSample(const SystemMetrics&) {
    return std::nullopt;
}
void temperatureWiden(SystemMetrics& m) {
    if (m.temperature)
        m.temperature = 100;
}
void temperatureWrite(FigureWriter& out, const SystemMetrics& m) {
    out.number("temperature", m.temperature);
    out.word("thermalState", rawValue(m.thermalState));
    out.word("temperatureAvailability", rawValue(m.temperatureAvailability));
    out.names("temperatureSources", m.temperatureSources);
}
QString temperatureTooltip(const SystemMetrics& m) {
    QString line =
        tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Temperature")) + u' ' +
        (m.temperature ? temperatureText(*m.temperature)
                       : tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Unavailable")));
    if (!m.temperatureSources.isEmpty())
        line += QStringLiteral(" (") + m.temperatureSources.join(QStringLiteral(", ")) + u')';
    return line + u'\n' + tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Thermal state")) + u' ' +
           label(m.thermalState);
}

// --- Network ----------------------------------------------------------------------------

std::optional<double> noLevel(const SystemMetrics&) {
    return std::nullopt;
}
Shape downloadValue(QString& out, const SystemMetrics& m, const LabelSettings&) {
    appendRate(out, m.downloadBytesPerSecond);
    return Shape::prefixed;
}
Shape uploadValue(QString& out, const SystemMetrics& m, const LabelSettings&) {
    appendRate(out, m.uploadBytesPerSecond);
    return Shape::prefixed;
}
// formatRate's longest form: three digits and a two-letter unit.
constexpr double kWidestRate = 888e6;
void downloadWiden(SystemMetrics& m) {
    m.downloadBytesPerSecond = kWidestRate;
}
void uploadWiden(SystemMetrics& m) {
    m.uploadBytesPerSecond = kWidestRate;
}
void downloadWrite(FigureWriter& out, const SystemMetrics& m) {
    out.number("downloadBytesPerSecond", m.downloadBytesPerSecond);
}
void uploadWrite(FigureWriter& out, const SystemMetrics& m) {
    out.number("uploadBytesPerSecond", m.uploadBytesPerSecond);
    out.names("networkInterfaces", m.networkInterfaces);
}
QString downloadTooltip(const SystemMetrics& m) {
    return tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Download")) + u' ' +
           formatRate(m.downloadBytesPerSecond);
}
QString uploadTooltip(const SystemMetrics& m) {
    return tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Upload")) + u' ' +
           formatRate(m.uploadBytesPerSecond);
}

// --- Swap -------------------------------------------------------------------------------

std::optional<double> swapPercentage(const SystemMetrics& m) {
    if (!m.swapTotal || *m.swapTotal == 0 || !m.swapUsed)
        return std::nullopt;
    const double used = static_cast<double>(std::min(*m.swapUsed, *m.swapTotal));
    return used / static_cast<double>(*m.swapTotal) * 100;
}
QString noSwap() {
    return QCoreApplication::translate("MenuBarLabel", "No swap");
}
// Formatted like memory; "No swap" stands alone where the machine has none.
Shape swapValue(QString& out, const SystemMetrics& m, const LabelSettings& settings) {
    if (!m.swapTotal || !m.swapUsed)
        return Shape::missing;
    if (*m.swapTotal == 0) {
        out.append(noSwap());
        return Shape::alone;
    }
    return appendUsage(out, *m.swapUsed, *m.swapTotal, swapPercentage(m).value_or(0),
                       settings.memoryFormat);
}
std::optional<double> swapSampled(const SystemMetrics& m) {
    return m.memoryValid ? swapPercentage(m) : std::nullopt;
}
void swapWiden(SystemMetrics& m) {
    if (m.swapTotal)
        m.swapUsed = m.swapTotal;
}
void swapWrite(FigureWriter& out, const SystemMetrics& m) {
    out.count("swapUsed", m.memoryValid ? m.swapUsed : std::nullopt);
    out.count("swapTotal", m.memoryValid ? m.swapTotal : std::nullopt);
}
QString swapCard(const SystemMetrics& m) {
    if (!m.swapTotal || !m.swapUsed)
        return QCoreApplication::translate("MetricPresentation", "Unavailable");
    if (*m.swapTotal == 0)
        return noSwap();
    return formatUsedOverTotal(*m.swapUsed, *m.swapTotal);
}
QString swapTooltip(const SystemMetrics& m) {
    QString line = tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Swap")) + u' ' + swapCard(m);
    if (const std::optional<double> level = swapPercentage(m))
        line += QStringLiteral(" (") + wholePercentText(*level) + u')';
    return line;
}

// --- Disk throughput --------------------------------------------------------------------

Shape diskReadValue(QString& out, const SystemMetrics& m, const LabelSettings&) {
    if (!m.diskReadBytesPerSecond)
        return Shape::missing;
    appendRate(out, *m.diskReadBytesPerSecond);
    return Shape::prefixed;
}
Shape diskWriteValue(QString& out, const SystemMetrics& m, const LabelSettings&) {
    if (!m.diskWriteBytesPerSecond)
        return Shape::missing;
    appendRate(out, *m.diskWriteBytesPerSecond);
    return Shape::prefixed;
}
void diskReadWiden(SystemMetrics& m) {
    if (m.diskReadBytesPerSecond)
        m.diskReadBytesPerSecond = kWidestRate;
}
void diskWriteWiden(SystemMetrics& m) {
    if (m.diskWriteBytesPerSecond)
        m.diskWriteBytesPerSecond = kWidestRate;
}
void diskReadWrite(FigureWriter& out, const SystemMetrics& m) {
    out.number("diskReadRate", m.diskReadBytesPerSecond);
}
void diskWriteWrite(FigureWriter& out, const SystemMetrics& m) {
    out.number("diskWriteRate", m.diskWriteBytesPerSecond);
    out.names("diskDevices", m.diskDevices);
}
QString rateOrUnavailable(std::optional<double> bytesPerSecond) {
    return bytesPerSecond ? formatRate(*bytesPerSecond)
                          : tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Unavailable"));
}
QString diskReadTooltip(const SystemMetrics& m) {
    return tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Disk read")) + u' ' +
           rateOrUnavailable(m.diskReadBytesPerSecond);
}
QString diskWriteTooltip(const SystemMetrics& m) {
    return tooltipText(QT_TRANSLATE_NOOP("MetricsTooltip", "Disk write")) + u' ' +
           rateOrUnavailable(m.diskWriteBytesPerSecond);
}
QString diskReadCard(const SystemMetrics& m) {
    return formatRate(m.diskReadBytesPerSecond.value_or(0));
}
QString diskWriteCard(const SystemMetrics& m) {
    return formatRate(m.diskWriteBytesPerSecond.value_or(0));
}

// --- The dashboard's texts --------------------------------------------------------------

QString cardText(const char* text) {
    return QCoreApplication::translate("MetricPresentation", text);
}
QString cpuCard(const SystemMetrics& m) {
    return wholePercentText(m.cpuUsage);
}
QString memoryCard(const SystemMetrics& m) {
    return wholePercentText(m.memoryPercentage);
}
std::optional<QString> memoryDetail(const SystemMetrics& m) {
    return formatUsedOverTotal(m.memoryUsed, m.memoryTotal);
}
QString temperatureCard(const SystemMetrics& m) {
    if (m.temperatureAvailability == TemperatureAvailability::exactTemperature)
        return temperatureText(m.temperature.value_or(0));
    return cardText(QT_TRANSLATE_NOOP("MetricPresentation", "Unavailable"));
}
// Without an exact reading, the thermal state says how warm the machine is.
std::optional<QString> temperatureDetail(const SystemMetrics& m) {
    if (m.temperatureAvailability == TemperatureAvailability::exactTemperature)
        return std::nullopt;
    return label(m.thermalState);
}
// An exact reading without a value counts as 0 °C; anything less exact has no level.
std::optional<double> temperatureCardLevel(const SystemMetrics& m) {
    if (m.temperatureAvailability != TemperatureAvailability::exactTemperature)
        return std::nullopt;
    return temperatureLevel(m.temperature.value_or(0));
}
QString downloadCard(const SystemMetrics& m) {
    return formatRate(m.downloadBytesPerSecond);
}
QString uploadCard(const SystemMetrics& m) {
    return formatRate(m.uploadBytesPerSecond);
}
std::optional<QString> noDetail(const SystemMetrics&) {
    return std::nullopt;
}
std::span<const double> noParts(const SystemMetrics&) {
    return {};
}

using M = MenuBarMetric;
using D = DashboardPlace;

// The catalogue. Names are translated in the "MenuBarMetric" context, as the settings list
// has always shown them.
constexpr std::array kCatalogue{
    MetricDescription{
        .metric = M::cpu,
        .name = QT_TRANSLATE_NOOP("MenuBarMetric", "CPU"),
        .mark = u"C",
        .prefix = u"CPU ",
        .icon = "cpu",
        .choice = QT_TRANSLATE_NOOP("lumetra::WelcomeView", "CPU"),
        .choiceName = "showCPU",
        .place = D::levelCard,
        .host = M::cpu,
        .cardTitle = QT_TRANSLATE_NOOP("MetricPresentation", "CPU"),
        .cardIcon = "cpu",
        .scaled = true,
        .history = &MetricHistories::cpu,
        .appendValue = cpuValue,
        .level = cpuLevel,
        .sampled = cpuSampled,
        .widen = cpuWiden,
        .write = cpuWrite,
        .tooltip = cpuTooltip,
        .cardLevel = cpuLevel,
        .cardValue = cpuCard,
        .cardDetail = noDetail,
        .parts = cpuParts,
    },
    MetricDescription{
        .metric = M::memory,
        .name = QT_TRANSLATE_NOOP("MenuBarMetric", "Memory"),
        .mark = u"M",
        .prefix = u"RAM ",
        .icon = "memorychip",
        .choice = QT_TRANSLATE_NOOP("lumetra::WelcomeView", "Memory"),
        .choiceName = "showMemory",
        .place = D::levelCard,
        .host = M::memory,
        .cardTitle = QT_TRANSLATE_NOOP("MetricPresentation", "Memory"),
        .cardIcon = "memorychip",
        .scaled = true,
        .history = &MetricHistories::memory,
        .appendValue = memoryValue,
        .level = memoryLevel,
        .sampled = memorySampled,
        .widen = memoryWiden,
        .write = memoryWrite,
        .tooltip = memoryTooltip,
        .cardLevel = memoryLevel,
        .cardValue = memoryCard,
        .cardDetail = memoryDetail,
        .parts = noParts,
    },
    MetricDescription{
        .metric = M::temperature,
        .name = QT_TRANSLATE_NOOP("MenuBarMetric", "Temperature"),
        .mark = u"T",
        .prefix = u"",
        .icon = "thermometer.medium",
        .choice = QT_TRANSLATE_NOOP("lumetra::WelcomeView", "Temperature"),
        .choiceName = "showTemperature",
        .place = D::levelCard,
        .host = M::temperature,
        .cardTitle = QT_TRANSLATE_NOOP("MetricPresentation", "Temperature"),
        .cardIcon = "thermometer.medium",
        .scaled = true,
        .history = nullptr,
        .appendValue = temperatureValue,
        .level = temperatureLevelOf,
        .sampled = noSample,
        .widen = temperatureWiden,
        .write = temperatureWrite,
        .tooltip = temperatureTooltip,
        .cardLevel = temperatureCardLevel,
        .cardValue = temperatureCard,
        .cardDetail = temperatureDetail,
        .parts = noParts,
    },
    MetricDescription{
        .metric = M::download,
        .name = QT_TRANSLATE_NOOP("MenuBarMetric", "Download"),
        .mark = u"↓",
        .prefix = u"↓ ",
        .icon = "arrow.down",
        .choice = QT_TRANSLATE_NOOP("lumetra::WelcomeView", "Network"),
        .choiceName = "showNetwork",
        .place = D::rate,
        .host = M::download,
        .cardTitle = QT_TRANSLATE_NOOP("MetricPresentation", "Network"),
        .cardIcon = "network",
        .scaled = false,
        .history = nullptr,
        .appendValue = downloadValue,
        .level = noLevel,
        .sampled = noSample,
        .widen = downloadWiden,
        .write = downloadWrite,
        .tooltip = downloadTooltip,
        .cardLevel = noLevel,
        .cardValue = downloadCard,
        .cardDetail = noDetail,
        .parts = noParts,
    },
    MetricDescription{
        .metric = M::upload,
        .name = QT_TRANSLATE_NOOP("MenuBarMetric", "Upload"),
        .mark = u"↑",
        .prefix = u"↑ ",
        .icon = "arrow.up",
        .choice = QT_TRANSLATE_NOOP("lumetra::WelcomeView", "Network"),
        .choiceName = "showNetwork",
        .place = D::rate,
        .host = M::download,
        .cardTitle = QT_TRANSLATE_NOOP("MetricPresentation", "Network"),
        .cardIcon = "network",
        .scaled = false,
        .history = nullptr,
        .appendValue = uploadValue,
        .level = noLevel,
        .sampled = noSample,
        .widen = uploadWiden,
        .write = uploadWrite,
        .tooltip = uploadTooltip,
        .cardLevel = noLevel,
        .cardValue = uploadCard,
        .cardDetail = noDetail,
        .parts = noParts,
    },
    MetricDescription{
        .metric = M::swap,
        .name = QT_TRANSLATE_NOOP("MenuBarMetric", "Swap"),
        .mark = u"S",
        .prefix = u"SWP ",
        .icon = "swap",
        .choice = QT_TRANSLATE_NOOP("lumetra::WelcomeView", "Swap"),
        .choiceName = "showSwap",
        .place = D::lineInCard,
        .host = M::memory,
        .cardTitle = QT_TRANSLATE_NOOP("MetricPresentation", "Swap"),
        .cardIcon = "swap",
        .scaled = true,
        .history = &MetricHistories::swap,
        .appendValue = swapValue,
        .level = swapPercentage,
        .sampled = swapSampled,
        .widen = swapWiden,
        .write = swapWrite,
        .tooltip = swapTooltip,
        .cardLevel = swapPercentage,
        .cardValue = swapCard,
        .cardDetail = noDetail,
        .parts = noParts,
    },
    MetricDescription{
        .metric = M::diskRead,
        .name = QT_TRANSLATE_NOOP("MenuBarMetric", "Disk Read"),
        .mark = u"R",
        .prefix = u"↓R ",
        .icon = "internaldrive.arrow.down",
        .choice = QT_TRANSLATE_NOOP("lumetra::WelcomeView", "Disk Activity"),
        .choiceName = "showDiskActivity",
        .place = D::rate,
        .host = M::diskRead,
        .cardTitle = QT_TRANSLATE_NOOP("MetricPresentation", "Disk Activity"),
        .cardIcon = "internaldrive",
        .scaled = false,
        .history = nullptr,
        .appendValue = diskReadValue,
        .level = noLevel,
        .sampled = noSample,
        .widen = diskReadWiden,
        .write = diskReadWrite,
        .tooltip = diskReadTooltip,
        .cardLevel = noLevel,
        .cardValue = diskReadCard,
        .cardDetail = noDetail,
        .parts = noParts,
    },
    MetricDescription{
        .metric = M::diskWrite,
        .name = QT_TRANSLATE_NOOP("MenuBarMetric", "Disk Write"),
        .mark = u"W",
        .prefix = u"↑W ",
        .icon = "internaldrive.arrow.up",
        .choice = QT_TRANSLATE_NOOP("lumetra::WelcomeView", "Disk Activity"),
        .choiceName = "showDiskActivity",
        .place = D::rate,
        .host = M::diskRead,
        .cardTitle = QT_TRANSLATE_NOOP("MetricPresentation", "Disk Activity"),
        .cardIcon = "internaldrive",
        .scaled = false,
        .history = nullptr,
        .appendValue = diskWriteValue,
        .level = noLevel,
        .sampled = noSample,
        .widen = diskWriteWiden,
        .write = diskWriteWrite,
        .tooltip = diskWriteTooltip,
        .cardLevel = noLevel,
        .cardValue = diskWriteCard,
        .cardDetail = noDetail,
        .parts = noParts,
    },
};

// Rows in enumeration order, so describe() is an index.
constexpr bool inEnumOrder() {
    for (std::size_t i = 0; i < kCatalogue.size(); ++i) {
        if (static_cast<std::size_t>(kCatalogue[i].metric) != i)
            return false;
    }
    return kCatalogue.size() == allCases<MenuBarMetric>().size();
}
static_assert(inEnumOrder(), "one row per metric, in the enumeration's order");

} // namespace

double temperatureLevel(double celsius) {
    return std::clamp((celsius - 20) / 80 * 100, 0.0, 100.0);
}

std::span<const MetricDescription> metricCatalogue() {
    return kCatalogue;
}

const MetricDescription& describe(MenuBarMetric metric) {
    const auto index = static_cast<std::size_t>(metric);
    return index < kCatalogue.size() ? kCatalogue[index] : kCatalogue[0];
}

QString metricName(MenuBarMetric metric) {
    return QCoreApplication::translate("MenuBarMetric", describe(metric).name);
}

const MetricHistory* historyOf(MenuBarMetric metric, const MetricHistories& histories) {
    const auto member = describe(metric).history;
    return member ? &(histories.*member) : nullptr;
}

void writeFigures(FigureWriter& out, const SystemMetrics& metrics) {
    for (const MetricDescription& row : kCatalogue)
        row.write(out, metrics);
}

} // namespace lumetra
