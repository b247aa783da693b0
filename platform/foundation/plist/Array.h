#pragma once

#include <QtGlobal>

#include <initializer_list>
#include <utility>

namespace tarnwell::plist {

class Value;

namespace detail {
struct Node;
struct Access;
} // namespace detail

/// An ordered list of values. A copy costs a reference count; a changed copy parts from the others.
///
/// It never holds a null value: adding one does nothing, replacing by one removes. Indices are not
/// checked outside of debug builds. A reference or pointer to an element is good until the next
/// change of this array.
class Array
{
public:
    using value_type = Value;
    using const_iterator = const Value *;

    Array() noexcept = default;
    /// Mind that Array{other} is a list with one array in it.
    Array(std::initializer_list<Value> values);
    Array(const Array &other) noexcept;
    Array(Array &&other) noexcept
        : m_node(std::exchange(other.m_node, nullptr))
    {}
    Array &operator=(const Array &other) noexcept;
    Array &operator=(Array &&other) noexcept
    {
        std::swap(m_node, other.m_node);
        return *this;
    }
    ~Array();

    qsizetype size() const noexcept;
    bool isEmpty() const noexcept { return m_node == nullptr || size() == 0; }

    const Value &at(qsizetype index) const noexcept;
    const Value &operator[](qsizetype index) const noexcept { return at(index); }
    const Value *begin() const noexcept;
    const Value *end() const noexcept;

    void append(const Value &value);
    void append(Value &&value);
    void insert(qsizetype index, const Value &value);
    void replace(qsizetype index, const Value &value);
    void removeAt(qsizetype index);
    void reserve(qsizetype capacity);

    friend bool operator==(const Array &a, const Array &b);

private:
    friend struct detail::Access;

    detail::Node *m_node = nullptr; // none is the empty array
};

} // namespace tarnwell::plist
