#include "shortcuts/ShortcutList.h"

#include "prefs/RecordSorting.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

void ShortcutList::clear()
{
    m_rows.clear();
    m_settingsKeys.clear();
    m_sorted = true;
}

void ShortcutList::append(const QList<ShortcutRow> &rows)
{
    if (rows.isEmpty())
        return;
    m_rows.append(rows);
    for (const ShortcutRow &row : rows)
        m_settingsKeys.insert(row.settingsKey);
    m_sorted = false;
}

const QList<ShortcutRow> &ShortcutList::rows() const
{
    if (!m_sorted) {
        std::stable_sort(m_rows.begin(), m_rows.end(),
                         [](const ShortcutRow &a, const ShortcutRow &b) {
                             return prefs::titleCompare(a.title.toString(), b.title.toString()) < 0;
                         });
        m_sorted = true;
    }
    return m_rows;
}

QString description(const ShortcutList &list)
{
    QStringList printed;
    for (const ShortcutRow &row : list.rows())
        printed.append(description(row));
    return u"("_s + printed.join(u", "_s) + u")"_s;
}

} // namespace tarnwell::shortcuts
