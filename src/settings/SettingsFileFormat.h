#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <optional>

namespace lumetra {

// The typed JSON form of the settings file. JSON alone cannot tell 1 from 1.0 or a date from
// a string, so the file keeps every type apart like this:
//
//   Boolean   true / false
//   integer   a number written without fraction or exponent: 3, -12
//   double    a number written with a fraction or an exponent: 1.0, 0.5, 1e+300
//   string    "text"
//   array     [ ... ]  (elements typed the same way)
//   date      {"date": "2026-11-22T05:15:00.000Z"}  (ISO 8601 with a zone; written in UTC)
//   data      {"data": "base64"}
//   null      null, and objects other than the two wrappers: kept as they are
//
// Values are QVariants of the types Bool, LongLong, Double, QString, QVariantList,
// QDateTime, QByteArray, QVariantMap and nullptr. Parsing is strict (RFC 8259, UTF-8, a
// top-level object, bounded nesting); anything else is an error with a short reason.
class SettingsFileFormat {
public:
    struct Parsed {
        std::optional<QVariantMap> domain;
        QString error; // set when domain is empty
    };

    static constexpr int kMaxDepth = 64;

    static Parsed parse(QByteArrayView bytes);

    // Indented, keys in sorted order, a newline at the end.
    static QByteArray serialize(const QVariantMap& domain);

    // The value in the form the file holds (integers as LongLong, string lists as lists,
    // dates in UTC); no value for a type or a number the file cannot hold.
    static std::optional<QVariant> normalized(const QVariant& value);

    // Equal in type and value: unlike QVariant's ==, 1 and 1.0 differ.
    static bool identical(const QVariant& a, const QVariant& b);
};

} // namespace lumetra
