#include "settings/SettingsFileFormat.h"

#include "SettingsTestSupport.h"

#include <QDateTime>
#include <QSize>

#include <gtest/gtest.h>

#include <limits>

using namespace lumetra;

namespace {

// JSON alone cannot tell 1 from 1.0 or a date from a string: the file keeps the types apart,
// turning wrappers into values only when they hold one. Anything but strict JSON with an
// object on top is refused with a reason.
TEST(SettingsFileFormatTest, ReadsTypesApartAndRefusesAnythingElse) {
    for (const auto& [document, type] : std::initializer_list<std::pair<QByteArray, int>>{
             {R"({"v": true})", QMetaType::Bool},
             {R"({"v": -12})", QMetaType::LongLong},
             {R"({"v": 1.0})", QMetaType::Double},
             {R"({"v": 1e2})", QMetaType::Double},
             {R"({"v": 99999999999999999999})", QMetaType::Double}, // beyond 64 bits
             {R"({"v": "1"})", QMetaType::QString},
             {R"({"v": [1, "a"]})", QMetaType::QVariantList},
             {R"({"v": {"date": "2026-11-22T05:15:00+01:00"}})", QMetaType::QDateTime},
             {R"({"v": {"data": "AAEC"}})", QMetaType::QByteArray},
             {R"({"v": null})", QMetaType::Nullptr},
             {R"({"v": {"date": "yesterday"}})", QMetaType::QVariantMap},
             {R"({"v": {"date": "2026-11-22T05:15:00"}})", QMetaType::QVariantMap}, // no zone
             {R"({"v": {"data": "!!"}})", QMetaType::QVariantMap},
             {R"({"v": {"data": 5}})", QMetaType::QVariantMap},
             {R"({"v": {"data": "AAEC", "x": 1}})", QMetaType::QVariantMap},
             {R"({"v": 1, "v": "two"})", QMetaType::QString}, // the last one wins
             {"\xEF\xBB\xBF{\"v\": 1}", QMetaType::LongLong}}) {
        const auto parsed = SettingsFileFormat::parse(document);
        ASSERT_TRUE(parsed.domain) << document.constData() << ": " << parsed.error.toStdString();
        EXPECT_EQ(parsed.domain->value("v").typeId(), type) << document.constData();
    }
    for (const QByteArray& bad : std::initializer_list<QByteArray>{
             "", " \n ", "[]", R"("v")", R"({"v": 1)", R"({"v":})", "{} x", R"({"v": 1,})",
             "{'v': 1}", R"({"v": 01})", R"({"v": 1.})", R"({"v": 1e400})", R"({"v": NaN})",
             "{\"v\": \"x\ny\"}", R"({"v": "\x"})", R"({"v": "\u12"})", "{\"v\": \"\xff\"}",
             QByteArray("{\"v\": 1}\0", 9),
             "{\"v\":" + QByteArray(200, '[') + QByteArray(200, ']') + "}"}) {
        const auto parsed = SettingsFileFormat::parse(bad);
        EXPECT_TRUE(!parsed.domain && !parsed.error.isEmpty()) << bad.constData();
    }
}

// written.json shows the layout: four-space indents, sorted keys, wrappers on one line.
TEST(SettingsFileFormatTest, WritesIndentedSortedAndTyped) {
    const QVariantMap domain = lumetra::testing::parsed(
        R"({"separator": "dot", "launchCount": 3, "updateInterval": 1.0, "enabledMetrics": [],
            "metricOrder": ["cpu", "upload"], "customConfiguration": {"data": "e30="},
            "lastUpdateCheckDate": {"date": "2026-11-22T06:15:00+01:00"}})");
    EXPECT_EQ(SettingsFileFormat::serialize(domain),
              lumetra::testing::readFile(LUMETRA_FIXTURES_DIR "/settings/written.json"));
}

