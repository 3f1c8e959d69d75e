#include "settings/SettingsFileFormat.h"

#include "model/HexDigit.h"
#include "model/IsoTimestamp.h"
#include "model/JsonString.h"

#include <QDateTime>
#include <QLocale>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace lumetra {

namespace {

const QLatin1StringView kDateKey("date");
const QLatin1StringView kDataKey("data");

QVariant null() {
    return QVariant::fromValue(nullptr);
}

// A date text must carry its zone, so it means the same instant on every machine.
bool hasZone(QStringView text) {
    if (text.endsWith(QLatin1Char('Z')))
        return true;
    if (text.size() < 6)
        return false;
    const QStringView zone = text.right(6);
    return (zone[0] == QLatin1Char('+') || zone[0] == QLatin1Char('-')) && zone[3] == ':' &&
           zone[1].isDigit() && zone[2].isDigit() && zone[4].isDigit() && zone[5].isDigit();
}

// Through milliseconds, not an Instant: an Instant ends in 2262 and a date may lie in 9999.
QString dateText(const QDateTime& date) {
    const std::chrono::sys_time<std::chrono::milliseconds> time(
        std::chrono::milliseconds(date.toMSecsSinceEpoch()));
    return QString::fromStdString(isoTimestamp(time));
}

std::optional<QDateTime> parseDate(const QString& text) {
    if (text.size() > 64 || !hasZone(text))
        return std::nullopt;
    const QDateTime date = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!date.isValid())
        return std::nullopt;
    // Only dates that survive being written back in UTC (years 0 to 9999).
    const QDateTime again = QDateTime::fromString(dateText(date), Qt::ISODateWithMs);
    if (!again.isValid() || again != date)
        return std::nullopt;
    return date.toUTC();
}

std::optional<QByteArray> parseData(const QString& text) {
    for (QChar c : text) {
        if (c.unicode() > 0x7f)
            return std::nullopt;
    }
    auto decoded =
        QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return *decoded;
}

// The wrappers become their values; every other object stays an object.
QVariant unwrap(QVariantMap&& object) {
    if (object.size() == 1) {
        const auto member = object.constBegin();
        if (member.value().typeId() == QMetaType::QString) {
            if (member.key() == kDateKey) {
                if (auto date = parseDate(member.value().toString()))
                    return *date;
            } else if (member.key() == kDataKey) {
                if (auto data = parseData(member.value().toString()))
                    return *data;
            }
        }
    }
    return std::move(object);
}

class Parser {
public:
    Parser(const char* begin, const char* end) : begin_(begin), p_(begin), end_(end) {}

    SettingsFileFormat::Parsed document() {
        skipSpace();
        if (p_ == end_)
            return fail("the file is empty");
        if (*p_ != '{')
            return fail("the top level is not an object");
        QVariant top;
        if (!value(top, 0))
            return {std::nullopt, error_};
        skipSpace();
        if (p_ != end_)
            return fail("unexpected text after the object");
        return {top.toMap(), QString()};
    }

private:
    SettingsFileFormat::Parsed fail(const char* reason) {
        setError(reason);
        return {std::nullopt, error_};
    }

    bool setError(const char* reason) {
        if (error_.isEmpty())
            error_ =
                QStringLiteral("%1 at byte %2").arg(QLatin1StringView(reason)).arg(p_ - begin_);
        return false;
    }

    void skipSpace() {
        while (p_ != end_ && (*p_ == ' ' || *p_ == '\t' || *p_ == '\n' || *p_ == '\r'))
            ++p_;
    }

    bool literal(std::string_view word) {
        if (std::size_t(end_ - p_) < word.size() || std::string_view(p_, word.size()) != word)
            return setError("unknown literal");
        p_ += word.size();
        return true;
    }

    bool value(QVariant& out, int depth) {
        skipSpace();
        if (p_ == end_)
            return setError("unexpected end of file");
        switch (*p_) {
        case '{':
            return object(out, depth + 1);
        case '[':
            return array(out, depth + 1);
        case '"': {
            QString text;
            if (!string(text))
                return false;
            out = text;
            return true;
        }
        case 't':
            out = true;
            return literal("true");
        case 'f':
            out = false;
            return literal("false");
        case 'n':
            out = null();
            return literal("null");
        default:
            return number(out);
        }
    }

    bool object(QVariant& out, int depth) {
        if (depth > SettingsFileFormat::kMaxDepth)
            return setError("nesting too deep");
        ++p_; // '{'
        QVariantMap members;
        skipSpace();
        if (p_ != end_ && *p_ == '}') {
            ++p_;
            out = members;
            return true;
        }
        while (true) {
            skipSpace();
            if (p_ == end_ || *p_ != '"')
                return setError("expected a key");
            QString key;
            if (!string(key))
                return false;
            skipSpace();
            if (p_ == end_ || *p_ != ':')
                return setError("expected ':'");
            ++p_;
            QVariant member;
            if (!value(member, depth))
                return false;
            members.insert(key, member); // a repeated key: the last one wins
            skipSpace();
            if (p_ == end_)
                return setError("unexpected end of file");
            if (*p_ == ',') {
                ++p_;
                continue;
            }
            if (*p_ != '}')
                return setError("expected ',' or '}'");
            ++p_;
            out = unwrap(std::move(members));
            return true;
        }
    }

