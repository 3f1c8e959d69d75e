#include "updates/Version.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();

TEST(VersionTest, ParseKeepsOnlyWholeNumberPieces) {
    const std::vector<std::pair<const char*, std::vector<std::int64_t>>> cases{
        {"1.4.0", {1, 4, 0}},
        {"1..2", {1, 2}},
        {".1.2.", {1, 2}},
        {"...", {}},
        {"", {}},
        // A piece that is not a number is dropped entirely, not read as 0.
        {"1.2.beta", {1, 2}},
        {"2.0-rc1", {2}},
        {"a1.5", {5}},
        {"abc", {}},
        // An optional sign, then ASCII digits only (no spaces, hex, exponents, other scripts).
        {"+3.-1", {3, -1}},
        {"+.-", {}},
        {"-0", {0}},
        {" 1.2 ", {}},
        {"1. 2", {1}},
        {"0x10.7", {7}},
        {"1e3.4", {4}},
        {"++1.2", {2}},
        {"1.\u0662", {1}},
        // Within 64 bits, or not a number at all.
        {"9223372036854775807", {kMax}},
        {"9223372036854775808.1", {1}},
        {"-9223372036854775808", {kMin}},
        {"-9223372036854775809", {}},
        {"00000000000000000000000001.2", {1, 2}}};
    for (const auto& [version, components] : cases)
        EXPECT_EQ(parseVersion(QString::fromUtf8(version)), components) << version;
}

TEST(VersionTest, NewerComparesComponentsWithZeroForMissing) {
    struct Case {
        const char* candidate;
        const char* current;
        bool newer;
    };
    for (const Case& c : std::initializer_list<Case>{{"1.10", "1.9", true},
                                                     {"1.9", "1.10", false},
                                                     {"1.2.0", "1.2", false},
                                                     {"1.2", "1.2.0", false},
                                                     {"1.2", "1.2.1", false},
                                                     {"1.2.1", "1.2", true},
                                                     {"2", "1.99.99", true},
                                                     {"1.2.0-beta", "1.2", false},
                                                     {"1.2", "1.2.0-beta", false},
                                                     {"1.3", "0", true},
                                                     {"0.0.1", "0", true},
                                                     {"", "0", false},
                                                     {"abc", "0", false},
                                                     {"0", "", false},
                                                     {"1.-1", "1", false},
                                                     {"1.0.0.0.1", "1", true},
                                                     {"1.1", "1.1", false}})
        EXPECT_EQ(isNewerVersion(QString::fromUtf8(c.candidate), QString::fromUtf8(c.current)),
                  c.newer)
            << c.candidate << " against " << c.current;
}

TEST(VersionTest, CurrentIsTheApplicationVersionOrZero) {
    const QString saved = QCoreApplication::applicationVersion();
    QCoreApplication::setApplicationVersion(QString());
    EXPECT_EQ(currentAppVersion(), QStringLiteral("0"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.4.0"));
    EXPECT_EQ(currentAppVersion(), QStringLiteral("1.4.0"));
    QCoreApplication::setApplicationVersion(saved);
}

} // namespace
