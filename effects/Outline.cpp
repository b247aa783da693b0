#include "effects/Outline.h"

#include "ports/FileManager.h"

#include <algorithm>

namespace tarnwell::effects {

Outline::Outline(const CompositionLists &lists)
    : m_groups(lists.groups)
    , m_groupNames(lists.groups.keys())
    , m_enabled(lists.enabled.cbegin(), lists.enabled.cend())
{
    m_groupNames.sort(Qt::CaseInsensitive);
}

int Outline::numberOfChildrenOfItem(const OutlineItem &item) const
{
    if (std::holds_alternative<std::monostate>(item))
        return static_cast<int>(m_groupNames.size());
    const QString *const group = std::get_if<QString>(&item);
    return group ? static_cast<int>(m_groups.value(*group).size()) : 0;
}

bool Outline::isItemExpandable(const OutlineItem &item)
{
    return !std::holds_alternative<QUrl>(item);
}

OutlineItem Outline::childOfItem(int index, const OutlineItem &item) const
{
    if (index < 0 || index >= numberOfChildrenOfItem(item))
        return {};
    if (const QString *const group = std::get_if<QString>(&item))
        return m_groups.value(*group).at(index);
    return m_groupNames.at(index);
}

QVariant Outline::objectValueForTableColumn(const QString &column, const OutlineItem &item,
                                            const ports::FileManager &fileManager) const
{
    const QUrl *const composition = std::get_if<QUrl>(&item);
    if (std::holds_alternative<std::monostate>(item) ||
        (composition && !composition->isLocalFile()))
        return {};
    if (column == enableColumn)
        return static_cast<int>(stateOf(item));
    if (column != titleColumn)
        return {};
    return composition ? fileManager.displayNameAtPath(composition->toLocalFile())
                       : std::get<QString>(item);
}

bool Outline::shouldEditTableColumn(const QString &column)
{
    return column == enableColumn;
}

QList<QUrl> Outline::compositionsOf(const OutlineItem &item) const
{
    if (const QUrl *const composition = std::get_if<QUrl>(&item))
        return {*composition};
    const QString *const group = std::get_if<QString>(&item);
    return group ? m_groups.value(*group) : QList<QUrl>();
}

SwitchState Outline::stateOf(const OutlineItem &item) const
{
    const QList<QUrl> compositions = compositionsOf(item);
    const auto enabled = std::count_if(compositions.cbegin(), compositions.cend(),
                                       [this](const QUrl &url) { return m_enabled.contains(url); });
    if (enabled == 0)
        return SwitchState::Off;
    return enabled == compositions.size() ? SwitchState::On : SwitchState::Mixed;
}

} // namespace tarnwell::effects
