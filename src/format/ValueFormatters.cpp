#include "format/ValueFormatters.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string_view>

namespace lumetra {

namespace {

// A short ASCII text put together on the stack and handed to a QString in one piece: a
// label is rebuilt on every sample, and each growth of a QString is an allocation.
class AsciiText {
public:
    QLatin1StringView latin1() const { return QLatin1StringView(buffer_, qsizetype(length_)); }

    void append(std::string_view text) {
        const std::size_t count = std::min(text.size(), sizeof buffer_ - length_);
        std::copy_n(text.data(), count, buffer_ + length_);
        length_ += count;
    }
    void appendInteger(long long value) {
        const auto result = std::to_chars(buffer_ + length_, std::end(buffer_), value);
        length_ = static_cast<std::size_t>(result.ptr - buffer_);
    }
    // Fixed notation in the C locale ("1.5").
    void appendFixed(double value, int decimals) {
        const auto result = std::to_chars(buffer_ + length_, std::end(buffer_), value,
                                          std::chars_format::fixed, decimals);
        if (result.ec == std::errc{})
            length_ = static_cast<std::size_t>(result.ptr - buffer_);
    }

private:
    char buffer_[64];
    std::size_t length_ = 0;
};

AsciiText wholePercent(double percent) {
    long long whole = 0;
    if (percent > 0)
        whole = std::llround(std::min(percent, 100.0));
    AsciiText text;
    text.appendInteger(whole);
    text.append("%");
    return text;
}

AsciiText rate(double bytesPerSecond) {
    struct Unit {
        double threshold;
        std::string_view name;
    };
    static constexpr std::array<Unit, 4> kUnits{{
        {1'000'000'000, " GB/s"},
        {1'000'000, " MB/s"},
        {1'000, " KB/s"},
        {0, " B/s"},
    }};
    // NaN matches no row; an infinite rate is as meaningless, so it goes the same way.
    const double value = std::isinf(bytesPerSecond) ? NAN : std::max(bytesPerSecond, 0.0);
    AsciiText text;
    for (const Unit& unit : kUnits) {
        if (!(unit.threshold <= value))
            continue;
        if (unit.threshold == 0) {
            text.appendInteger(static_cast<long long>(std::trunc(std::min(value, 1e15))));
        } else {
            const double scaled = value / unit.threshold;
            // The decimal is chosen before rounding: 9,960 B/s is "10.0 KB/s".
            text.appendFixed(scaled, scaled < 10 ? 1 : 0);
        }
        text.append(unit.name);
        return text;
    }
    text.append("0 B/s");
    return text;
}

} // namespace

void appendInteger(QString& out, long long value) {
    AsciiText text;
    text.appendInteger(value);
    out.append(text.latin1());
}

void appendWholePercent(QString& out, double percent) {
    out.append(wholePercent(percent).latin1());
}

QString wholePercentText(double percent) {
    return wholePercent(percent).latin1();
}

void appendBytes(QString& out, std::uint64_t bytes) {
    // Memory style, as desktop file managers write sizes: powers of 1024 named KB, MB, GB…,
    // one fractional digit in the user's locale, and zero as a number ("0 bytes").
    static constexpr std::array<std::string_view, 6> kUnits{" KB", " MB", " GB",
                                                            " TB", " PB", " EB"};
    AsciiText text;
    if (bytes < 1024) {
        text.appendInteger(static_cast<long long>(bytes));
        text.append(bytes == 1 ? " byte" : " bytes");
        out.append(text.latin1());
        return;
    }
    double value = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    while (value >= 1024 && unit + 1 < kUnits.size()) {
        value /= 1024;
        ++unit;
    }
    text.appendFixed(value, 1);
    text.append(kUnits[unit]);
    const qsizetype start = out.size();
    out.append(text.latin1());
    const QString point = QLocale().decimalPoint();
    if (point != QLatin1String(".")) {
        const qsizetype dot = out.indexOf(u'.', start);
        if (dot >= 0)
            out.replace(dot, 1, point);
    }
}

QString formatBytes(std::uint64_t bytes) {
    QString text;
    appendBytes(text, bytes);
    return text;
}

void appendUsedOverTotal(QString& out, std::uint64_t used, std::uint64_t total) {
    appendBytes(out, used);
    out.append(QLatin1StringView(" / "));
    appendBytes(out, total);
}

QString formatUsedOverTotal(std::uint64_t used, std::uint64_t total) {
    QString text;
    appendUsedOverTotal(text, used, total);
    return text;
}

void appendRate(QString& out, double bytesPerSecond) {
    out.append(rate(bytesPerSecond).latin1());
}

QString formatRate(double bytesPerSecond) {
    return rate(bytesPerSecond).latin1();
}

QString temperatureText(double celsius, TemperatureDisplayFormat format) {
    AsciiText text; // Latin-1 really: the degree sign is U+00B0
    if (format == TemperatureDisplayFormat::labeledCPU)
        text.append("CPU ");
    else if (format == TemperatureDisplayFormat::labeledTemp)
        text.append("Temp ");
    text.appendInteger(std::llround(celsius + 0.0));
    text.append(format == TemperatureDisplayFormat::degreesOnly ? "\xB0"
                                                                : "\xB0"
                                                                  "C");
    return text.latin1();
}

QString sparkline(std::span<const double> values, int count) {
    static constexpr std::array<char16_t, 8> kGlyphs{u'▁', u'▂', u'▃', u'▄',
                                                     u'▅', u'▆', u'▇', u'█'};
    if (values.empty() || count < 1)
        return {};
    const std::size_t shown = std::min(values.size(), static_cast<std::size_t>(count));
    QString text(static_cast<qsizetype>(shown), Qt::Uninitialized);
    QChar* glyph = text.data();
    for (double value : values.last(shown)) {
        // trunc(min(v, 100) / 100 × 7): only exactly 100 reaches the full block; NaN and
        // values at or below 0 give the lowest.
        std::size_t level = 0;
        if (value >= 100)
            level = 7;
        else if (value > 0)
            level = static_cast<std::size_t>(value / 100 * 7);
        *glyph++ = QChar(kGlyphs[level]);
    }
    return text;
}

QString levelBar(int count, double percentage) {
    if (count < 1)
        return {};
    const double clamped = std::isnan(percentage) ? 0 : std::clamp(percentage, 0.0, 100.0);
    const int filled = std::clamp(static_cast<int>(std::lround(clamped / 100 * count)), 0, count);
    QString bar(count, QChar(u'░'));
    std::fill_n(bar.data(), filled, QChar(u'▓'));
    return bar;
}

} // namespace lumetra
