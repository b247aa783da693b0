#include "effects/OutlineModel.h"

#include "foundation/ForeignText.h"
#include "foundation/PlainToolTip.h"

namespace tarnwell::effects {

namespace {

constexpr qsizetype longestCell = 200;

/// Compositions carry the row of their group, counted from one; groups carry nothing.
constexpr quintptr groupId = 0;

Qt::CheckState checkState(const QVariant &value)
{
    switch (static_cast<SwitchState>(value.toInt())) {
    case SwitchState::On:
        return Qt::Checked;
    case SwitchState::Mixed:
        return Qt::PartiallyChecked;
    case SwitchState::Off:
        break;
    }
    return Qt::Unchecked;
}

} // namespace

OutlineModel::OutlineModel(const QStringList &columnIdentifiers, const QStringList &headings,
                           const ports::FileManager &fileManager, Switch switchItem,
                           QObject *parent)
    : QAbstractItemModel(parent)
    , m_columns(columnIdentifiers)
    , m_headings(headings)
    , m_fileManager(fileManager)
    , m_switch(std::move(switchItem))
{}

void OutlineModel::setOutline(const Outline &outline)
{
    if (outline.groups() != m_outline.groups()) {
        beginResetModel();
        m_outline = outline;
        endResetModel();
        return;
    }
    m_outline = outline;
    const int last = columnCount() - 1;
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex group = index(row, 0);
        Q_EMIT dataChanged(group, index(row, last));
        Q_EMIT dataChanged(index(0, 0, group), index(rowCount(group) - 1, last, group));
    }
}

OutlineItem OutlineModel::itemAt(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    if (index.internalId() == groupId)
        return m_outline.childOfItem(index.row(), {});
    return m_outline.childOfItem(
        index.row(), m_outline.childOfItem(static_cast<int>(index.internalId()) - 1, {}));
}

QModelIndex OutlineModel::indexOf(const OutlineItem &item) const
{
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex group = index(row, 0);
        const OutlineItem groupItem = itemAt(group);
        if (groupItem == item)
            return group;
        if (const QUrl *const composition = std::get_if<QUrl>(&item)) {
            const auto at = m_outline.compositionsOf(groupItem).indexOf(*composition);
            if (at >= 0)
                return index(static_cast<int>(at), 0, group);
        }
    }
    return {};
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column,
                       parent.isValid() ? static_cast<quintptr>(parent.row() + 1) : groupId);
}

QModelIndex OutlineModel::parent(const QModelIndex &child) const
{
    if (!child.isValid() || child.internalId() == groupId)
        return {};
    return createIndex(static_cast<int>(child.internalId()) - 1, 0, groupId);
}

int OutlineModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    return m_outline.numberOfChildrenOfItem(itemAt(parent));
}

int OutlineModel::columnCount(const QModelIndex &) const
{
    return static_cast<int>(m_columns.size());
}

bool OutlineModel::hasChildren(const QModelIndex &parent) const
{
    return Outline::isItemExpandable(itemAt(parent)) && rowCount(parent) > 0;
}

QVariant OutlineModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const OutlineItem item = itemAt(index);
    const QString &column = m_columns.at(index.column());
    if (Outline::shouldEditTableColumn(column))
        return switchData(item, role);
    if (role == Qt::ToolTipRole) {
        const QUrl *const composition = std::get_if<QUrl>(&item);
        return composition ? foundation::plainToolTip(
                                 foundation::shownText(composition->toLocalFile(), longestCell))
                           : QVariant();
    }
    if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)
        return {};
    const QVariant title = m_outline.objectValueForTableColumn(column, item, m_fileManager);
    if (title.isNull())
        return {};
    const QString name = foundation::shownText(title.toString(), longestCell);
    return role == Qt::DisplayRole ? name : spokenRow(name, item);
}

QString OutlineModel::spokenRow(const QString &name, const OutlineItem &item) const
{
    switch (stateOf(item)) {
    case Qt::Checked:
        return tr("%1, on").arg(name);
    case Qt::PartiallyChecked:
        return tr("%1, some are on").arg(name);
    case Qt::Unchecked:
        break;
    }
    return tr("%1, off").arg(name);
}

Qt::CheckState OutlineModel::stateOf(const OutlineItem &item) const
{
    return checkState(m_outline.objectValueForTableColumn(enableColumn, item, m_fileManager));
}

QVariant OutlineModel::switchData(const OutlineItem &item, int role) const
{
    const Qt::CheckState state = stateOf(item);
    if (role == Qt::CheckStateRole)
        return state;
    if (role != Qt::AccessibleTextRole)
        return {};
    return state == Qt::Checked ? tr("On") : state == Qt::Unchecked ? tr("Off") : tr("Some are on");
}

bool OutlineModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !index.isValid() ||
        !Outline::shouldEditTableColumn(m_columns.at(index.column())))
        return false;
    m_switch(itemAt(index), value.toInt() != Qt::Unchecked);
    return true;
}

Qt::ItemFlags OutlineModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractItemModel::flags(index);
    if (!index.isValid())
        return flags;
    if (Outline::shouldEditTableColumn(m_columns.at(index.column())))
        flags |= Qt::ItemIsUserCheckable;
    if (std::holds_alternative<QUrl>(itemAt(index)))
        flags |= Qt::ItemNeverHasChildren;
    return flags;
}

QVariant OutlineModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return m_headings.value(section);
}

} // namespace tarnwell::effects
