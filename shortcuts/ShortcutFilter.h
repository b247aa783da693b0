#pragma once

#include "shortcuts/ShortcutRow.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tarnwell::shortcuts {

/// A text as it is searched: without regard to case and accents.
QString foldedForSearch(const QString &text);

/// Everything of a row that a user may type to find it, folded.
QString searchText(const ShortcutRow &row);

/// Which rows the table shows: all, those that hold every word of a text, or those that carry one
/// shortcut, be it new or original.
class ShortcutFilter
{
public:
    ShortcutFilter() = default;
    static ShortcutFilter byWords(const QString &text);
    /// The shortcut as the table shows it.
    static ShortcutFilter byShortcut(const QString &shortcut);

    bool isEmpty() const { return m_words.isEmpty() && m_shortcut.isEmpty(); }
    bool needsSearchText() const { return !m_words.isEmpty(); }
    /// Whether it accepts only rows that another one accepts, too.
    bool narrows(const ShortcutFilter &other) const;
    /// Without words to look for, the search text may be empty.
    bool accepts(const ShortcutRow &row, const QString &searchText) const;

    friend bool operator==(const ShortcutFilter &, const ShortcutFilter &) = default;

private:
    QStringList m_words;
    QString m_shortcut;
};

} // namespace tarnwell::shortcuts
