#include "foundation/plist/Nodes.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace tarnwell::plist::detail {

ContainerNode *ContainerNode::create(size_t capacity)
{
    if (capacity > std::numeric_limits<quint32>::max())
        qBadAlloc();
    void *memory = ::operator new(sizeof(ContainerNode) + capacity * sizeof(Value));
    auto *node = new (memory) ContainerNode;
    node->capacity = quint32(capacity);
    return node;
}

void ContainerNode::destroy(ContainerNode *node) noexcept
{
    std::destroy_n(node->values(), node->size);
    if (node->keys && node->keys->drop())
        delete node->keys;
    node->~ContainerNode();
    ::operator delete(node);
}

ContainerNode *detach(Node *&node, size_t capacity)
{
    ContainerNode *old = container(node);
    if (!old) {
        node = ContainerNode::create(capacity);
        return container(node);
    }
    const bool sole = old->hasOneOwner();
    if (sole && old->capacity >= capacity)
        return old;

    // Grows by half, so that adding one value after the other stays cheap.
    if (capacity > old->capacity)
        capacity = std::max<size_t>(capacity, size_t(old->capacity) + old->capacity / 2);
    ContainerNode *made = ContainerNode::create(std::max<size_t>(capacity, old->size));
    if (sole)
        std::uninitialized_move_n(old->values(), old->size, made->values());
    else
        std::uninitialized_copy_n(old->values(), old->size, made->values());
    made->size = old->size;
    made->keys = old->keys;
    if (made->keys)
        made->keys->retain();
    releaseContainer(old);
    node = made;
    return made;
}

std::vector<QString> &detachKeys(ContainerNode *node)
{
    if (!node->keys) {
        node->keys = new KeyTable;
    } else if (!node->keys->hasOneOwner()) {
        auto table = std::make_unique<KeyTable>();
        table->keys.reserve(node->keys->keys.size() + 1);
        table->keys = node->keys->keys;
        if (node->keys->drop())
            delete node->keys;
        node->keys = table.release();
    }
    return node->keys->keys;
}

void insertValue(Node *&node, qsizetype index, Value &&value)
{
    ContainerNode *changed = detach(node, node ? size_t(container(node)->size) + 1 : 1);
    Value *values = changed->values();
    changed->push(std::move(value));
    std::rotate(values + index, values + changed->size - 1, values + changed->size);
}

void removeValue(Node *&node, qsizetype index)
{
    ContainerNode *changed = detach(node, container(node)->size);
    Value *values = changed->values();
    std::move(values + index + 1, values + changed->size, values + index);
    std::destroy_at(values + --changed->size);
}

void releaseContainer(Node *node) noexcept
{
    if (node && node->drop())
        ContainerNode::destroy(container(node));
}

} // namespace tarnwell::plist::detail
