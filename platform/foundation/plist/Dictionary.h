#pragma once

#include <QString>
#include <QStringList>

#include <compare>
#include <initializer_list>
#include <iterator>
#include <utility>
#include <vector>

namespace tarnwell::plist {

class Value;

namespace detail {
struct Node;
struct Access;
} // namespace detail

/// Values by their keys. A copy costs a reference count; a changed copy parts from the others.
///
/// The order of the keys is that of their UTF-16 code units, however the dictionary came about. It
/// never holds a null value: inserting one removes the key. A reference to a value, and an
/// iterator, is good until the next change of this dictionary.
class Dictionary
{
public:
    /// A key with its value, as the iterators give them: both belong to the dictionary.
    struct Entry
    {
        const QString &key;
        const Value &value;
    };

    class const_iterator
    {
    public:
        using iterator_category = std::input_iterator_tag;
        using iterator_concept = std::forward_iterator_tag;
        using difference_type = qptrdiff;
        using value_type = Entry;
        using reference = Entry;
        struct pointer
        {
            Entry entry;
            const Entry *operator->() const noexcept { return &entry; }
        };

        const_iterator() noexcept = default;
        Entry operator*() const noexcept { return {*m_key, *m_value}; }
        pointer operator->() const noexcept { return {**this}; }
        const_iterator &operator++() noexcept;
        const_iterator operator++(int) noexcept
        {
            const const_iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const const_iterator &, const const_iterator &) = default;

    private:
        friend class Dictionary;
        const_iterator(const QString *key, const Value *value) noexcept
            : m_key(key)
            , m_value(value)
        {}

        const QString *m_key = nullptr;
        const Value *m_value = nullptr;
    };

    Dictionary() noexcept = default;
    /// Of entries with the same key the last one counts.
    Dictionary(std::initializer_list<std::pair<QString, Value>> entries);
    /// Makes a dictionary of many entries at once, in any order; the last one of a key counts.
    static Dictionary fromEntries(std::vector<std::pair<QString, Value>> entries);
    Dictionary(const Dictionary &other) noexcept;
    Dictionary(Dictionary &&other) noexcept
        : m_node(std::exchange(other.m_node, nullptr))
    {}
    Dictionary &operator=(const Dictionary &other) noexcept;
    Dictionary &operator=(Dictionary &&other) noexcept
    {
        std::swap(m_node, other.m_node);
        return *this;
    }
    ~Dictionary();

    qsizetype size() const noexcept;
    bool isEmpty() const noexcept { return m_node == nullptr || size() == 0; }
    bool contains(QStringView key) const noexcept;
    bool contains(QLatin1StringView key) const noexcept;

    /// The value of a key; a null value when there is none.
    const Value &value(QStringView key) const noexcept;
    const Value &value(QLatin1StringView key) const noexcept;

    QStringList keys() const;
    const_iterator begin() const noexcept;
    const_iterator end() const noexcept;

    void insert(const QString &key, const Value &value);
    /// Returns whether there was such a key.
    bool remove(QStringView key);
    bool remove(QLatin1StringView key);
    void reserve(qsizetype capacity);

    friend bool operator==(const Dictionary &a, const Dictionary &b);

private:
    friend struct detail::Access;

    detail::Node *m_node = nullptr; // none is the empty dictionary
};

} // namespace tarnwell::plist
