#include "cli/JsonWriter.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cmath>

using namespace lumetra;

namespace {

TEST(JsonWriterTest, WritesNestedContainersThatParseBack) {
    const QString text = QStringLiteral("CPU 14%  ↓ \"quoted\"\\ \n\x01");
    JsonWriter json;
    json.beginObject().key("text").value(text).key("n").value(0.1);
    json.key("big").value(std::uint64_t{18446744073709551615u});
    json.key("neg").value(std::int64_t{-5}).key("nan").value(std::nan(""));
    json.key("absent").value(std::optional<double>{});
    json.key("list").beginArray().value(true).beginObject().endObject();
    json.beginArray().endArray().endArray().endObject();
    EXPECT_EQ(json.text(), "{\"text\":\"CPU 14%  ↓ \\\"quoted\\\"\\\\ \\n\\u0001\",\"n\":0.1,"
                           "\"big\":18446744073709551615,\"neg\":-5,\"nan\":null,"
                           "\"absent\":null,\"list\":[true,{},[]]}");
    QJsonParseError error;
    const QJsonDocument parsed =
        QJsonDocument::fromJson(QByteArray::fromStdString(json.text()), &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError);
    EXPECT_EQ(parsed.object().value("text").toString(), text);
}

TEST(JsonWriterTest, ClearStartsAFreshLine) {
    JsonWriter json;
    json.beginArray().value(1);
    json.clear();
    json.beginArray().value(2).endArray();
    EXPECT_EQ(json.text(), "[2]");
}

} // namespace
