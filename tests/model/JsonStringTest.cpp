#include "model/JsonString.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace lumetra;

namespace {

// Both forms write the same JSON, and a JSON reader gets the text back.
TEST(JsonStringTest, EscapesWhatJsonRequiresAndReadsBack) {
    const std::pair<QString, const char*> cases[] = {
        {"plain", R"("plain")"},
        {"quote \" backslash \\", R"("quote \" backslash \\")"},
        {"\n\r\t", R"("\n\r\t")"},
        {QString(QChar(0)) + QChar(0x1f) + QChar(0x7f), "\"\\u0000\\u001f\x7f\""},
        {QString::fromUtf8("é 🙂 ↓"), "\"é 🙂 ↓\""}};
    for (const auto& [text, json] : cases) {
        std::string utf8;
        appendJsonString(utf8, text.toStdString());
        EXPECT_EQ(utf8, json);
        QByteArray utf16;
        appendJsonString(utf16, text);
        EXPECT_EQ(utf16.toStdString(), json);
        EXPECT_EQ(QJsonDocument::fromJson('[' + utf16 + ']').array().at(0).toString(), text);
    }
    // A lone surrogate cannot be UTF-8: it is kept as its escape.
    QByteArray lone;
    appendJsonString(lone, QString(QChar(0xd800)) + 'x');
    EXPECT_EQ(lone, R"("\ud800x")");
}

} // namespace
