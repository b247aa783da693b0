#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <compare>
#include <concepts>
#include <memory>
#include <variant>

namespace tarnwell::plist {

class Array;
class Dictionary;

/// A point in time, in seconds since 1 January 2001, 00:00 UTC.
struct Date
{
    double absoluteTime = 0.0;

    friend bool operator==(const Date &, const Date &) = default;
};

/// A reference inside a keyed archive. The pane never makes one; it only carries them along.
struct Uid
{
    quint64 value = 0;

    friend bool operator==(const Uid &, const Uid &) = default;
};

/// One value of a property list, or nothing.
///
/// A copy costs a reference count at most: strings, data, arrays and dictionaries are shared until
/// one of the copies is changed. Equality is by value: 1 equals 1.0, while true equals neither.
/// A value that is asked for another type than it has answers with that type's empty value.
class Value
{
public:
    enum class Type : quint8 {
        Null,
        Boolean,
        Integer,
        Real,
        String,
        Data,
        Date,
        Uid,
        Array,
        Dictionary
    };

    Value() noexcept = default;
    template <std::same_as<bool> T>
    Value(T value) noexcept;
    template <std::integral T>
        requires(!std::same_as<T, bool>)
    Value(T value) noexcept;
    Value(double value) noexcept;
    Value(const QString &value);
    Value(QLatin1StringView value);
    Value(const QByteArray &value);
    Value(plist::Date value) noexcept;
    Value(plist::Uid value) noexcept;
    Value(const plist::Array &value);
    Value(const plist::Dictionary &value);

    Type type() const noexcept;
    bool isNull() const noexcept { return type() == Type::Null; }
    bool isBoolean() const noexcept { return type() == Type::Boolean; }
    bool isInteger() const noexcept { return type() == Type::Integer; }
    bool isReal() const noexcept { return type() == Type::Real; }
    bool isNumber() const noexcept { return isInteger() || isReal(); }
    bool isString() const noexcept { return type() == Type::String; }
    bool isData() const noexcept { return type() == Type::Data; }
    bool isDate() const noexcept { return type() == Type::Date; }
    bool isUid() const noexcept { return type() == Type::Uid; }
    bool isArray() const noexcept { return type() == Type::Array; }
    bool isDictionary() const noexcept { return type() == Type::Dictionary; }

    bool toBool() const noexcept;
    /// A number as an integer; a real is truncated and held within the range.
    qint64 toInteger() const noexcept;
    double toDouble() const noexcept;
    QString toString() const;
    QByteArray toData() const;
    plist::Date toDate() const noexcept;
    const plist::Array &toArray() const noexcept;
    const plist::Dictionary &toDictionary() const noexcept;

    friend bool operator==(const Value &a, const Value &b);
};

/// Prints a value for a log line.
QString description(const Value &value);

} // namespace tarnwell::plist
