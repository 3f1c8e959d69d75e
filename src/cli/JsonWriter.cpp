#include "cli/JsonWriter.h"

#include "model/JsonString.h"

#include <charconv>
#include <cmath>

namespace lumetra {

void JsonWriter::clear() {
    out_.clear();
    needsComma_.clear();
    afterKey_ = false;
}

void JsonWriter::separate() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (!needsComma_.empty()) {
        if (needsComma_.back())
            out_ += ',';
        needsComma_.back() = true;
    }
}

JsonWriter& JsonWriter::beginObject() {
    separate();
    out_ += '{';
    needsComma_.push_back(false);
    return *this;
}

JsonWriter& JsonWriter::endObject() {
    out_ += '}';
    needsComma_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::beginArray() {
    separate();
    out_ += '[';
    needsComma_.push_back(false);
    return *this;
}

JsonWriter& JsonWriter::endArray() {
    out_ += ']';
    needsComma_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
    separate();
    appendEscaped(name);
    out_ += ':';
    afterKey_ = true;
    return *this;
}

void JsonWriter::appendEscaped(std::string_view utf8) {
    appendJsonString(out_, utf8);
}

JsonWriter& JsonWriter::value(std::string_view text) {
    separate();
    appendEscaped(text);
    return *this;
}

JsonWriter& JsonWriter::value(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    return value(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())));
}

JsonWriter& JsonWriter::value(double number) {
    if (!std::isfinite(number))
        return null();
    separate();
    char buffer[32];
    // The shortest text that reads back as the same double.
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
    out_.append(buffer, result.ptr);
    return *this;
}

template <typename Integer>
void JsonWriter::appendInteger(Integer number) {
    separate();
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
    out_.append(buffer, result.ptr);
}

JsonWriter& JsonWriter::value(std::uint64_t number) {
    appendInteger(number);
    return *this;
}

JsonWriter& JsonWriter::value(std::int64_t number) {
    appendInteger(number);
    return *this;
}

JsonWriter& JsonWriter::value(bool flag) {
    separate();
    out_ += flag ? "true" : "false";
    return *this;
}

JsonWriter& JsonWriter::value(std::optional<double> number) {
    return number ? value(*number) : null();
}

JsonWriter& JsonWriter::null() {
    separate();
    out_ += "null";
    return *this;
}

} // namespace lumetra
