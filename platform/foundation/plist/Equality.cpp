#include "foundation/plist/Nodes.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

namespace tarnwell::plist {

namespace {

using detail::Access;
using detail::container;
using detail::ContainerNode;

struct PairHash
{
    size_t operator()(const std::pair<const void *, const void *> &pair) const noexcept
    {
        const auto a = reinterpret_cast<quintptr>(pair.first);
        const auto b = reinterpret_cast<quintptr>(pair.second);
        return size_t((a >> 4) * 0x9e3779b97f4a7c15ULL ^ (b >> 4));
    }
};

/// Remembers which shared containers were compared already. Without that, lists that hold the same
/// list twice, level upon level, would take time exponential in their depth.
using Compared = std::unordered_set<std::pair<const void *, const void *>, PairHash>;

bool equalReals(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool equalsReal(const Value &integer, double real)
{
    if (std::trunc(real) != real)
        return false;
    if (integer.isHugeInteger())
        return real >= 0x1p63 && real < 0x1p64 && quint64(real) == integer.toUnsignedInteger();
    return real >= -0x1p63 && real < 0x1p63 && qint64(real) == integer.toInteger();
}

bool equalNumbers(const Value &a, const Value &b)
{
    if (a.isReal() && b.isReal())
        return equalReals(a.toDouble(), b.toDouble());
    if (a.isReal())
        return equalsReal(b, a.toDouble());
    if (b.isReal())
        return equalsReal(a, b.toDouble());
    return Access::bits(a) == Access::bits(b) && Access::variant(a) == Access::variant(b);
}

bool equalValues(const Value &a, const Value &b, Compared &compared);

bool equalContainers(const detail::Node *nodeA, const detail::Node *nodeB, Compared &compared)
{
    if (nodeA == nodeB)
        return true;
    const ContainerNode *a = container(nodeA);
    const ContainerNode *b = container(nodeB);
    const quint32 size = a ? a->size : 0;
    if (size != (b ? b->size : 0))
        return false;
    if (size == 0)
        return true;
    if (a->keys != b->keys && a->keys->keys != b->keys->keys)
        return false;
    // Where neither side is shared, this pair is met once only, or as often as a pair above it. A
    // pair met before is equal: the first difference ends the whole comparison.
    if ((!a->hasOneOwner() || !b->hasOneOwner()) && !compared.insert({a, b}).second)
        return true;
    return std::equal(
        a->values(), a->values() + size, b->values(),
        [&compared](const Value &x, const Value &y) { return equalValues(x, y, compared); });
}

bool equalValues(const Value &a, const Value &b, Compared &compared)
{
    if (a.isNumber() && b.isNumber())
        return equalNumbers(a, b);
    if (a.type() != b.type())
        return false;
    switch (a.type()) {
    case Value::Type::Date:
        return equalReals(a.toDate().absoluteTime, b.toDate().absoluteTime);
    case Value::Type::String:
        return Access::node(a) == Access::node(b) || a.toStringView() == b.toStringView();
    case Value::Type::Data:
        return Access::node(a) == Access::node(b) || a.toData() == b.toData();
    case Value::Type::Array:
    case Value::Type::Dictionary:
        return equalContainers(Access::node(a), Access::node(b), compared);
    case Value::Type::Null:
        return true;
    default:
        return Access::bits(a) == Access::bits(b);
    }
}

} // namespace

bool operator==(const Value &a, const Value &b)
{
    Compared compared;
    return equalValues(a, b, compared);
}

bool operator==(const Array &a, const Array &b)
{
    Compared compared;
    return equalContainers(Access::node(a), Access::node(b), compared);
}

bool operator==(const Dictionary &a, const Dictionary &b)
{
    Compared compared;
    return equalContainers(Access::node(a), Access::node(b), compared);
}

} // namespace tarnwell::plist
