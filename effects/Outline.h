#pragma once

#include "effects/CompositionLists.h"

#include <QSet>
#include <QVariant>

#include <variant>

namespace tarnwell::ports {
class FileManager;
}

namespace tarnwell::effects {

/// The columns of the outline, by the identifiers that the interface file gives them.
inline constexpr QLatin1StringView titleColumn{"com.varnit.tawl.title"};
inline constexpr QLatin1StringView enableColumn{"com.varnit.tawl.enable"};

/// A row of the outline: a group by its name, or a composition by its file. The root, which has no
/// row, is neither.
using OutlineItem = std::variant<std::monostate, QString, QUrl>;

/// What a check box shows.
enum class SwitchState { Mixed = -1, Off = 0, On = 1 };

/// The rows of the outline and what stands in their cells, over one state of the lists.
class Outline
{
public:
    Outline() = default;
    explicit Outline(const CompositionLists &lists);

    const QStringList &groupNames() const { return m_groupNames; }
    const CompositionGroups &groups() const { return m_groups; }

    int numberOfChildrenOfItem(const OutlineItem &item) const;
    static bool isItemExpandable(const OutlineItem &item);
    /// The root for an index that is out of range.
    OutlineItem childOfItem(int index, const OutlineItem &item) const;

    /// A name or, in the column of check boxes, the number of a SwitchState. Nothing for other
    /// columns, for the root, and for what is no file.
    QVariant objectValueForTableColumn(const QString &column, const OutlineItem &item,
                                       const ports::FileManager &fileManager) const;
    static bool shouldEditTableColumn(const QString &column);

    /// What an item is remembered by while the lists are made anew: the item itself.
    static const OutlineItem &persistentObjectForItem(const OutlineItem &item) { return item; }
    static const OutlineItem &itemForPersistentObject(const OutlineItem &object) { return object; }

    /// The compositions that a check box stands for: one, or those of its group.
    QList<QUrl> compositionsOf(const OutlineItem &item) const;

private:
    SwitchState stateOf(const OutlineItem &item) const;

    CompositionGroups m_groups;
    QStringList m_groupNames; ///< as they are shown
    QSet<QUrl> m_enabled;
};

} // namespace tarnwell::effects
