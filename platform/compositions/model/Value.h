#pragma once

#include <QString>

#include <concepts>
#include <memory>
#include <variant>

namespace tarnwell::compositions {

class Image;
class Structure;
using ImageRef = std::shared_ptr<const Image>;
using StructureRef = std::shared_ptr<const Structure>;

/// What a port carries. Virtual ports carry anything; Other stands for the kinds that nothing here
/// produces, such as meshes.
enum class PortType : quint8 {
    Virtual,
    Number,
    Index,
    Boolean,
    String,
    Color,
    Image,
    Structure,
    Other
};

/// The name of a port type, as reports and the command line show it.
QString portTypeName(PortType type);
/// The type that a port class of a file stands for, "QCNumberPort" for example; Other if unknown.
PortType portTypeOfClass(QStringView portClass);

/// Components from 0 to 1, not premultiplied. Values outside are legal until something is drawn.
struct Color
{
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 0.0;

    friend bool operator==(const Color &, const Color &) = default;
};

/// A whole number that is never negative.
struct Index
{
    quint64 value = 0;

    friend bool operator==(const Index &, const Index &) = default;
};

/// One value on a wire of a composition, or nothing. Copies are cheap: strings, images and
/// structures are shared and never change once made.
class Value
{
public:
    Value() noexcept = default;
    template <std::same_as<bool> T>
    Value(T value) noexcept
        : m_data(value)
    {}
    Value(double value) noexcept
        : m_data(value)
    {}
    Value(Index value) noexcept
        : m_data(value)
    {}
    Value(const Color &value) noexcept
        : m_data(value)
    {}
    /// Texts above the limit are cut.
    Value(const QString &value);
    Value(ImageRef value) noexcept;
    Value(StructureRef value) noexcept;

    static Value index(qint64 value) noexcept { return Index{value > 0 ? quint64(value) : 0}; }
    /// What a port of that type holds when nothing was ever put there.
    static Value zero(PortType type);

    /// Virtual for no value at all.
    PortType type() const noexcept;
    bool isNull() const noexcept { return m_data.index() == 0; }
    bool isNumeric() const noexcept;

    /// Conversions as they happen where ports of different types are wired together. What cannot
    /// be converted becomes the zero of the type asked for.
    double toNumber() const;
    qint64 toIndex() const;
    bool toBoolean() const;
    QString toString() const;
    Color toColor() const;
    ImageRef toImage() const;
    StructureRef toStructure() const;
    Value converted(PortType type) const;

    /// By value; numbers of different types compare as numbers, images are equal if they are the
    /// same image.
    friend bool operator==(const Value &a, const Value &b);
    /// Whether both are surely equal, found out in constant time but for short strings.
    bool isIdentical(const Value &other) const;

private:
    std::variant<std::monostate, bool, Index, double, Color, QString, ImageRef, StructureRef>
        m_data;
};

} // namespace tarnwell::compositions
