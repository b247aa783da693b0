#include "foundation/plist/BinaryWriter.h"

#include <QHash>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <limits>

namespace tarnwell::plist::detail {

namespace {

const QString emptyText;
const QByteArray emptyData;

/// How many bytes a reference or an offset up to this one takes.
int widthOf(quint64 largest)
{
    return std::max(1, (int(std::bit_width(largest)) + 7) / 8);
}

quint32 mix(quint64 bits)
{
    bits ^= bits >> 32;
    bits *= 0x9e3779b97f4a7c15ULL;
    return quint32(bits >> 32);
}

} // namespace

QByteArray BinaryWriter::write(const Value &value)
{
    m_table.resize(1024);
    collect(value);

    m_referenceWidth = widthOf(m_objects.size() - 1);
    m_out.reserve(m_children.size() * size_t(m_referenceWidth) + m_objects.size() * 16);
    constexpr std::string_view header = "bplist00";
    m_out.insert(m_out.end(), header.begin(), header.end());

    std::vector<quint64> offsets;
    offsets.reserve(m_objects.size());
    for (const Object &object : m_objects) {
        offsets.push_back(m_out.size());
        writeObject(object);
    }
    const quint64 tableOffset = m_out.size();
    const int offsetWidth = widthOf(offsets.back());
    for (const quint64 offset : offsets)
        writeBigEndian(offset, offsetWidth);

    writeBigEndian(0, 6);
    writeBigEndian(quint64(offsetWidth), 1);
    writeBigEndian(quint64(m_referenceWidth), 1);
    writeBigEndian(m_objects.size(), 8);
    writeBigEndian(0, 8); // the top object
    writeBigEndian(tableOffset, 8);
    return QByteArray(m_out.data(), qsizetype(m_out.size()));
}

BinaryWriter::Reference BinaryWriter::collect(const Value &value)
{
    Object object{.kind = Kind::Boolean, .bits = Access::bits(value)};
    Node *node = Access::isShared(value) ? Access::node(value) : nullptr;
    switch (value.type()) {
    case Value::Type::Null:
        Q_UNREACHABLE();
    case Value::Type::Boolean:
        break;
    case Value::Type::Integer:
        object.kind = value.isHugeInteger() ? Kind::HugeInteger : Kind::Integer;
        break;
    case Value::Type::Real:
        object.kind = value.isSinglePrecision() ? Kind::Float : Kind::Real;
        break;
    case Value::Type::Date:
        object.kind = Kind::Date;
        break;
    case Value::Type::Uid:
        object.kind = Kind::Uid;
        break;
    case Value::Type::String:
        object.kind = Kind::String;
        object.text = node ? &static_cast<StringNode *>(node)->text : &emptyText;
        break;
    case Value::Type::Data:
        object.kind = Kind::Data;
        object.data = node ? &static_cast<DataNode *>(node)->bytes : &emptyData;
        break;
    case Value::Type::Array:
    case Value::Type::Dictionary:
        object.kind = value.isArray() ? Kind::Array : Kind::Dictionary;
        object.container = node ? container(node) : nullptr;
        return collectContainer(object);
    }
    return intern(object).first;
}

BinaryWriter::Reference BinaryWriter::collectContainer(const Object &object)
{
    const ContainerNode *node = object.container;
    Reference reference = 0;
    if (node && node->hasOneOwner()) {
        reference = add(object);
    } else {
        const auto [known, isNew] = intern(object);
        if (!isNew)
            return known;
        reference = known;
    }
    if (!node)
        return reference;

    size_t place = m_children.size();
    m_objects[reference].children = Reference(place);
    if (node->keys) {
        collectKeys(*node->keys);
        place = m_children.size();
    }
    if (m_children.size() > std::numeric_limits<Reference>::max() - node->size)
        qBadAlloc();
    m_children.resize(m_children.size() + node->size);
    for (quint32 i = 0; i < node->size; ++i) {
        const Reference child = collect(node->values()[i]);
        m_children[place + i] = child;
    }
    return reference;
}

void BinaryWriter::collectKeys(const KeyTable &table)
{
    // What many dictionaries share is looked up once.
    const bool isShared = !table.hasOneOwner();
    if (isShared) {
        const auto known = m_keys.find(&table);
        if (known != m_keys.end()) {
            m_children.insert(m_children.end(), known->second.begin(), known->second.end());
            return;
        }
    }
    const size_t start = m_children.size();
    for (const QString &key : table.keys) {
        Object object{.kind = Kind::String, .bits = 0};
        object.text = &key;
        m_children.push_back(intern(object).first);
    }
    if (isShared)
        m_keys.emplace(
            &table, std::vector<Reference>(m_children.begin() + qptrdiff(start), m_children.end()));
}

std::pair<BinaryWriter::Reference, bool> BinaryWriter::intern(const Object &object)
{
    quint32 hash = 0;
    if (object.kind == Kind::String)
        hash = mix(qHash(QStringView(*object.text)));
    else if (object.kind == Kind::Data)
        hash = mix(qHash(QByteArrayView(*object.data)));
    else
        hash = mix(object.bits);
    hash += quint32(object.kind);

    const auto isSame = [&object](const Object &other) {
        if (object.kind != other.kind)
            return false;
        if (object.kind == Kind::String)
            return object.text == other.text || *object.text == *other.text;
        if (object.kind == Kind::Data)
            return object.data == other.data || *object.data == *other.data;
        return object.bits == other.bits;
    };
    const size_t mask = m_table.size() - 1;
    size_t place = hash & mask;
    for (; m_table[place].reference != 0; place = (place + 1) & mask) {
        const Reference found = m_table[place].reference - 1;
        if (m_table[place].hash == hash && isSame(m_objects[found]))
            return {found, false};
    }
    const Reference added = add(object);
    m_table[place] = {hash, added + 1};
    if (++m_tableUse * 2 > m_table.size())
        growTable();
    return {added, true};
}

BinaryWriter::Reference BinaryWriter::add(const Object &object)
{
    if (m_objects.size() >= std::numeric_limits<Reference>::max() - 1)
        qBadAlloc();
    m_objects.push_back(object);
    return Reference(m_objects.size() - 1);
}

void BinaryWriter::growTable()
{
    std::vector<Slot> larger(m_table.size() * 4);
    const size_t mask = larger.size() - 1;
    for (const Slot &slot : m_table) {
        if (slot.reference == 0)
            continue;
        size_t place = slot.hash & mask;
        while (larger[place].reference != 0)
            place = (place + 1) & mask;
        larger[place] = slot;
    }
    m_table.swap(larger);
}

void BinaryWriter::writeObject(const Object &object)
{
    switch (object.kind) {
    case Kind::Boolean:
        m_out.push_back(object.bits ? 0x09 : 0x08);
        break;
    case Kind::Integer:
    case Kind::HugeInteger:
        writeInteger(object.bits, object.kind == Kind::HugeInteger);
        break;
    case Kind::Float:
        m_out.push_back(0x22);
        writeBigEndian(std::bit_cast<quint32>(float(std::bit_cast<double>(object.bits))), 4);
        break;
    case Kind::Real:
    case Kind::Date:
        m_out.push_back(object.kind == Kind::Date ? 0x33 : 0x23);
        writeBigEndian(object.bits, 8);
        break;
    case Kind::Uid: {
        // Other readers expect one of these widths.
        const int width = int(std::bit_ceil(unsigned(widthOf(object.bits))));
        m_out.push_back(char(0x80 | (width - 1)));
        writeBigEndian(object.bits, width);
        break;
    }
    case Kind::String:
        writeString(*object.text);
        break;
    case Kind::Data:
        writeHeader(0x40, quint64(object.data->size()));
        m_out.insert(m_out.end(), object.data->begin(), object.data->end());
        break;
    case Kind::Array:
    case Kind::Dictionary:
        writeReferences(object);
        break;
    }
}

void BinaryWriter::writeString(const QString &text)
{
    const auto *units = reinterpret_cast<const char16_t *>(text.utf16());
    const auto length = size_t(text.size());
    char16_t allBits = 0;
    for (size_t i = 0; i < length; ++i)
        allBits |= units[i];
    const bool isAscii = allBits < 0x80;
    writeHeader(isAscii ? 0x50 : 0x60, length);
    const size_t start = m_out.size();
    m_out.resize(start + (isAscii ? length : 2 * length));
    char *out = m_out.data() + start;
    if (isAscii)
        std::transform(units, units + length, out, [](char16_t unit) { return char(unit); });
    else
        qToBigEndian<char16_t>(units, qsizetype(length), out);
}

void BinaryWriter::writeReferences(const Object &object)
{
    const quint32 size = object.container ? object.container->size : 0;
    const bool isDictionary = object.kind == Kind::Dictionary;
    writeHeader(isDictionary ? 0xd0 : 0xa0, size);
    const Reference *child = m_children.data() + object.children;
    const Reference *end = child + size_t(size) * (isDictionary ? 2 : 1);
    for (; child != end; ++child)
        writeBigEndian(*child, m_referenceWidth);
}

void BinaryWriter::writeHeader(uchar type, quint64 count)
{
    if (count < 15) {
        m_out.push_back(char(type | count));
        return;
    }
    m_out.push_back(char(type | 0x0f));
    writeInteger(count, false);
}

void BinaryWriter::writeInteger(quint64 value, bool isHuge)
{
    // Up to four bytes are read as unsigned, eight as signed.
    if (isHuge) {
        m_out.push_back(0x14);
        writeBigEndian(0, 8);
        writeBigEndian(value, 8);
        return;
    }
    const unsigned width = std::bit_ceil(unsigned(widthOf(value)));
    m_out.push_back(char(0x10 | std::countr_zero(width)));
    writeBigEndian(value, int(width));
}

void BinaryWriter::writeBigEndian(quint64 value, int width)
{
    char bytes[8];
    qToBigEndian(value, bytes);
    m_out.insert(m_out.end(), bytes + 8 - width, bytes + 8);
}

} // namespace tarnwell::plist::detail
