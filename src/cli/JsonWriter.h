#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumetra {

// A small streaming writer for one line of compact JSON. The status-bar formats write a line
// every second for hours, so this appends into one reused buffer instead of building a
// document tree.
class JsonWriter {
public:
    void clear();
    const std::string& text() const { return out_; }

    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();
    JsonWriter& key(std::string_view name);

    JsonWriter& value(std::string_view text);
    JsonWriter& value(const QString& text);
    JsonWriter& value(const char* text) { return value(std::string_view(text)); }
    JsonWriter& value(double number); // non-finite numbers are written as null
    JsonWriter& value(std::uint64_t number);
    JsonWriter& value(std::int64_t number);
    JsonWriter& value(int number) { return value(static_cast<std::int64_t>(number)); }
    JsonWriter& value(bool flag);
    JsonWriter& value(std::optional<double> number);
    JsonWriter& null();

private:
    void separate();
    void appendEscaped(std::string_view utf8);
    template <typename Integer>
    void appendInteger(Integer number);

    std::string out_;
    std::vector<bool> needsComma_; // one entry per open container
    bool afterKey_ = false;
};

} // namespace lumetra
