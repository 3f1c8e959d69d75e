#include "cli/JsonWriter.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <limits>

using namespace lumetra;

namespace {

TEST(JsonWriterTest, WritesNestedContainersThatParseBack) {
    JsonWriter json;
    json.beginObject()
        .key("text")
        .value(QStringLiteral("CPU 14%  ↓ \"quoted\"\\ \n\x01"))
        .key("n")
        .value(0.1)
        .key("big")
        .value(std::uint64_t{18446744073709551615u})
        .key("neg")
        .value(std::int64_t{-5})
        .key("nan")
        .value(std::numeric_limits<double>::quiet_NaN())
        .key("absent")
        .value(std::optional<double>{})
        .key("list")
        .beginArray()
        .value(true)
        .beginObject()
        .endObject()
        .beginArray()
        .endArray()
        .endArray()
        .endObject();
    EXPECT_EQ(json.text(), "{\"text\":\"CPU 14%  ↓ \\\"quoted\\\"\\\\ \\n\\u0001\",\"n\":0.1,"
                           "\"big\":18446744073709551615,\"neg\":-5,\"nan\":null,"
                           "\"absent\":null,\"list\":[true,{},[]]}");
    QJsonParseError error;
    const QJsonDocument parsed =
        QJsonDocument::fromJson(QByteArray::fromStdString(json.text()), &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError);
    EXPECT_EQ(parsed.object().value("text").toString(),
              QStringLiteral("CPU 14%  ↓ \"quoted\"\\ \n\x01"));
}

TEST(JsonWriterTest, ClearStartsAFreshLine) {
    JsonWriter json;
    json.beginArray().value(1);
    json.clear();
    json.beginArray().value(2).endArray();
    EXPECT_EQ(json.text(), "[2]");
}

} // namespace
