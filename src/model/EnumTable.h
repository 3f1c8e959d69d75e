#pragma once

#include <QCoreApplication>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>

namespace lumetra {

// One row of a settings enumeration: the case, its persisted raw value and its English label
// (the translation key; nullptr where the enumeration has no label of its own).
template <typename E, typename Raw>
struct EnumCase {
    E value;
    Raw raw;
    const char* english;
};

// Specialised beside each settings enumeration with `context` (the translation context) and
// `cases` (an array of EnumCase in declaration order, which is also the picker order).
template <typename E>
struct EnumTraits;

template <typename E>
concept TableEnum = std::is_enum_v<E> && requires {
    EnumTraits<E>::cases;
    EnumTraits<E>::context;
};

template <TableEnum E>
using RawType = std::remove_cvref_t<decltype(EnumTraits<E>::cases[0].raw)>;

template <TableEnum E>
constexpr auto allCases() {
    constexpr auto& cases = EnumTraits<E>::cases;
    std::array<E, cases.size()> values{};
    for (std::size_t i = 0; i < cases.size(); ++i)
        values[i] = cases[i].value;
    return values;
}

template <TableEnum E>
constexpr const auto& enumCase(E value) {
    for (const auto& row : EnumTraits<E>::cases) {
        if (row.value == value)
            return row;
    }
    // Only reachable with a value cast from an integer outside the enumeration.
    return EnumTraits<E>::cases[0];
}

// The case's row number: its place in declaration (and picker) order.
template <TableEnum E>
constexpr std::size_t enumIndex(E value) {
    return static_cast<std::size_t>(&enumCase(value) - EnumTraits<E>::cases.data());
}

template <TableEnum E>
constexpr RawType<E> rawValue(E value) {
    return enumCase(value).raw;
}

// Exact, case-sensitive lookup; no trimming.
template <TableEnum E>
requires std::is_same_v<RawType<E>, std::string_view>
constexpr std::optional<E> fromRaw(std::string_view raw) {
    for (const auto& row : EnumTraits<E>::cases) {
        if (row.raw == raw)
            return row.value;
    }
    return std::nullopt;
}

template <TableEnum E>
requires std::is_same_v<RawType<E>, std::string_view> std::optional<E> fromRaw(QStringView raw) {
    for (const auto& row : EnumTraits<E>::cases) {
        if (QLatin1StringView(row.raw.data(), qsizetype(row.raw.size())) == raw)
            return row.value;
    }
    return std::nullopt;
}

// The intervals compare seconds for exact equality: 1.5 or 0.49 construct nothing.
template <TableEnum E>
requires std::is_same_v < RawType<E>,
double > constexpr std::optional<E> fromRaw(double raw) {
    for (const auto& row : EnumTraits<E>::cases) {
        if (row.raw == raw)
            return row.value;
    }
    return std::nullopt;
}

template <typename E>
concept LabelledEnum = TableEnum<E> && !requires {
    EnumTraits<E>::hasDisplayName;
};

// The localised label, looked up with the English text as key and default.
template <LabelledEnum E>
QString displayName(E value) {
    return QCoreApplication::translate(EnumTraits<E>::context, enumCase(value).english);
}

// JSON form: the raw value as a string, or as a number for the intervals.
template <TableEnum E>
QJsonValue toJson(E value) {
    if constexpr (std::is_same_v<RawType<E>, double>) {
        return QJsonValue(rawValue(value));
    } else {
        const std::string_view raw = rawValue(value);
        return QJsonValue(QString::fromLatin1(raw.data(), qsizetype(raw.size())));
    }
}

template <TableEnum E>
std::optional<E> fromJson(const QJsonValue& json) {
    if constexpr (std::is_same_v<RawType<E>, double>) {
        return json.isDouble() ? fromRaw<E>(json.toDouble()) : std::nullopt;
    } else {
        return json.isString() ? fromRaw<E>(QStringView(json.toString())) : std::nullopt;
    }
}

} // namespace lumetra
