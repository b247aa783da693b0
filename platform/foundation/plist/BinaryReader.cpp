#include "foundation/plist/BinaryReader.h"

#include "foundation/plist/Extent.h"
#include "foundation/plist/PropertyList.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <memory>

namespace tarnwell::plist::detail {

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 headerSize = 8;
constexpr quint64 trailerSize = 32;
constexpr quint64 largestFile = std::numeric_limits<qint32>::max();
constexpr quint32 inProgress = std::numeric_limits<quint32>::max();

/// An unsigned integer of 1 to 8 bytes.
inline quint64 bigEndian(const uchar *bytes, int width)
{
    switch (width) {
    case 1:
        return bytes[0];
    case 2:
        return qFromBigEndian<quint16>(bytes);
    case 3:
        return quint64(bytes[0]) << 16 | quint64(bytes[1]) << 8 | bytes[2];
    case 4:
        return qFromBigEndian<quint32>(bytes);
    case 8:
        return qFromBigEndian<quint64>(bytes);
    default:
        quint64 value = 0;
        for (int i = 0; i < width; ++i)
            value = value << 8 | bytes[i];
        return value;
    }
}

/// A copy of a value that no other thread can know yet: it spares the locked instruction.
inline Value privateCopy(const Value &value, bool isShared)
{
    Node *node = isShared ? Access::node(value) : nullptr;
    if (!node)
        return value;
    node->references.store(node->references.load(std::memory_order_relaxed) + 1,
                           std::memory_order_relaxed);
    return Access::adopt(value.type(), node);
}

} // namespace

BinaryReader::BinaryReader(QByteArrayView bytes)
    : m_bytes(bytes)
    , m_start(reinterpret_cast<const uchar *>(bytes.data()))
{}

BinaryReader::~BinaryReader()
{
    for (auto &[references, shape] : m_shapes) {
        if (shape.keys->drop())
            delete shape.keys;
    }
}

Value BinaryReader::read()
{
    if (!readTrailer())
        return {};
    const Object *top = resolve(m_topObject, 0);
    return top ? top->value : Value();
}

bool BinaryReader::readTrailer()
{
    const auto size = quint64(m_bytes.size());
    const auto reject = [this](const QString &problem) {
        m_error = problem;
        return false;
    };
    if (!m_bytes.startsWith("bplist00"))
        return reject(u"The version of this binary property list is not 00"_s);
    if (size < headerSize + trailerSize)
        return reject(u"The file ends before its trailer"_s);
    if (size > largestFile)
        return reject(u"The file is larger than 2 GiB"_s);

    const uchar *trailer = m_start + size - trailerSize;
    m_offsetWidth = trailer[6];
    m_referenceWidth = trailer[7];
    const quint64 count = bigEndian(trailer + 8, 8);
    m_topObject = bigEndian(trailer + 16, 8);
    m_tableOffset = bigEndian(trailer + 24, 8);
    if (m_offsetWidth < 1 || m_offsetWidth > 8)
        return reject(u"Trailer: offsets of %1 bytes"_s.arg(m_offsetWidth));
    if (m_referenceWidth < 1 || m_referenceWidth > 8)
        return reject(u"Trailer: references of %1 bytes"_s.arg(m_referenceWidth));
    if (m_tableOffset < headerSize || m_tableOffset > size - trailerSize)
        return reject(u"Trailer: the offset table at 0x%1 lies outside of the file"_s.arg(
            m_tableOffset, 0, 16));
    m_untaken = m_tableOffset - headerSize;
    if (count > (size - trailerSize - m_tableOffset) / quint64(m_offsetWidth) || count > m_untaken)
        return reject(u"Trailer: no room for %1 objects"_s.arg(count));
    if (m_topObject >= count)
        return reject(u"Trailer: the top object is %1 of %2"_s.arg(m_topObject).arg(count));

    m_weightLimit = std::max(maximumExpansion, size);
    m_objects.resize(size_t(count));
    return true;
}

quint64 BinaryReader::offsetOf(quint64 index) const
{
    return bigEndian(m_start + m_tableOffset + index * quint64(m_offsetWidth), m_offsetWidth);
}

const BinaryReader::Object *BinaryReader::resolve(quint64 reference, int depth)
{
    if (reference >= m_objects.size()) {
        fail(u"refers to object %1 of %2"_s.arg(reference).arg(m_objects.size()));
        return nullptr;
    }
    const Object &object = m_objects[size_t(reference)];
    if (object.weight == inProgress) {
        failAt(reference, u"contains itself"_s);
        return nullptr;
    }
    if (object.weight != 0)
        return &object;

    const quint64 outer = std::exchange(m_current, reference);
    if (!decode(reference, depth))
        return nullptr;
    m_current = outer;
    return &object;
}

