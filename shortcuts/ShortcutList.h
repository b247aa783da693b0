#pragma once

#include "shortcuts/ShortcutRow.h"

#include <QList>
#include <QSet>

namespace tarnwell::shortcuts {

/// The rows behind the shortcut table, sorted by title.
///
/// Rebuilding the pop-up appends the rows of one application after the other and looks at none of
/// them, so sorting waits until somebody does. Rows with equal titles keep the order in which they
/// were appended, which makes one late sort give what a sort after every append would.
class ShortcutList
{
public:
    void clear();
    void append(const QList<ShortcutRow> &rows);

    const QList<ShortcutRow> &rows() const;
    bool isEmpty() const { return m_rows.isEmpty(); }
    bool hasRowsOf(const QString &settingsKey) const
    {
        return m_settingsKeys.contains(settingsKey);
    }

private:
    mutable QList<ShortcutRow> m_rows;
    mutable bool m_sorted = true;
    QSet<QString> m_settingsKeys;
};

/// Prints every row for a log line.
QString description(const ShortcutList &list);

} // namespace tarnwell::shortcuts