    bool array(QVariant& out, int depth) {
        if (depth > SettingsFileFormat::kMaxDepth)
            return setError("nesting too deep");
        ++p_; // '['
        QVariantList elements;
        skipSpace();
        if (p_ != end_ && *p_ == ']') {
            ++p_;
            out = elements;
            return true;
        }
        while (true) {
            QVariant element;
            if (!value(element, depth))
                return false;
            elements.append(element);
            skipSpace();
            if (p_ == end_)
                return setError("unexpected end of file");
            if (*p_ == ',') {
                ++p_;
                continue;
            }
            if (*p_ != ']')
                return setError("expected ',' or ']'");
            ++p_;
            out = elements;
            return true;
        }
    }

    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

    bool digits() {
        if (p_ == end_ || !isDigit(*p_))
            return setError("malformed number");
        while (p_ != end_ && isDigit(*p_))
            ++p_;
        return true;
    }

    bool number(QVariant& out) {
        const char* start = p_;
        if (*p_ == '-')
            ++p_;
        if (p_ == end_ || !isDigit(*p_))
            return setError("unexpected character");
        if (*p_ == '0')
            ++p_;
        else if (!digits())
            return false;
        bool integral = true;
        if (p_ != end_ && *p_ == '.') {
            integral = false;
            ++p_;
            if (!digits())
                return false;
        }
        if (p_ != end_ && (*p_ == 'e' || *p_ == 'E')) {
            integral = false;
            ++p_;
            if (p_ != end_ && (*p_ == '+' || *p_ == '-'))
                ++p_;
            if (!digits())
                return false;
        }
        if (integral) {
            qint64 whole = 0;
            const auto [end, error] = std::from_chars(start, p_, whole);
            if (error == std::errc() && end == p_) {
                out = QVariant::fromValue<qlonglong>(whole);
                return true;
            }
            // Too long for 64 bits: it can only be read as a double.
        }
        double real = 0;
        const auto [end, error] = std::from_chars(start, p_, real);
        if (error != std::errc() || end != p_ || !std::isfinite(real))
            return setError("number out of range");
        out = real;
        return true;
    }

    bool string(QString& out) {
        ++p_; // opening quote
        const char* run = p_;
        auto flush = [&] {
            if (p_ != run)
                out += QString::fromUtf8(run, p_ - run);
        };
        while (true) {
            if (p_ == end_)
                return setError("unterminated string");
            const unsigned char c = static_cast<unsigned char>(*p_);
            if (c == '"') {
                flush();
                ++p_;
                return true;
            }
            if (c < 0x20)
                return setError("control character in string");
            if (c != '\\') {
                ++p_;
                continue;
            }
            flush();
            ++p_;
            if (p_ == end_)
                return setError("unterminated string");
            switch (*p_) {
            case '"':
                out += QLatin1Char('"');
                break;
            case '\\':
                out += QLatin1Char('\\');
                break;
            case '/':
                out += QLatin1Char('/');
                break;
            case 'b':
                out += QLatin1Char('\b');
                break;
            case 'f':
                out += QLatin1Char('\f');
                break;
            case 'n':
                out += QLatin1Char('\n');
                break;
            case 'r':
                out += QLatin1Char('\r');
                break;
            case 't':
                out += QLatin1Char('\t');
                break;
            case 'u': {
                if (end_ - p_ < 5)
                    return setError("malformed escape");
                char16_t unit = 0;
                for (int i = 1; i <= 4; ++i) {
                    const int digit = hexDigitValue(p_[i]);
                    if (digit < 0)
                        return setError("malformed escape");
                    unit = char16_t(unit * 16 + digit);
                }
                // Surrogates are kept as written, paired or not, so they write back the same.
                out += QChar(unit);
                p_ += 4;
                break;
            }
            default:
                return setError("malformed escape");
            }
            ++p_;
            run = p_;
        }
    }

    const char* begin_;
    const char* p_;
    const char* end_;
    QString error_;
};

void appendString(QByteArray& out, QStringView text) {
    appendJsonString(out, text);
}

void appendDouble(QByteArray& out, double value) {
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    QByteArray text = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
    // A double always shows a fraction or an exponent, so it reads back as a double.
    if (!text.contains('.') && !text.contains('e'))
        text += ".0";
    out += text;
}

void appendIndent(QByteArray& out, int level) {
    out.append(qsizetype(level) * 4, ' ');
}

