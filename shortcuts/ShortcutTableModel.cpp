#include "shortcuts/ShortcutTableModel.h"

#include "foundation/ForeignText.h"
#include "foundation/PlainToolTip.h"
#include "shortcuts/ShortcutCells.h"
#include "shortcuts/SpokenKeys.h"

#include <algorithm>
#include <numeric>

namespace tarnwell::shortcuts {

namespace {

constexpr qsizetype longestCell = 200;

/// A cell as it is fit to be shown: its texts come from other applications.
foundation::StyledString shownCell(const foundation::StyledString &cell)
{
    foundation::StyledString shown;
    for (const auto &run : cell.runs())
        shown.append(foundation::shownText(run.text, longestCell), run.attributes);
    return shown;
}

} // namespace

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
    m_searchTexts.clear();
    applyFilter();
    endResetModel();
}

void ShortcutTableModel::setFilter(const ShortcutFilter &filter)
{
    if (filter == m_filter)
        return;
    beginResetModel();
    const bool narrower = filter.narrows(m_filter);
    m_filter = filter;
    if (narrower)
        narrowShown();
    else
        applyFilter();
    endResetModel();
}

bool ShortcutTableModel::prepareSearch(qsizetype rows)
{
    const qsizetype end = std::min(m_searchTexts.size() + rows, m_rows.size());
    m_searchTexts.reserve(m_rows.size());
    for (qsizetype i = m_searchTexts.size(); i < end; ++i)
        m_searchTexts.append(searchText(m_rows.at(i)));
    return end < m_rows.size();
}

void ShortcutTableModel::applyFilter()
{
    m_shown.resize(m_rows.size());
    std::iota(m_shown.begin(), m_shown.end(), qsizetype(0));
    narrowShown();
}

void ShortcutTableModel::narrowShown()
{
    if (m_filter.isEmpty())
        return;
    if (m_filter.needsSearchText())
        prepareSearch(m_rows.size());
    const QString none;
    m_shown.removeIf([&](qsizetype i) {
        return !m_filter.accepts(m_rows.at(i),
                                 m_filter.needsSearchText() ? m_searchTexts.at(i) : none);
    });
}

int ShortcutTableModel::indexOf(const ShortcutRow &row) const
{
    const auto found =
        std::find_if(m_shown.cbegin(), m_shown.cend(), [this, &row](qsizetype candidate) {
            return m_rows.at(candidate).key == row.key &&
                   m_rows.at(candidate).settingsKey == row.settingsKey;
        });
    return found == m_shown.cend() ? -1 : static_cast<int>(found - m_shown.cbegin());
}

int ShortcutTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
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
    // Only the styled text is what is drawn; the other roles ask for the same cell again.
    const std::optional<foundation::StyledString> value =
        role == StyledStringRole ? shortcutCellValue(shownRow(index.row()), column)
                                 : shortcutCellText(shownRow(index.row()), column);
    if (!value)
        return {};
    const foundation::StyledString cell = shownCell(*value);
    if (role == StyledStringRole)
        return QVariant::fromValue(cell);
    const bool isShortcut = column == static_cast<int>(ShortcutColumn::NewShortcut) ||
                            column == static_cast<int>(ShortcutColumn::OriginalShortcut);
    if (isShortcut && role == Qt::AccessibleTextRole)
        return spokenShortcut(cell.text());
    if (role == Qt::ToolTipRole)
        return isShortcut ? QVariant() : foundation::plainToolTip(cell.text());
    if (role == Qt::AccessibleTextRole && column == static_cast<int>(ShortcutColumn::MenuItem)) {
        const QString path = spokenMenuPath(shownRow(index.row()).item);
        return path.isEmpty() ? cell.text() : foundation::shownText(path, longestCell);
    }
    return cell.text();
}

QVariant ShortcutTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return m_headings.value(section);
}

} // namespace tarnwell::shortcuts
