#pragma once

#include <QByteArray>
#include <QStringView>

#include <string>
#include <string_view>

namespace lumetra {

// The program's one JSON string writer: `text` in double quotes, with the quote, the
// backslash and the control characters escaped (\n, \r, \t, else \u00XX); everything else,
// UTF-8 included, is written as it is.
void appendJsonString(std::string& out, std::string_view utf8);

// The same for UTF-16 text. An unpaired surrogate has no UTF-8 form, so it is written as its
// \uXXXX escape and reads back as the same code unit.
void appendJsonString(QByteArray& out, QStringView text);

} // namespace lumetra
