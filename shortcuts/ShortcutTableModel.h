#pragma once

#include "shortcuts/ShortcutFilter.h"
#include "shortcuts/ShortcutRow.h"

#include <QAbstractTableModel>
#include <QList>
#include <QStringList>

namespace tarnwell::shortcuts {

/// Presents row records to the shortcut table. The columns are those of the interface file.
class ShortcutTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role {
        /// A cell's StyledString; what views and screen readers take is derived from it.
        StyledStringRole = Qt::UserRole + 1,
    };

    ShortcutTableModel(const QStringList &columnIdentifiers, const QStringList &headings,
                       QObject *parent = nullptr);

    /// Shows other rows. Rows equal to those that show leave the table untouched, so that a
    /// refresh without news disturbs neither scrolling nor a screen reader.
    void setRows(const QList<ShortcutRow> &rows);

    /// Shows only the rows that a filter accepts, of these and of all later rows.
    void setFilter(const ShortcutFilter &filter);
    const ShortcutFilter &filter() const { return m_filter; }

    /// Reads so many more rows for searching, ahead of the first word. False when all are read.
    bool prepareSearch(qsizetype rows);

    /// The record that a shown row presents.
    const ShortcutRow &shownRow(int row) const { return m_rows.at(m_shown.at(row)); }

    /// Where the row of the same item is shown now; -1 when it is gone or filtered out.
    int indexOf(const ShortcutRow &row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QList<int> m_columns;
    QStringList m_headings;
    void applyFilter();
    void narrowShown();

    QList<ShortcutRow> m_rows;
    QList<qsizetype> m_shown;  ///< the rows that the filter accepts, in order
    QStringList m_searchTexts; ///< of the first rows, as far as they were read
    ShortcutFilter m_filter;
};

} // namespace tarnwell::shortcuts
