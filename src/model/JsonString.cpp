#include "model/JsonString.h"

namespace lumetra {

namespace {

constexpr char kHex[] = "0123456789abcdef";

void appendEscaped(std::string& out, std::string_view utf8) {
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (byte < 0x20) {
                out += "\\u00";
                out += kHex[byte >> 4];
                out += kHex[byte & 0xf];
            } else {
                out += c;
            }
        }
    }
}

void appendEscaped(std::string& out, QStringView text) {
    const QByteArray utf8 = text.toUtf8();
    appendEscaped(out, std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())));
}

} // namespace

void appendJsonString(std::string& out, std::string_view utf8) {
    out += '"';
    appendEscaped(out, utf8);
    out += '"';
}

void appendJsonString(QByteArray& out, QStringView text) {
    std::string json = "\"";
    qsizetype runStart = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate())
            continue;
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i; // a pair: ordinary text
            continue;
        }
        appendEscaped(json, text.sliced(runStart, i - runStart));
        const unsigned unit = text[i].unicode();
        json += "\\u";
        for (int shift = 12; shift >= 0; shift -= 4)
            json += kHex[(unit >> shift) & 0xf];
        runStart = i + 1;
    }
    appendEscaped(json, text.sliced(runStart));
    json += '"';
    out.append(json.data(), static_cast<qsizetype>(json.size()));
}

} // namespace lumetra
