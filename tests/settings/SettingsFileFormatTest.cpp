#include "settings/SettingsFileFormat.h"

#include <QDateTime>
#include <QSize>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

QVariantMap parsed(const char* text) {
    const auto result = SettingsFileFormat::parse(QByteArray(text));
    EXPECT_TRUE(result.domain.has_value()) << text << ": " << result.error.toStdString();
    return result.domain.value_or(QVariantMap());
}

TEST(SettingsFileFormatTest, KeepsEveryTypeApart) {
    const QVariantMap domain = parsed(R"({
        "bool": true, "int": 1, "double": 1.0, "exponent": 1e2, "string": "1",
        "array": [1, "a"], "date": {"date": "2026-11-22T05:15:00+01:00"},
        "data": {"data": "AAEC"}, "null": null, "object": {"a": 1},
        "huge": 99999999999999999999})");
    EXPECT_EQ(domain.value("bool").typeId(), QMetaType::Bool);
    EXPECT_EQ(domain.value("int").typeId(), QMetaType::LongLong);
    EXPECT_EQ(domain.value("double").typeId(), QMetaType::Double);
    EXPECT_EQ(domain.value("exponent").typeId(), QMetaType::Double);
    EXPECT_EQ(domain.value("string").typeId(), QMetaType::QString);
    EXPECT_EQ(domain.value("array").typeId(), QMetaType::QVariantList);
    EXPECT_EQ(domain.value("date").typeId(), QMetaType::QDateTime);
    EXPECT_EQ(domain.value("date").toDateTime(),
              QDateTime(QDate(2026, 11, 22), QTime(4, 15), Qt::UTC));
    EXPECT_EQ(domain.value("data").toByteArray(), QByteArray("\x00\x01\x02", 3));
    EXPECT_EQ(domain.value("null").typeId(), QMetaType::Nullptr);
    EXPECT_EQ(domain.value("object").typeId(), QMetaType::QVariantMap);
    // Too long for 64 bits: it can only be a double.
    EXPECT_EQ(domain.value("huge").typeId(), QMetaType::Double);
}

TEST(SettingsFileFormatTest, WrappersThatDoNotHoldTheirValueStayObjects) {
    const QVariantMap domain = parsed(R"({
        "words": {"date": "yesterday"}, "noZone": {"date": "2026-11-22T05:15:00"},
        "notBase64": {"data": "!!"}, "extra": {"date": "2026-11-22T05:15:00Z", "x": 1},
        "number": {"data": 5}})");
    for (const QString& key : domain.keys())
        EXPECT_EQ(domain.value(key).typeId(), QMetaType::QVariantMap) << key.toStdString();
}

TEST(SettingsFileFormatTest, WritesIndentedSortedAndTyped) {
    QVariantMap domain;
    domain.insert("separator", QStringLiteral("dot"));
    domain.insert("launchCount", QVariant::fromValue<qlonglong>(3));
    domain.insert("updateInterval", 1.0);
    domain.insert("metricOrder", QVariantList{QStringLiteral("cpu"), QStringLiteral("upload")});
    domain.insert("enabledMetrics", QVariantList());
    domain.insert("lastUpdateCheckDate",
                  QDateTime(QDate(2026, 11, 22), QTime(5, 15, 0, 250), Qt::UTC));
    domain.insert("customConfiguration", QByteArray("{}"));
    EXPECT_EQ(SettingsFileFormat::serialize(domain), QByteArray(R"({
    "customConfiguration": {"data": "e30="},
    "enabledMetrics": [],
    "lastUpdateCheckDate": {"date": "2026-11-22T05:15:00.250Z"},
    "launchCount": 3,
    "metricOrder": [
        "cpu",
        "upload"
    ],
    "separator": "dot",
    "updateInterval": 1.0
}
)"));
}

