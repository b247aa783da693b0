#include "foundation/plist/Nodes.h"

namespace tarnwell::plist {

using detail::container;

Array::Array(std::initializer_list<Value> values)
{
    reserve(qsizetype(values.size()));
    for (const Value &value : values)
        append(value);
}

Array::Array(const Array &other) noexcept
    : m_node(other.m_node)
{
    if (m_node)
        m_node->retain();
}

Array &Array::operator=(const Array &other) noexcept
{
    Array copy(other);
    std::swap(m_node, copy.m_node);
    return *this;
}

Array::~Array()
{
    detail::releaseContainer(m_node);
}

qsizetype Array::size() const noexcept
{
    return m_node ? container(m_node)->size : 0;
}

const Value &Array::at(qsizetype index) const noexcept
{
    Q_ASSERT(index >= 0 && index < size());
    return container(m_node)->values()[index];
}

const Value *Array::begin() const noexcept
{
    return m_node ? container(m_node)->values() : nullptr;
}

const Value *Array::end() const noexcept
{
    return begin() + size();
}

void Array::append(const Value &value)
{
    append(Value(value));
}

void Array::append(Value &&value)
{
    if (value.isNull())
        return;
    // Taken first: it may be an element of this array, which is about to move.
    Value taken(std::move(value));
    detail::detach(m_node, size_t(size()) + 1)->push(std::move(taken));
}

void Array::insert(qsizetype index, const Value &value)
{
    Q_ASSERT(index >= 0 && index <= size());
    if (!value.isNull())
        detail::insertValue(m_node, index, Value(value));
}

void Array::replace(qsizetype index, const Value &value)
{
    Q_ASSERT(index >= 0 && index < size());
    if (value.isNull()) {
        removeAt(index);
        return;
    }
    Value taken(value);
    detail::detach(m_node, size_t(size()))->values()[index].swap(taken);
}

void Array::removeAt(qsizetype index)
{
    Q_ASSERT(index >= 0 && index < size());
    detail::removeValue(m_node, index);
}

void Array::reserve(qsizetype capacity)
{
    if (capacity > size())
        detail::detach(m_node, size_t(capacity));
}

} // namespace tarnwell::plist
