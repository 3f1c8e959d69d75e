#include "updates/Version.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <optional>

namespace lumetra {

namespace {

// A whole number: an optional sign and at least one ASCII digit, nothing else, and within
// 64 bits. Anything else is no number at all (not 0).
std::optional<std::int64_t> parseComponent(QStringView piece) {
    qsizetype i = 0;
    bool negative = false;
    if (i < piece.size() && (piece[i] == u'+' || piece[i] == u'-')) {
        negative = piece[i] == u'-';
        ++i;
    }
    if (i == piece.size())
        return std::nullopt;
    // Accumulate towards the negative side, which has room for the minimum.
    constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
    std::int64_t value = 0;
    for (; i < piece.size(); ++i) {
        const char16_t c = piece[i].unicode();
        if (c < u'0' || c > u'9')
            return std::nullopt;
        const int digit = c - u'0';
        if (value < (kMin + digit) / 10)
            return std::nullopt;
        value = value * 10 - digit;
    }
    if (!negative) {
        if (value == kMin)
            return std::nullopt;
        value = -value;
    }
    return value;
}

} // namespace

std::vector<std::int64_t> parseVersion(QStringView version) {
    std::vector<std::int64_t> components;
    qsizetype start = 0;
    while (start <= version.size()) {
        qsizetype end = version.indexOf(u'.', start);
        if (end < 0)
            end = version.size();
        if (end > start) {
            if (const auto component = parseComponent(version.sliced(start, end - start)))
                components.push_back(*component);
        }
        start = end + 1;
    }
    return components;
}

bool isNewerVersion(QStringView candidate, QStringView current) {
    const auto lhs = parseVersion(candidate);
    const auto rhs = parseVersion(current);
    const std::size_t length = std::max(lhs.size(), rhs.size());
    for (std::size_t i = 0; i < length; ++i) {
        const std::int64_t a = i < lhs.size() ? lhs[i] : 0;
        const std::int64_t b = i < rhs.size() ? rhs[i] : 0;
        if (a != b)
            return a > b;
    }
    return false;
}

QString currentAppVersion() {
    const QString version = QCoreApplication::applicationVersion();
    return version.isEmpty() ? QStringLiteral("0") : version;
}

} // namespace lumetra
