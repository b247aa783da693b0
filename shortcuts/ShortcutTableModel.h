#pragma once

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
    const QList<ShortcutRow> &rows() const { return m_rows; }

    /// Where the row of the same item now stands; -1 when it is gone.
    int indexOf(const ShortcutRow &row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QList<int> m_columns;
    QStringList m_headings;
    QList<ShortcutRow> m_rows;
};

} // namespace tarnwell::shortcuts
