#include "foundation/plist/Nodes.h"

#include <cmath>

namespace tarnwell::plist {

namespace {

constexpr double twoTo63 = 9223372036854775808.0;
constexpr double twoTo64 = 18446744073709551616.0;

template <typename Made, typename Content>
detail::Node *nodeOf(const Content &content)
{
    return content.isEmpty() ? nullptr : new Made(content);
}

} // namespace

Value::Value(const QString &value)
    : m_type(Type::String)
{
    m_payload.shared.node = nodeOf<detail::StringNode>(value);
}

Value::Value(QLatin1StringView value)
    : Value(QString(value))
{}

Value::Value(const QByteArray &value)
    : m_type(Type::Data)
{
    m_payload.shared.node = nodeOf<detail::DataNode>(value);
}

Value::Value(const plist::Array &value) noexcept
    : m_type(Type::Array)
{
    new (&m_payload.array) plist::Array(value);
}

Value::Value(const plist::Dictionary &value) noexcept
    : m_type(Type::Dictionary)
{
    new (&m_payload.dictionary) plist::Dictionary(value);
}

Value::Value(plist::Array &&value) noexcept
    : m_type(Type::Array)
{
    new (&m_payload.array) plist::Array(std::move(value));
}

Value::Value(plist::Dictionary &&value) noexcept
    : m_type(Type::Dictionary)
{
    new (&m_payload.dictionary) plist::Dictionary(std::move(value));
}

Value::Value(const Value &other) noexcept
    : m_payload(other.m_payload.integer)
    , m_type(other.m_type)
    , m_variant(other.m_variant)
{
    if (isShared() && m_payload.shared.node)
        m_payload.shared.node->retain();
}

void Value::release() noexcept
{
    detail::Node *node = m_payload.shared.node;
    if (!node || !node->drop())
        return;
    if (isString())
        delete static_cast<detail::StringNode *>(node);
    else if (isData())
        delete static_cast<detail::DataNode *>(node);
    else
        detail::ContainerNode::destroy(detail::container(node));
}

qint64 Value::toInteger() const noexcept
{
    if (isInteger())
        return m_variant ? std::numeric_limits<qint64>::max() : qint64(m_payload.integer);
    if (!isReal() || std::isnan(m_payload.real))
        return 0;
    if (m_payload.real >= twoTo63)
        return std::numeric_limits<qint64>::max();
    if (m_payload.real < -twoTo63)
        return std::numeric_limits<qint64>::min();
    return qint64(m_payload.real);
}

quint64 Value::toUnsignedInteger() const noexcept
{
    if (isInteger())
        return m_variant || qint64(m_payload.integer) >= 0 ? m_payload.integer : 0;
    if (!isReal() || !(m_payload.real > 0.0))
        return 0;
    return m_payload.real >= twoTo64 ? std::numeric_limits<quint64>::max()
                                     : quint64(m_payload.real);
}

double Value::toDouble() const noexcept
{
    if (isReal())
        return m_payload.real;
    if (!isInteger())
        return 0.0;
    return m_variant ? double(m_payload.integer) : double(qint64(m_payload.integer));
}

QString Value::toString() const
{
    if (!isString() || !m_payload.shared.node)
        return {};
    return static_cast<detail::StringNode *>(m_payload.shared.node)->text;
}

QStringView Value::toStringView() const noexcept
{
    if (!isString() || !m_payload.shared.node)
        return {};
    return static_cast<detail::StringNode *>(m_payload.shared.node)->text;
}

QByteArray Value::toData() const
{
    if (!isData() || !m_payload.shared.node)
        return {};
    return static_cast<detail::DataNode *>(m_payload.shared.node)->bytes;
}

plist::Date Value::toDate() const noexcept
{
    return {isDate() ? m_payload.real : 0.0};
}

plist::Uid Value::toUid() const noexcept
{
    return {isUid() ? m_payload.integer : 0};
}

const plist::Array &Value::toArray() const noexcept
{
    static const plist::Array empty;
    return isArray() ? m_payload.array : empty;
}

const plist::Dictionary &Value::toDictionary() const noexcept
{
    static const plist::Dictionary empty;
    return isDictionary() ? m_payload.dictionary : empty;
}

} // namespace tarnwell::plist
