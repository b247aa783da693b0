#include "shortcuts/ShortcutFilter.h"

#include "shortcuts/ShortcutCells.h"

#include <algorithm>

namespace tarnwell::shortcuts {

QString foldedForSearch(const QString &text)
{
    const bool isPlain = std::all_of(text.cbegin(), text.cend(),
                                     [](QChar character) { return character.unicode() < 0x80; });
    if (isPlain)
        return text.toLower();
    QString folded = text.normalized(QString::NormalizationForm_KD).toCaseFolded();
    folded.removeIf([](QChar character) { return character.category() == QChar::Mark_NonSpacing; });
    return folded;
}

QString searchText(const ShortcutRow &row)
{
    QString text = menuPathText(row.item);
    for (const QString &part : {row.title.toString(), row.key, row.parentTitle.toString(),
                                row.translatedKey.text(), row.originalTranslatedKey.text()}) {
        text += u'\n';
        text += part;
    }
    return foldedForSearch(text);
}

ShortcutFilter ShortcutFilter::byWords(const QString &text)
{
    ShortcutFilter filter;
    filter.m_words = foldedForSearch(text).split(u' ', Qt::SkipEmptyParts);
    return filter;
}

ShortcutFilter ShortcutFilter::byShortcut(const QString &shortcut)
{
    ShortcutFilter filter;
    filter.m_shortcut = shortcut;
    return filter;
}

bool ShortcutFilter::accepts(const ShortcutRow &row, const QString &searchText) const
{
    if (!m_shortcut.isEmpty())
        return row.translatedKey.text() == m_shortcut ||
               row.originalTranslatedKey.text() == m_shortcut;
    return std::all_of(m_words.cbegin(), m_words.cend(),
                       [&searchText](const QString &word) { return searchText.contains(word); });
}

} // namespace tarnwell::shortcuts
