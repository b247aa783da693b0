#include "compositions/model/Value.h"

#include "compositions/Limits.h"
#include "compositions/model/Image.h"
#include "compositions/model/Structure.h"

#include <QLocale>

#include <array>
#include <cmath>
#include <limits>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array typeNames{"Virtual"_L1, "Number"_L1, "Index"_L1,     "Boolean"_L1, "String"_L1,
                               "Color"_L1,   "Image"_L1,  "Structure"_L1, "Other"_L1};

/// Dumps of structures are for looking at only, so they stop early.
constexpr int dumpLength = 4'096;

QString numberText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

void dump(const Value &value, QString &text)
{
    if (value.type() != PortType::Structure) {
        text += value.toString();
        return;
    }
    const StructureRef structure = value.toStructure();
    text += u'(';
    for (qsizetype i = 0; i < structure->count() && text.size() < dumpLength; ++i) {
        if (i > 0) {
            text += ", "_L1;
        }
        if (!structure->isList()) {
            text += structure->key(i) + " = "_L1;
        }
        dump(structure->members()[size_t(i)], text);
    }
    text += u')';
}

double numberFromText(QStringView text)
{
    // Nobody writes a number as long as that, and texts may be very long.
    constexpr qsizetype longestNumber = 1'000;
    if (text.size() > longestNumber) {
        return 0.0;
    }
    bool complete = false;
    const double number = text.trimmed().toDouble(&complete);
    return complete && std::isfinite(number) ? number : 0.0;
}

} // namespace

QString portTypeName(PortType type)
{
    return typeNames[size_t(type)];
}

PortType portTypeOfClass(QStringView portClass)
{
    if (!portClass.startsWith(u"QC") || !portClass.endsWith(u"Port")) {
        return PortType::Other;
    }
    const QStringView name = portClass.mid(2, portClass.size() - 6);
    if (name == "GLImage"_L1 || name == "Image"_L1) {
        return PortType::Image;
    }
    for (size_t i = 0; i < typeNames.size(); ++i) {
        if (name == typeNames[i]) {
            return PortType(i);
        }
    }
    return PortType::Other;
}

Value::Value(const QString &value)
    : m_data(value.size() > limits::stringLength ? value.left(limits::stringLength) : value)
{}

Value::Value(ImageRef value) noexcept
{
    if (value) {
        m_data = std::move(value);
    }
}

Value::Value(StructureRef value) noexcept
{
    if (value) {
        m_data = std::move(value);
    }
}

Value Value::zero(PortType type)
{
    switch (type) {
    case PortType::Number:
        return 0.0;
    case PortType::Index:
        return Index{};
    case PortType::Boolean:
        return false;
    case PortType::String:
        return QString();
    case PortType::Color:
        return Color{};
    case PortType::Virtual:
    case PortType::Image:
    case PortType::Structure:
    case PortType::Other:
        break;
    }
    return {};
}

PortType Value::type() const noexcept
{
    constexpr std::array types{PortType::Virtual, PortType::Boolean,  PortType::Index,
                               PortType::Number,  PortType::Color,    PortType::String,
                               PortType::Image,   PortType::Structure};
    return types[m_data.index()];
}

bool Value::isNumeric() const noexcept
{
    return m_data.index() >= 1 && m_data.index() <= 3;
}

double Value::toNumber() const
{
    if (const auto *number = std::get_if<double>(&m_data)) {
        return *number;
    }
    if (const auto *boolean = std::get_if<bool>(&m_data)) {
        return *boolean ? 1.0 : 0.0;
    }
    if (const auto *index = std::get_if<Index>(&m_data)) {
        return double(index->value);
    }
    if (const auto *text = std::get_if<QString>(&m_data)) {
        return numberFromText(*text);
    }
    return 0.0;
}

qint64 Value::toIndex() const
{
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    if (const auto *index = std::get_if<Index>(&m_data)) {
        return index->value > quint64(largest) ? largest : qint64(index->value);
    }
    const double number = toNumber();
    if (!(number > 0.0)) {
        return 0;
    }
    return number >= double(largest) ? largest : qint64(number);
}

bool Value::toBoolean() const
{
    if (const auto *boolean = std::get_if<bool>(&m_data)) {
        return *boolean;
    }
    if (const auto *text = std::get_if<QString>(&m_data)) {
        return text->compare("true"_L1, Qt::CaseInsensitive) == 0 ||
               text->compare("yes"_L1, Qt::CaseInsensitive) == 0 || numberFromText(*text) != 0.0;
    }
    const double number = toNumber();
    return number != 0.0 && !std::isnan(number);
}

QString Value::toString() const
{
    switch (type()) {
    case PortType::Boolean:
    case PortType::Index:
    case PortType::Number:
        return numberText(toNumber());
    case PortType::String:
        return std::get<QString>(m_data);
    case PortType::Color: {
        const Color &color = std::get<Color>(m_data);
        return u"(%1, %2, %3, %4)"_s.arg(color.red)
            .arg(color.green)
            .arg(color.blue)
            .arg(color.alpha);
    }
    case PortType::Structure: {
        QString text;
        dump(*this, text);
        return text;
    }
    default:
        return {};
    }
}

Color Value::toColor() const
{
    if (const auto *color = std::get_if<Color>(&m_data)) {
        return *color;
    }
    if (isNumeric()) {
        const double grey = toNumber();
        return {grey, grey, grey, 1.0};
    }
    return {};
}

ImageRef Value::toImage() const
{
    if (const auto *image = std::get_if<ImageRef>(&m_data)) {
        return *image;
    }
    if (const auto *color = std::get_if<Color>(&m_data)) {
        return Image::constant(*color);
    }
    return {};
}

StructureRef Value::toStructure() const
{
    const auto *structure = std::get_if<StructureRef>(&m_data);
    return structure != nullptr ? *structure : StructureRef{};
}

Value Value::converted(PortType type) const
{
    if (type == PortType::Virtual || type == PortType::Other || type == this->type()) {
        return *this;
    }
    switch (type) {
    case PortType::Number:
        return toNumber();
    case PortType::Index:
        return index(toIndex());
    case PortType::Boolean:
        return toBoolean();
    case PortType::String:
        return toString();
    case PortType::Color:
        return toColor();
    case PortType::Image:
        return toImage();
    default:
        return toStructure();
    }
}

bool operator==(const Value &a, const Value &b)
{
    if (a.isNumeric() && b.isNumeric()) {
        return a.toNumber() == b.toNumber();
    }
    if (a.m_data == b.m_data) {
        return true;
    }
    if (a.type() != PortType::Structure || b.type() != PortType::Structure) {
        return false;
    }
    const StructureRef left = a.toStructure();
    const StructureRef right = b.toStructure();
    if (left->count() != right->count() || left->isList() != right->isList()) {
        return false;
    }
    for (qsizetype i = 0; i < left->count(); ++i) {
        if (!(left->members()[size_t(i)] == right->members()[size_t(i)]) ||
            left->key(i) != right->key(i)) {
            return false;
        }
    }
    return true;
}

bool Value::isIdentical(const Value &other) const
{
    if (m_data.index() != other.m_data.index()) {
        return false;
    }
    if (const auto *text = std::get_if<QString>(&m_data)) {
        const auto &otherText = std::get<QString>(other.m_data);
        constexpr qsizetype longText = 256;
        return text->constData() == otherText.constData() ||
               (text->size() <= longText && *text == otherText);
    }
    return m_data == other.m_data;
}

} // namespace tarnwell::compositions
