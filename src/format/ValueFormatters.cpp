#include "format/ValueFormatters.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>

namespace lumetra {

QString wholePercentText(double percent) {
    long long whole = 0;
    if (percent > 0)
        whole = std::llround(std::min(percent, 100.0));
    return QString::number(whole) + u'%';
}

QString formatBytes(std::uint64_t bytes) {
    // Memory style, as desktop file managers write sizes: powers of 1024 named KB, MB, GB…,
    // one fractional digit in the user's locale, and zero as a number ("0 bytes").
    static constexpr std::array<const char*, 6> kUnits{"KB", "MB", "GB", "TB", "PB", "EB"};
    if (bytes < 1024)
        return QString::number(bytes) +
               (bytes == 1 ? QStringLiteral(" byte") : QStringLiteral(" bytes"));
    double value = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    while (value >= 1024 && unit + 1 < kUnits.size()) {
        value /= 1024;
        ++unit;
    }
    return QLocale().toString(value, 'f', 1) + u' ' + QLatin1String(kUnits[unit]);
}

QString formatUsedOverTotal(std::uint64_t used, std::uint64_t total) {
    return formatBytes(used) + QStringLiteral(" / ") + formatBytes(total);
}

QString formatRate(double bytesPerSecond) {
    struct Unit {
        double threshold;
        const char* name;
    };
    static constexpr std::array<Unit, 4> kUnits{{
        {1'000'000'000, "GB/s"},
        {1'000'000, "MB/s"},
        {1'000, "KB/s"},
        {0, "B/s"},
    }};
    // NaN matches no row; an infinite rate is as meaningless, so it goes the same way.
    const double rate = std::isinf(bytesPerSecond) ? NAN : std::max(bytesPerSecond, 0.0);
    for (const Unit& unit : kUnits) {
        if (!(unit.threshold <= rate))
            continue;
        if (unit.threshold == 0) {
            const double whole = std::trunc(std::min(rate, 1e15));
            return QString::number(static_cast<long long>(whole)) + QStringLiteral(" B/s");
        }
        const double value = rate / unit.threshold;
        // The decimal is chosen before rounding: 9,960 B/s is "10.0 KB/s".
        const int decimals = value < 10 ? 1 : 0;
        return QString::number(value, 'f', decimals) + u' ' + QLatin1String(unit.name);
    }
    return QStringLiteral("0 B/s");
}

QString sparkline(std::span<const double> values, int count) {
    static constexpr std::array<char16_t, 8> kGlyphs{u'▁', u'▂', u'▃', u'▄',
                                                     u'▅', u'▆', u'▇', u'█'};
    if (values.empty() || count < 1)
        return {};
    const std::size_t shown = std::min(values.size(), static_cast<std::size_t>(count));
    QString text;
    text.reserve(static_cast<qsizetype>(shown));
    for (double value : values.last(shown)) {
        int level = 0;
        if (value > 0)
            level = static_cast<int>(std::trunc(std::min(value, 100.0) / 100 * 7));
        text += QChar(kGlyphs[static_cast<std::size_t>(std::clamp(level, 0, 7))]);
    }
    return text;
}

QString levelBar(int count, double percentage) {
    if (count < 1)
        return {};
    const double clamped = std::isnan(percentage) ? 0 : std::clamp(percentage, 0.0, 100.0);
    const int filled = std::clamp(static_cast<int>(std::lround(clamped / 100 * count)), 0, count);
    return QString(filled, QChar(u'▓')) + QString(count - filled, QChar(u'░'));
}

} // namespace lumetra
