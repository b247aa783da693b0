#include "foundation/plist/Extent.h"

#include "foundation/plist/Nodes.h"

#include <algorithm>
#include <unordered_map>

namespace tarnwell::plist::detail {

namespace {

class Surveyor
{
public:
    struct Subtree
    {
        quint64 expanded = 1;
        int height = 0;
    };

    /// Returns a height beyond maximumDepth for anything that is too deep.
    Subtree survey(const Value &value, int depth)
    {
        if (value.isArray() || value.isDictionary())
            return surveyContainer(container(Access::node(value)), depth);
        Subtree leaf;
        if (value.isString())
            leaf.expanded = leafWeight(value.toStringView().size());
        else if (value.isData())
            leaf.expanded = leafWeight(value.toData().size());
        stored += leaf.expanded;
        return leaf;
    }

    quint64 stored = 0;

private:
    Subtree surveyContainer(const ContainerNode *node, int depth)
    {
        Subtree all{1, 1};
        if (!node) {
            ++stored;
            return all;
        }
        if (depth >= maximumDepth)
            return {1, maximumDepth + 1};
        const bool isShared = !node->hasOneOwner();
        if (isShared) {
            const auto known = m_shared.find(node);
            if (known != m_shared.end())
                return known->second;
        }
        if (node->keys) {
            for (const QString &key : node->keys->keys)
                all.expanded += leafWeight(key.size());
        }
        stored += all.expanded;
        for (quint32 i = 0; i < node->size; ++i) {
            const Subtree child = survey(node->values()[i], depth + 1);
            all.expanded = addSaturated(all.expanded, child.expanded);
            all.height = std::max(all.height, child.height + 1);
            if (all.height > maximumDepth)
                break;
        }
        if (isShared)
            m_shared.emplace(node, all);
        return all;
    }

    std::unordered_map<const ContainerNode *, Subtree> m_shared;
};

} // namespace

std::optional<Extent> extentOf(const Value &value)
{
    Surveyor surveyor;
    const Surveyor::Subtree all = surveyor.survey(value, 0);
    if (all.height > maximumDepth)
        return std::nullopt;
    return Extent{all.expanded, surveyor.stored};
}

} // namespace tarnwell::plist::detail