bool BinaryReader::decode(quint64 index, int depth)
{
    Object &object = m_objects[size_t(index)];
    const quint64 offset = offsetOf(index);
    if (offset < headerSize || offset >= m_tableOffset)
        return fail(u"lies outside of the objects"_s);
    Span rest{m_start + offset, m_start + m_tableOffset};
    if (!take(rest, 1, 1))
        return false;

    const uchar marker = m_start[offset];
    object.weight = 1;
    switch (marker >> 4) {
    case 0x0:
        return decodeSimple(marker, object);
    case 0x1:
        return decodeInteger(marker, rest, object);
    case 0x2:
    case 0x3:
        return decodeReal(marker, rest, object);
    case 0x4:
    case 0x5:
    case 0x6:
        return decodeBytes(marker, rest, object);
    case 0x8:
        return decodeUid(marker, rest, object);
    case 0xa:
    case 0xb:
    case 0xc:
        return decodeArray(marker, rest, object, depth);
    case 0xd:
        return decodeDictionary(marker, rest, object, depth);
    default:
        return fail(u"unknown marker 0x%1"_s.arg(marker, 2, 16, QLatin1Char('0')));
    }
}

bool BinaryReader::decodeSimple(uchar marker, Object &object)
{
    if (marker != 0x08 && marker != 0x09)
        return fail(u"unknown marker 0x%1"_s.arg(marker, 2, 16, QLatin1Char('0')));
    object.value = marker == 0x09;
    return true;
}

bool BinaryReader::decodeInteger(uchar marker, Span rest, Object &object)
{
    const uchar *bytes = rest.begin;
    const int exponent = marker & 0x0f;
    if (exponent > 4)
        return fail(u"an integer of 2^%1 bytes"_s.arg(exponent));
    if (!take(rest, 1, 1U << exponent))
        return false;
    if (exponent < 3) {
        object.value = bigEndian(bytes, 1 << exponent);
    } else if (exponent == 3) {
        object.value = qint64(bigEndian(bytes, 8));
    } else {
        const quint64 high = bigEndian(bytes, 8);
        const quint64 low = bigEndian(bytes + 8, 8);
        if (high == 0)
            object.value = low;
        else if (high == ~quint64(0) && qint64(low) < 0)
            object.value = qint64(low);
        else
            return fail(u"an integer beyond 64 bits"_s);
    }
    return true;
}

bool BinaryReader::decodeReal(uchar marker, Span rest, Object &object)
{
    const uchar *bytes = rest.begin;
    if (marker == 0x22) {
        if (!take(rest, 1, 4))
            return false;
        object.value = std::bit_cast<float>(qFromBigEndian<quint32>(bytes));
        return true;
    }
    if (marker != 0x23 && marker != 0x33)
        return fail(u"unknown marker 0x%1"_s.arg(marker, 2, 16, QLatin1Char('0')));
    if (!take(rest, 1, 8))
        return false;
    const auto real = std::bit_cast<double>(qFromBigEndian<quint64>(bytes));
    object.value = marker == 0x33 ? Value(Date{real}) : Value(real);
    return true;
}

bool BinaryReader::decodeUid(uchar marker, Span rest, Object &object)
{
    const int width = (marker & 0x0f) + 1;
    const uchar *bytes = rest.begin;
    if (width > 8)
        return fail(u"a UID of %1 bytes"_s.arg(width));
    if (!take(rest, 1, quint64(width)))
        return false;
    object.value = Uid{bigEndian(bytes, width)};
    return true;
}

bool BinaryReader::decodeBytes(uchar marker, Span rest, Object &object)
{
    quint64 count = 0;
    if (!readCount(marker, rest, count))
        return false;
    const uchar *bytes = rest.begin;
    const bool isUtf16 = marker >> 4 == 0x6;
    if (!take(rest, count, isUtf16 ? 2 : 1))
        return false;

    const auto length = qsizetype(count);
    object.weight = quint32(leafWeight(length));
    if (marker >> 4 == 0x4) {
        object.value = QByteArray(reinterpret_cast<const char *>(bytes), length);
    } else if (isUtf16) {
        QString text(length, Qt::Uninitialized);
        qFromBigEndian<char16_t>(bytes, length, text.data());
        object.value = Access::string(std::move(text));
    } else {
        uchar allBits = 0;
        for (qsizetype i = 0; i < length; ++i)
            allBits |= bytes[i];
        if (allBits & 0x80)
            return fail(u"an ASCII string with other bytes"_s);
        object.value =
            Access::string(QString::fromLatin1(reinterpret_cast<const char *>(bytes), length));
    }
    return true;
}

bool BinaryReader::decodeArray(uchar marker, Span rest, Object &object, int depth)
{
    quint64 count = 0;
    if (!readCount(marker, rest, count))
        return false;
    const uchar *references = rest.begin;
    if (!take(rest, count, quint64(m_referenceWidth)))
        return false;
    if (depth >= maximumDepth)
        return fail(u"nested deeper than %1 levels"_s.arg(maximumDepth));

    ContainerNode *node = count == 0 ? nullptr : ContainerNode::create(size_t(count));
    object.value = Access::adopt(Value::Type::Array, node);
    object.weight = inProgress;
    quint64 weight = 1;
    for (quint64 i = 0; i < count; ++i, references += m_referenceWidth) {
        if (!appendValue(node, bigEndian(references, m_referenceWidth), depth, object, weight))
            return false;
    }
    return finishContainer(object, weight);
}

