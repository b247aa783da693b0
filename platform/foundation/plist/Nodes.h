#pragma once

#include "foundation/plist/Value.h"

#include <atomic>
#include <vector>

// What values share, hidden from those who only use them. The codecs build and walk nodes directly.
namespace tarnwell::plist::detail {

/// The start of everything that values share.
struct Node
{
    std::atomic<quint32> references{1};

    void retain() noexcept { references.fetch_add(1, std::memory_order_relaxed); }
    /// Returns whether that was the last reference, so that the caller has to delete the node.
    [[nodiscard]] bool drop() noexcept
    {
        // A sole owner needs no locked instruction: nobody else is left to race with.
        return references.load(std::memory_order_acquire) == 1 ||
               references.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }
    bool hasOneOwner() const noexcept { return references.load(std::memory_order_acquire) == 1; }
};

struct StringNode : Node
{
    explicit StringNode(const QString &value)
        : text(value)
    {}
    explicit StringNode(QString &&value)
        : text(std::move(value))
    {}

    const QString text;
};

struct DataNode : Node
{
    explicit DataNode(const QByteArray &value)
        : bytes(value)
    {}

    const QByteArray bytes;
};

/// The sorted keys of a dictionary. Records of one shape, of which a property list tends to have
/// thousands, share one table.
struct KeyTable : Node
{
    std::vector<QString> keys;
};

/// The values of an array, or of a dictionary in the order of its keys, right behind the node.
struct ContainerNode : Node
{
    quint32 size = 0;
    quint32 capacity = 0;
    KeyTable *keys = nullptr; // of a dictionary; owns a reference

    /// A node without values and keys.
    static ContainerNode *create(size_t capacity);
    static void destroy(ContainerNode *node) noexcept;

    Value *values() noexcept { return reinterpret_cast<Value *>(this + 1); }
    const Value *values() const noexcept { return reinterpret_cast<const Value *>(this + 1); }
    /// Adds a value where the capacity is known to suffice.
    void push(Value &&value) noexcept { new (values() + size++) Value(std::move(value)); }
};

static_assert(sizeof(ContainerNode) % alignof(Value) == 0);

inline ContainerNode *container(Node *node) noexcept
{
    return static_cast<ContainerNode *>(node);
}
inline const ContainerNode *container(const Node *node) noexcept
{
    return static_cast<const ContainerNode *>(node);
}

/// Makes a container ready for changes: unshared, with room for so many values. Its keys, if it is
/// a dictionary, stay shared.
ContainerNode *detach(Node *&node, size_t capacity);
/// Makes the keys of a dictionary, which is unshared itself, ready for changes.
std::vector<QString> &detachKeys(ContainerNode *node);
void insertValue(Node *&node, qsizetype index, Value &&value);
void removeValue(Node *&node, qsizetype index);
void releaseContainer(Node *node) noexcept;

/// Lets the codecs past the private parts.
struct Access
{
    static Node *node(const Value &value) noexcept { return value.m_payload.shared.node; }
    static Node *node(const Array &array) noexcept { return array.m_node; }
    static Node *node(const Dictionary &dictionary) noexcept { return dictionary.m_node; }
    static quint64 bits(const Value &value) noexcept { return value.m_payload.integer; }
    static bool isShared(const Value &value) noexcept { return value.isShared(); }
    static quint8 variant(const Value &value) noexcept { return value.m_variant; }

    /// A value of a shared type that takes over one reference of the node.
    static Value adopt(Value::Type type, Node *node) noexcept
    {
        Value value;
        value.m_payload.shared.node = node;
        value.m_type = type;
        return value;
    }
    static Value string(QString &&text)
    {
        return adopt(Value::Type::String,
                     text.isEmpty() ? nullptr : new StringNode(std::move(text)));
    }
};

} // namespace tarnwell::plist::detail
