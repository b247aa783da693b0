#include "foundation/plist/Nodes.h"

#include <algorithm>
#include <memory>

namespace tarnwell::plist {

using detail::container;
using detail::ContainerNode;

namespace {

const Value nullValue;

/// Where a key stands, or would stand.
template <typename Key>
qsizetype position(const std::vector<QString> &keys, Key key)
{
    const auto place = std::lower_bound(keys.begin(), keys.end(), key,
                                        [](const QString &a, Key b) { return a.compare(b) < 0; });
    return place - keys.begin();
}

/// Where a key stands, or -1.
template <typename Key>
qsizetype find(const detail::Node *node, Key key)
{
    if (!node || container(node)->size == 0)
        return -1;
    const std::vector<QString> &keys = container(node)->keys->keys;
    const qsizetype index = position(keys, key);
    return index < qsizetype(keys.size()) && keys[size_t(index)] == key ? index : -1;
}

template <typename Key>
const Value &lookUp(const detail::Node *node, Key key)
{
    const qsizetype index = find(node, key);
    return index < 0 ? nullValue : container(node)->values()[index];
}

template <typename Key>
bool take(detail::Node *&node, Key key)
{
    const qsizetype index = find(node, key);
    if (index < 0)
        return false;
    detail::removeValue(node, index);
    std::vector<QString> &keys = detail::detachKeys(container(node));
    keys.erase(keys.begin() + index);
    return true;
}

} // namespace

Dictionary::Dictionary(std::initializer_list<std::pair<QString, Value>> entries)
    : Dictionary(fromEntries(entries))
{}

Dictionary Dictionary::fromEntries(std::vector<std::pair<QString, Value>> entries)
{
    const auto less = [](const auto &a, const auto &b) { return a.first < b.first; };
    if (!std::is_sorted(entries.begin(), entries.end(), less))
        std::stable_sort(entries.begin(), entries.end(), less);

    Dictionary made;
    if (entries.empty())
        return made;
    ContainerNode *node = detail::detach(made.m_node, entries.size());
    std::vector<QString> &keys = detail::detachKeys(node);
    keys.reserve(entries.size());
    for (size_t i = 0; i < entries.size(); ++i) {
        const bool isLastOfKey =
            i + 1 == entries.size() || entries[i].first != entries[i + 1].first;
        if (isLastOfKey && !entries[i].second.isNull()) {
            keys.push_back(std::move(entries[i].first));
            node->push(std::move(entries[i].second));
        }
    }
    return made;
}

Dictionary::Dictionary(const Dictionary &other) noexcept
    : m_node(other.m_node)
{
    if (m_node)
        m_node->retain();
}

Dictionary &Dictionary::operator=(const Dictionary &other) noexcept
{
    Dictionary copy(other);
    std::swap(m_node, copy.m_node);
    return *this;
}

Dictionary::~Dictionary()
{
    detail::releaseContainer(m_node);
}

qsizetype Dictionary::size() const noexcept
{
    return m_node ? container(m_node)->size : 0;
}

bool Dictionary::contains(QStringView key) const noexcept
{
    return find(m_node, key) >= 0;
}

bool Dictionary::contains(QLatin1StringView key) const noexcept
{
    return find(m_node, key) >= 0;
}

const Value &Dictionary::value(QStringView key) const noexcept
{
    return lookUp(m_node, key);
}

const Value &Dictionary::value(QLatin1StringView key) const noexcept
{
    return lookUp(m_node, key);
}

QStringList Dictionary::keys() const
{
    if (isEmpty())
        return {};
    const std::vector<QString> &keys = container(m_node)->keys->keys;
    return QStringList(keys.begin(), keys.end());
}

Dictionary::const_iterator Dictionary::begin() const noexcept
{
    if (isEmpty())
        return {};
    return {container(m_node)->keys->keys.data(), container(m_node)->values()};
}

Dictionary::const_iterator Dictionary::end() const noexcept
{
    if (isEmpty())
        return {};
    const ContainerNode *node = container(m_node);
    return {node->keys->keys.data() + node->size, node->values() + node->size};
}

void Dictionary::insert(const QString &key, const Value &value)
{
    if (value.isNull()) {
        remove(key);
        return;
    }
    const qsizetype index = find(m_node, QStringView(key));
    Value taken(value);
    if (index >= 0) {
        detail::detach(m_node, size_t(size()))->values()[index].swap(taken);
        return;
    }
    const QString added(key); // which may be one of this dictionary's own, about to move
    ContainerNode *node = detail::detach(m_node, size_t(size()) + 1);
    std::vector<QString> &keys = detail::detachKeys(node);
    const qsizetype place = position(keys, QStringView(added));
    keys.insert(keys.begin() + place, added);
    detail::insertValue(m_node, place, std::move(taken));
}

bool Dictionary::remove(QStringView key)
{
    return take(m_node, key);
}

bool Dictionary::remove(QLatin1StringView key)
{
    return take(m_node, key);
}

void Dictionary::reserve(qsizetype capacity)
{
    if (capacity > size())
        detail::detachKeys(detail::detach(m_node, size_t(capacity))).reserve(size_t(capacity));
}

} // namespace tarnwell::plist