bool BinaryReader::decodeDictionary(uchar marker, Span rest, Object &object, int depth)
{
    quint64 count = 0;
    if (!readCount(marker, rest, count))
        return false;
    const uchar *references = rest.begin;
    if (!take(rest, count, 2 * quint64(m_referenceWidth)))
        return false;
    if (depth >= maximumDepth)
        return fail(u"nested deeper than %1 levels"_s.arg(maximumDepth));

    object.weight = inProgress;
    if (count == 0) {
        object.value = Dictionary();
        return finishContainer(object, 1);
    }
    const Shape *shape = shapeOf(references, count, depth);
    if (!shape)
        return false;
    ContainerNode *node = ContainerNode::create(shape->order.size());
    node->keys = shape->keys;
    node->keys->retain();
    object.value = Access::adopt(Value::Type::Dictionary, node);
    quint64 weight = 1 + shape->weight;
    const uchar *values = references + count * quint64(m_referenceWidth);
    for (const quint32 place : shape->order) {
        const uchar *reference = values + quint64(place) * quint64(m_referenceWidth);
        if (!appendValue(node, bigEndian(reference, m_referenceWidth), depth, object, weight))
            return false;
    }
    return finishContainer(object, weight);
}

const BinaryReader::Shape *BinaryReader::shapeOf(const uchar *references, quint64 count, int depth)
{
    const std::string_view bytes(reinterpret_cast<const char *>(references),
                                 size_t(count) * size_t(m_referenceWidth));
    const auto known = m_shapes.find(bytes);
    if (known != m_shapes.end())
        return &known->second;

    std::vector<QString> keys;
    keys.reserve(size_t(count));
    for (quint64 i = 0; i < count; ++i, references += m_referenceWidth) {
        const quint64 reference = bigEndian(references, m_referenceWidth);
        const Object *key = resolve(reference, depth + 1);
        if (!key)
            return nullptr;
        if (!key->value.isString()) {
            fail(u"has object %1, which is no string, as a key"_s.arg(reference));
            return nullptr;
        }
        keys.push_back(key->value.toString());
    }

    Shape shape;
    auto table = std::make_unique<KeyTable>();
    std::vector<quint32> order(keys.size());
    for (quint32 i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&keys](quint32 a, quint32 b) { return keys[a] < keys[b]; });
    for (size_t i = 0; i < order.size(); ++i) {
        const QString &key = keys[order[i]];
        shape.weight += leafWeight(key.size());
        if (i + 1 < order.size() && keys[order[i + 1]] == key)
            continue;
        table->keys.push_back(key);
        shape.order.push_back(order[i]);
    }
    table->keys.shrink_to_fit();
    shape.keys = table.release();
    return &m_shapes.emplace(bytes, std::move(shape)).first->second;
}

bool BinaryReader::appendValue(ContainerNode *node, quint64 reference, int depth, Object &object,
                               quint64 &weight)
{
    const Object *element = resolve(reference, depth + 1);
    if (!element)
        return false;
    weight += element->weight;
    object.height = std::max(object.height, element->height);
    node->push(privateCopy(element->value, Access::isShared(element->value)));
    return true;
}

bool BinaryReader::finishContainer(Object &object, quint64 weight)
{
    if (weight > m_weightLimit)
        return fail(u"spreads out to more than %1 values"_s.arg(m_weightLimit));
    if (++object.height > maximumDepth)
        return fail(u"nested deeper than %1 levels"_s.arg(maximumDepth));
    object.weight = quint32(weight);
    return true;
}

bool BinaryReader::readCount(uchar marker, Span &rest, quint64 &count)
{
    count = marker & 0x0f;
    if (count != 0x0f)
        return true;
    const uchar *bytes = rest.begin;
    if (!take(rest, 1, 1))
        return false;
    const int exponent = bytes[0] & 0x0f;
    if (bytes[0] >> 4 != 0x1 || exponent > 3)
        return fail(u"its count is no integer"_s);
    if (!take(rest, 1, 1U << exponent))
        return false;
    count = bigEndian(bytes + 1, 1 << exponent);
    return true;
}

bool BinaryReader::failTaking(Span rest, quint64 count, quint64 width)
{
    return fail(count > rest.size() / width ? u"is longer than the file"_s
                                            : u"overlaps other objects"_s);
}

bool BinaryReader::fail(const QString &problem)
{
    return failAt(m_current, problem);
}

bool BinaryReader::failAt(quint64 index, const QString &problem)
{
    // An error found on the way down is the one that counts.
    if (m_error.isEmpty())
        m_error = u"Object %1 at offset 0x%2: %3"_s.arg(
            QString::number(index), QString::number(offsetOf(index), 16), problem);
    return false;
}

} // namespace tarnwell::plist::detail
