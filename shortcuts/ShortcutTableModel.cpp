#include "shortcuts/ShortcutTableModel.h"

#include "shortcuts/ShortcutCells.h"

#include <algorithm>

namespace tarnwell::shortcuts {

ShortcutTableModel::ShortcutTableModel(const QStringList &columnIdentifiers,
                                       const QStringList &headings, QObject *parent)
    : QAbstractTableModel(parent)
    , m_headings(headings)
{
    for (const QString &identifier : columnIdentifiers)
        m_columns.append(identifier.toInt());
}

void ShortcutTableModel::setRows(const QList<ShortcutRow> &rows)
{
    if (rows == m_rows)
        return;
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

int ShortcutTableModel::indexOf(const ShortcutRow &row) const
{
    const auto found =
        std::find_if(m_rows.cbegin(), m_rows.cend(), [&row](const ShortcutRow &candidate) {
            return candidate.key == row.key && candidate.settingsKey == row.settingsKey;
        });
    return found == m_rows.cend() ? -1 : static_cast<int>(found - m_rows.cbegin());
}

int ShortcutTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ShortcutTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ShortcutTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const bool wanted = role == Qt::DisplayRole || role == StyledStringRole ||
                        role == Qt::AccessibleTextRole || role == Qt::ToolTipRole;
    if (!wanted)
        return {};
    const int column = m_columns.at(index.column());
    const std::optional<foundation::StyledString> cell =
        shortcutCellValue(m_rows.at(index.row()), column);
    if (!cell)
        return {};
    if (role == StyledStringRole)
        return QVariant::fromValue(*cell);
    const bool isShortcut = column == static_cast<int>(ShortcutColumn::NewShortcut) ||
                            column == static_cast<int>(ShortcutColumn::OriginalShortcut);
    if (isShortcut && role == Qt::AccessibleTextRole)
        return spokenShortcut(cell->text());
    if (role == Qt::ToolTipRole && isShortcut)
        return {};
    return cell->text();
}

QVariant ShortcutTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return m_headings.value(section);
}

} // namespace tarnwell::shortcuts