TEST(SettingsFileFormatTest, WhatIsWrittenReadsBackIdentical) {
    QVariantMap nested;
    nested.insert("tiny", 5e-324);
    nested.insert("big", 1e300);
    nested.insert("negativeZero", -0.0);
    nested.insert("min", QVariant::fromValue<qlonglong>(std::numeric_limits<qint64>::min()));
    QVariantMap domain;
    domain.insert("nested", nested);
    domain.insert("text", QString::fromUtf8("quote \" backslash \\ tab \t nul ") + QChar(0) +
                              QString::fromUtf8(" é 🙂 ") + QChar(0xd800) + QChar(u'x'));
    domain.insert("list", QVariantList{true, QVariant::fromValue(nullptr), 2.5, QVariantList()});
    domain.insert("blob", QByteArray("\xff\x00", 2));
    const QByteArray text = SettingsFileFormat::serialize(domain);
    const auto again = SettingsFileFormat::parse(text);
    ASSERT_TRUE(again.domain.has_value()) << again.error.toStdString() << text.constData();
    EXPECT_TRUE(SettingsFileFormat::identical(*again.domain, domain)) << text.constData();
    EXPECT_EQ(SettingsFileFormat::serialize(*again.domain), text);
}

TEST(SettingsFileFormatTest, IdenticalTellsIntegersFromDoubles) {
    EXPECT_FALSE(SettingsFileFormat::identical(QVariant::fromValue<qlonglong>(1), 1.0));
    EXPECT_TRUE(SettingsFileFormat::identical(QVariantList{1.0}, QVariantList{1.0}));
    EXPECT_FALSE(SettingsFileFormat::identical(QVariantList{1.0}, QVariantList{1.0, 1.0}));
}

TEST(SettingsFileFormatTest, NormalizesWhatTheFileCanHoldAndRefusesTheRest) {
    EXPECT_EQ(SettingsFileFormat::normalized(QVariant(7))->typeId(), QMetaType::LongLong);
    EXPECT_EQ(SettingsFileFormat::normalized(QStringList{"a"})->typeId(), QMetaType::QVariantList);
    EXPECT_FALSE(SettingsFileFormat::normalized(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(SettingsFileFormat::normalized(QVariant(QSize(1, 2))));
    EXPECT_FALSE(SettingsFileFormat::normalized(QVariantList{1, QVariant(QSize())}));
    EXPECT_FALSE(SettingsFileFormat::normalized(QVariant::fromValue<quint64>(~0ull)));
    EXPECT_FALSE(SettingsFileFormat::normalized(QDateTime()));
}

struct BadFile {
    const char* name;
    QByteArray bytes;
};

class BadSettingsFileTest : public ::testing::TestWithParam<BadFile> {};

TEST_P(BadSettingsFileTest, IsRefusedWithAReason) {
    const auto result = SettingsFileFormat::parse(GetParam().bytes);
    EXPECT_FALSE(result.domain.has_value());
    EXPECT_FALSE(result.error.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Table, BadSettingsFileTest,
    ::testing::Values(BadFile{"Empty", ""}, BadFile{"Spaces", " \n "},
                      BadFile{"TopLevelArray", "[]"}, BadFile{"TopLevelString", "\"x\""},
                      BadFile{"Unterminated", "{\"a\": 1"}, BadFile{"MissingValue", "{\"a\":}"},
                      BadFile{"TrailingText", "{} x"}, BadFile{"TrailingComma", "{\"a\":1,}"},
                      BadFile{"SingleQuotes", "{'a':1}"}, BadFile{"LeadingZero", "{\"a\":01}"},
                      BadFile{"BareDot", "{\"a\":1.}"}, BadFile{"Infinite", "{\"a\":1e400}"},
                      BadFile{"NaN", "{\"a\":NaN}"}, BadFile{"RawNewline", "{\"a\":\"x\ny\"}"},
                      BadFile{"BadEscape", "{\"a\":\"\\x\"}"},
                      BadFile{"ShortUnicodeEscape", "{\"a\":\"\\u12\"}"},
                      BadFile{"NotUtf8", "{\"a\":\"\xff\"}"},
                      BadFile{"NulByte", QByteArray("{\"a\":1}\0", 8)},
                      BadFile{"TooDeep", QByteArray("{\"a\":") + QByteArray(200, '[') +
                                             QByteArray(200, ']') + "}"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SettingsFileFormatTest, AcceptsAByteOrderMarkAndLastDuplicateWins) {
    const QVariantMap domain = parsed("\xEF\xBB\xBF{\"a\": 1, \"a\": \"two\"}");
    EXPECT_EQ(domain.value("a"), QStringLiteral("two"));
}

} // namespace