void appendValue(QByteArray& out, const QVariant& value, int level) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        out += value.toBool() ? "true" : "false";
        return;
    case QMetaType::LongLong:
        out += QByteArray::number(value.toLongLong());
        return;
    case QMetaType::Double:
        appendDouble(out, value.toDouble());
        return;
    case QMetaType::QString:
        appendString(out, value.toString());
        return;
    case QMetaType::QDateTime:
        out += "{\"date\": ";
        appendString(out, dateText(value.toDateTime()));
        out += '}';
        return;
    case QMetaType::QByteArray:
        out += "{\"data\": \"" + value.toByteArray().toBase64() + "\"}";
        return;
    case QMetaType::QVariantList: {
        const QVariantList elements = value.toList();
        if (elements.isEmpty()) {
            out += "[]";
            return;
        }
        out += "[\n";
        for (qsizetype i = 0; i < elements.size(); ++i) {
            appendIndent(out, level + 1);
            appendValue(out, elements[i], level + 1);
            out += i + 1 < elements.size() ? ",\n" : "\n";
        }
        appendIndent(out, level);
        out += ']';
        return;
    }
    case QMetaType::QVariantMap: {
        const QVariantMap members = value.toMap();
        if (members.isEmpty()) {
            out += "{}";
            return;
        }
        out += "{\n";
        qsizetype written = 0;
        for (auto it = members.constBegin(); it != members.constEnd(); ++it) {
            appendIndent(out, level + 1);
            appendString(out, it.key());
            out += ": ";
            appendValue(out, it.value(), level + 1);
            out += ++written < members.size() ? ",\n" : "\n";
        }
        appendIndent(out, level);
        out += '}';
        return;
    }
    default:
        out += "null";
        return;
    }
}

} // namespace

SettingsFileFormat::Parsed SettingsFileFormat::parse(QByteArrayView bytes) {
    // Some editors start UTF-8 files with a byte order mark.
    if (bytes.startsWith(QByteArrayView("\xEF\xBB\xBF")))
        bytes = bytes.sliced(3);
    if (!bytes.isValidUtf8())
        return {std::nullopt, QStringLiteral("the file is not UTF-8 text")};
    Parser parser(bytes.data(), bytes.data() + bytes.size());
    return parser.document();
}

QByteArray SettingsFileFormat::serialize(const QVariantMap& domain) {
    QByteArray out;
    appendValue(out, domain, 0);
    out += '\n';
    return out;
}

std::optional<QVariant> SettingsFileFormat::normalized(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::LongLong:
        return value;
    case QMetaType::Nullptr:
        return null();
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::UInt:
    case QMetaType::UShort:
        return QVariant::fromValue<qlonglong>(value.toLongLong());
    case QMetaType::ULongLong:
        if (value.toULongLong() > quint64(std::numeric_limits<qint64>::max()))
            return std::nullopt;
        return QVariant::fromValue<qlonglong>(value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        if (!std::isfinite(value.toDouble()))
            return std::nullopt;
        return QVariant(value.toDouble());
    case QMetaType::QDateTime: {
        const QDateTime date = value.toDateTime();
        if (!date.isValid() || !parseDate(dateText(date)))
            return std::nullopt;
        return date.toUTC();
    }
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        QVariantList elements;
        for (const QVariant& element : value.toList()) {
            auto normal = normalized(element);
            if (!normal)
                return std::nullopt;
            elements.append(*normal);
        }
        return elements;
    }
    case QMetaType::QVariantMap: {
        QVariantMap members;
        const QVariantMap source = value.toMap();
        for (auto it = source.constBegin(); it != source.constEnd(); ++it) {
            auto normal = normalized(it.value());
            if (!normal)
                return std::nullopt;
            members.insert(it.key(), *normal);
        }
        return members;
    }
    default:
        return std::nullopt;
    }
}

bool SettingsFileFormat::identical(const QVariant& a, const QVariant& b) {
    if (a.typeId() != b.typeId())
        return false;
    switch (a.typeId()) {
    case QMetaType::QVariantList: {
        const QVariantList left = a.toList();
        const QVariantList right = b.toList();
        if (left.size() != right.size())
            return false;
        for (qsizetype i = 0; i < left.size(); ++i) {
            if (!identical(left[i], right[i]))
                return false;
        }
        return true;
    }
    case QMetaType::QVariantMap: {
        const QVariantMap left = a.toMap();
        const QVariantMap right = b.toMap();
        if (left.size() != right.size())
            return false;
        for (auto l = left.constBegin(), r = right.constBegin(); l != left.constEnd(); ++l, ++r) {
            if (l.key() != r.key() || !identical(l.value(), r.value()))
                return false;
        }
        return true;
    }
    case QMetaType::Nullptr:
    case QMetaType::UnknownType:
        return true;
    default:
        return a == b;
    }
}

} // namespace lumetra
