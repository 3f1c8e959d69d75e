#include "updates/Version.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

struct ParseCase {
    const char* version;
    std::vector<std::int64_t> components;
};

class ParseVersionTest : public ::testing::TestWithParam<ParseCase> {};

TEST_P(ParseVersionTest, KeepsOnlyWholeNumberPieces) {
    EXPECT_EQ(parseVersion(QString::fromUtf8(GetParam().version)), GetParam().components)
        << GetParam().version;
}

constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();

INSTANTIATE_TEST_SUITE_P(
    Examples, ParseVersionTest,
    ::testing::Values(ParseCase{"1.4.0", {1, 4, 0}},
                      // Empty pieces vanish.
                      ParseCase{"1..2", {1, 2}}, ParseCase{".1.2.", {1, 2}}, ParseCase{"...", {}},
                      ParseCase{"", {}},
                      // A piece that is not a number is dropped entirely, not read as 0.
                      ParseCase{"1.2.beta", {1, 2}}, ParseCase{"2.0-rc1", {2}},
                      ParseCase{"a1.5", {5}}, ParseCase{"abc", {}}, ParseCase{"1.2.0-beta", {1, 2}},
                      // An optional sign, then ASCII digits only.
                      ParseCase{"+3.-1", {3, -1}}, ParseCase{"+.-", {}}, ParseCase{"-0", {0}},
                      ParseCase{" 1.2 ", {}}, ParseCase{"1. 2", {1}}, ParseCase{"0x10.7", {7}},
                      ParseCase{"1e3.4", {4}}, ParseCase{"++1.2", {2}},
                      // Other scripts' digits are not digits here.
                      ParseCase{"1.\u0662", {1}},
                      // Within 64 bits, or not a number at all.
                      ParseCase{"9223372036854775807", {kMax}},
                      ParseCase{"9223372036854775808.1", {1}},
                      ParseCase{"-9223372036854775808", {kMin}},
                      ParseCase{"-9223372036854775809", {}},
                      ParseCase{"00000000000000000000000001.2", {1, 2}}));

struct NewerCase {
    const char* candidate;
    const char* current;
    bool newer;
};

class IsNewerVersionTest : public ::testing::TestWithParam<NewerCase> {};

TEST_P(IsNewerVersionTest, ComparesComponentsWithZeroForMissing) {
    const auto& c = GetParam();
    EXPECT_EQ(isNewerVersion(QString::fromUtf8(c.candidate), QString::fromUtf8(c.current)), c.newer)
        << c.candidate << " against " << c.current;
}

INSTANTIATE_TEST_SUITE_P(
    Examples, IsNewerVersionTest,
    ::testing::Values(NewerCase{"1.10", "1.9", true},        // numeric, not textual
                      NewerCase{"1.9", "1.10", false},       //
                      NewerCase{"1.2.0", "1.2", false},      // equal
                      NewerCase{"1.2", "1.2.0", false},      // equal
                      NewerCase{"1.2", "1.2.1", false},      // older
                      NewerCase{"1.2.1", "1.2", true},       //
                      NewerCase{"2", "1.99.99", true},       //
                      NewerCase{"1.2.0-beta", "1.2", false}, // the tag vanishes: equal
                      NewerCase{"1.2", "1.2.0-beta", false}, //
                      NewerCase{"1.3", "0", true},           // no version set
                      NewerCase{"0.0.1", "0", true},         //
                      NewerCase{"", "0", false},             //
                      NewerCase{"abc", "0", false},          //
                      NewerCase{"0", "", false},             //
                      NewerCase{"1.-1", "1", false},         // negative components compare
                      NewerCase{"1.0.0.0.1", "1", true},     //
                      NewerCase{"1.1", "1.1", false}));

TEST(CurrentAppVersionTest, IsTheApplicationVersionOrZero) {
    const QString saved = QCoreApplication::applicationVersion();
    QCoreApplication::setApplicationVersion(QString());
    EXPECT_EQ(currentAppVersion(), QStringLiteral("0"));
    // With no version every manifest version with a positive component is newer.
    EXPECT_TRUE(isNewerVersion(u"0.0.1", currentAppVersion()));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.4.0"));
    EXPECT_EQ(currentAppVersion(), QStringLiteral("1.4.0"));
    QCoreApplication::setApplicationVersion(saved);
}

} // namespace