TEST(SettingsFileFormatTest, WhatIsWrittenReadsBackIdentical) {
    const QVariantMap domain{
        {"numbers",
         QVariantList{5e-324, 1e300, -0.0, 2.5,
                      QVariant::fromValue<qlonglong>(std::numeric_limits<qint64>::min())}},
        {"text", QString::fromUtf8("quote \" backslash \\ tab \t nul ") + QChar(0) +
                     QString::fromUtf8(" é 🙂 ") + QChar(0xd800) + QChar(u'x')},
        {"nested", QVariantMap{{"list", QVariantList{true, QVariant::fromValue(nullptr)}}}},
        {"date", QDateTime(QDate(2026, 11, 22), QTime(5, 15, 0, 250), Qt::UTC)},
        {"blob", QByteArray("\xff\x00", 2)}};
    const QByteArray text = SettingsFileFormat::serialize(domain);
    const auto again = SettingsFileFormat::parse(text);
    ASSERT_TRUE(again.domain.has_value()) << again.error.toStdString() << text.constData();
    EXPECT_TRUE(SettingsFileFormat::identical(*again.domain, domain)) << text.constData();
    EXPECT_EQ(SettingsFileFormat::serialize(*again.domain), text);
}

// The promised range is years 0 to 9999, far past where a nanosecond clock ends (2262):
// dates out there read and write back to the millisecond; one that is in range only before
// its offset is applied is no date.
TEST(SettingsFileFormatTest, DatesFromYearOneTo9999WriteBackExactly) {
    const auto document = [](const char* text) {
        return QByteArray(R"({"v": {"date": ")") + text + QByteArray(R"("}})");
    };
    for (const char* text :
         {"4052-11-21T08:30:00.250Z", "9999-12-31T23:59:59.999Z", "2262-04-11T23:47:16.855Z",
          "1600-02-29T12:00:00.000Z", "0001-01-01T00:00:00.000Z"}) {
        const auto parsed = SettingsFileFormat::parse(document(text));
        ASSERT_TRUE(parsed.domain) << text << ": " << parsed.error.toStdString();
        const QVariant date = parsed.domain->value("v");
        ASSERT_EQ(date.typeId(), QMetaType::QDateTime) << text;
        EXPECT_EQ(date.toDateTime().toString(Qt::ISODateWithMs), QLatin1StringView(text));
        EXPECT_TRUE(SettingsFileFormat::serialize(*parsed.domain).contains(text)) << text;
    }
    for (const char* text : {"9999-12-31T23:30:00.000-01:00", "10000-01-01T00:00:00.000Z"}) {
        EXPECT_EQ(lumetra::testing::parsed(document(text)).value("v").typeId(),
                  QMetaType::QVariantMap)
            << text;
    }
    const QDateTime far(QDate(4052, 11, 21), QTime(8, 30, 0, 250), Qt::UTC);
    EXPECT_TRUE(SettingsFileFormat::normalized(far).has_value());
}

// The other tests compare with `identical`, so it must tell what QVariant's == does not.
TEST(SettingsFileFormatTest, NormalizesWhatTheFileCanHoldAndTellsIntegersFromDoubles) {
    EXPECT_FALSE(SettingsFileFormat::identical(QVariant::fromValue<qlonglong>(1), 1.0));
    EXPECT_FALSE(SettingsFileFormat::identical(QVariantList{1.0}, QVariantList{1.0, 1.0}));
    EXPECT_FALSE(SettingsFileFormat::identical(QVariantMap{{"a", 1.0}}, QVariantMap{{"b", 1.0}}));
    EXPECT_EQ(SettingsFileFormat::normalized(QVariant(7))->typeId(), QMetaType::LongLong);
    EXPECT_EQ(SettingsFileFormat::normalized(QStringList{"a"})->typeId(), QMetaType::QVariantList);
    EXPECT_FALSE(SettingsFileFormat::normalized(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(SettingsFileFormat::normalized(QVariantList{1, QVariant(QSize())}));
    EXPECT_FALSE(SettingsFileFormat::normalized(QVariant::fromValue<quint64>(~0ull)));
    EXPECT_FALSE(SettingsFileFormat::normalized(QDateTime()));
}

} // namespace
