#include "updates/Version.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

// Each version, its components, and how it compares with another: ">" strictly newer, "<"
// strictly older, "=" neither way newer. Only whole base-10 pieces with an optional sign,
// within 64 bits, count (any other piece is dropped, not read as 0); a missing component
// counts as 0.
TEST(VersionTest, ParsesWholeNumberPiecesAndComparesThemWithZeroForMissing) {
    struct Case {
        const char* version;
        const char* components;
        const char* comparison;
    };
    // clang-format off
    const Case table[] = {
        {"1.4.0", "1 4 0", ">1.3.9"}, {"1.10", "1 10", ">1.9"},   {"1.9", "1 9", "<1.10"},
        {"1.2.0", "1 2 0", "=1.2"},   {"1.2.1", "1 2 1", ">1.2"}, {"1.1", "1 1", "=1.1"},
        {"2", "2", ">1.99.99"},       {"1.0.0.0.1", "1 0 0 0 1", ">1"}, {"0.0.1", "0 0 1", ">0"},
        {"1..2", "1 2", ">1.1"},      {".1.2.", "1 2", "=1.2"},   {"...", "", "=0"},
        {"", "", "=0"},               {"1.2.beta", "1 2", "=1.2"}, {"2.0-rc1", "2", ">1.99"},
        {"1.2.0-beta", "1 2", "=1.2"}, {"a1.5", "5", ">4"},       {"abc", "", "=0"},
        {"+3.-1", "3 -1", "<3"},      {"+.-", "", "=0"},          {"-0", "0", "=0"},
        {" 1.2 ", "", "=0"},          {"1. 2", "1", ">0.9"},      {"0x10.7", "7", ">6"},
        {"1e3.4", "4", ">3"},         {"++1.2", "2", ">1"},       {"1.\u0662", "1", "=1"},
        {"9223372036854775807", "9223372036854775807", ">9223372036854775806"},
        {"9223372036854775808.1", "1", ">0"},
        {"-9223372036854775808", "-9223372036854775808", "<0"},
        {"-9223372036854775809", "", ">-1"},
        {"00000000000000000000000001.2", "1 2", ">1.1"}};
    // clang-format on
    for (const Case& c : table) {
        const QString version = QString::fromUtf8(c.version);
        const QString other = QString::fromUtf8(c.comparison + 1);
        QStringList components;
        for (const std::int64_t component : parseVersion(version))
            components << QString::number(component);
        EXPECT_EQ(components.join(' '), c.components) << c.version;
        EXPECT_EQ(isNewerVersion(version, other), c.comparison[0] == '>')
            << c.version << c.comparison;
        EXPECT_EQ(isNewerVersion(other, version), c.comparison[0] == '<')
            << c.version << c.comparison;
    }
}

} // namespace
