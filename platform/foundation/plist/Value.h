#pragma once

#include "foundation/plist/Array.h"
#include "foundation/plist/Dictionary.h"

#include <QByteArray>
#include <QString>

#include <concepts>
#include <iosfwd>
#include <limits>

namespace tarnwell::plist {

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

/// How deep arrays and dictionaries may lie in one another. The readers refuse a deeper property
/// list and the writers a deeper value; whoever nests values further must not compare them either.
inline constexpr int maximumDepth = 512;

/// One value of a property list, or nothing.
///
/// A copy costs a reference count at most: strings, data, arrays and dictionaries are shared until
/// one of the copies is changed. A value that is asked for another type than it has answers with
/// that type's empty value.
///
/// Equality is by value: 1 equals 1.0, exactly (no rounding of large integers), while true equals
/// neither. NaN equals NaN, so that every value equals its copies and what was stored and read
/// back.
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

    Value() noexcept {}
    template <std::same_as<bool> T>
    Value(T value) noexcept
        : m_type(Type::Boolean)
    {
        m_payload.integer = value ? 1 : 0;
    }
    template <std::integral T>
    requires(!std::same_as<T, bool>) Value(T value)
    noexcept
        : m_type(Type::Integer)
    {
        m_payload.integer = static_cast<quint64>(value);
        if constexpr (std::unsigned_integral<T>)
            m_variant = m_payload.integer > quint64(std::numeric_limits<qint64>::max());
    }
    Value(double value) noexcept
        : m_type(Type::Real)
    {
        m_payload.real = value;
    }
    /// Remembers that four bytes are enough to store it.
    Value(float value) noexcept
        : m_type(Type::Real)
        , m_variant(1)
    {
        m_payload.real = double(value);
    }
    Value(const QString &value);
    Value(QLatin1StringView value);
    Value(const QByteArray &value);
    Value(plist::Date value) noexcept
        : m_type(Type::Date)
    {
        m_payload.real = value.absoluteTime;
    }
    Value(plist::Uid value) noexcept
        : m_type(Type::Uid)
    {
        m_payload.integer = value.value;
    }
    Value(const plist::Array &value) noexcept;
    Value(const plist::Dictionary &value) noexcept;
    Value(plist::Array &&value) noexcept;
    Value(plist::Dictionary &&value) noexcept;

    Value(const Value &other) noexcept;
    Value(Value &&other) noexcept
        : m_payload(other.m_payload.integer)
        , m_type(other.m_type)
        , m_variant(other.m_variant)
    {
        other.m_type = Type::Null;
    }
    Value &operator=(const Value &other) noexcept
    {
        Value copy(other);
        swap(copy);
        return *this;
    }
    Value &operator=(Value &&other) noexcept
    {
        Value taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~Value()
    {
        if (isShared())
            release();
    }
    void swap(Value &other) noexcept
    {
        std::swap(m_payload.integer, other.m_payload.integer);
        std::swap(m_type, other.m_type);
        std::swap(m_variant, other.m_variant);
    }

    Type type() const noexcept { return m_type; }
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
    /// An integer beyond the range of qint64.
    bool isHugeInteger() const noexcept { return isInteger() && m_variant != 0; }
    /// A real that was given or stored in four bytes.
    bool isSinglePrecision() const noexcept { return isReal() && m_variant != 0; }

    bool toBool() const noexcept { return isBoolean() && m_payload.integer != 0; }
    /// A number as an integer; a real is truncated and held within the range, as is a huge integer.
    /// NaN is 0.
    qint64 toInteger() const noexcept;
    /// Likewise, for the range from 0 to the largest quint64.
    quint64 toUnsignedInteger() const noexcept;
    double toDouble() const noexcept;
    QString toString() const;
    /// The text of a string without a reference of its own: good as long as this value is.
    QStringView toStringView() const noexcept;
    QByteArray toData() const;
    plist::Date toDate() const noexcept;
    plist::Uid toUid() const noexcept;
    /// These refer to what this value holds: good until it changes or goes.
    const plist::Array &toArray() const noexcept;
    const plist::Dictionary &toDictionary() const noexcept;

    friend bool operator==(const Value &a, const Value &b);

private:
    friend struct detail::Access;

    bool isShared() const noexcept
    {
        return m_type >= Type::String && m_type != Type::Date && m_type != Type::Uid;
    }
    void release() noexcept;

    struct Shared
    {
        detail::Node *node;
    };
    // Every shared kind begins with the pointer to its node, so that copying and moving need not
    // know which one it is.
    union Payload {
        Payload(quint64 bits = 0) noexcept
            : integer(bits)
        {}
        ~Payload() {}

        quint64 integer;
        double real;
        Shared shared;
        plist::Array array;
        plist::Dictionary dictionary;
    };

    Payload m_payload;
    Type m_type = Type::Null;
    quint8 m_variant = 0; // of an integer: beyond qint64; of a real: single precision
};

static_assert(sizeof(Value) == 16);

inline Dictionary::const_iterator &Dictionary::const_iterator::operator++() noexcept
{
    ++m_key;
    ++m_value;
    return *this;
}

/// Prints a value for a log line: on one line whatever it holds, the same for equal values of the
/// same types, and cut off with an ellipsis where it gets longer than any log line should be.
/// A string stands bare at the top and in quotation marks within arrays and dictionaries.
QString description(const Value &value);

/// Prints the description, for the messages of failed tests.
std::ostream &operator<<(std::ostream &stream, const Value &value);

} // namespace tarnwell::plist
