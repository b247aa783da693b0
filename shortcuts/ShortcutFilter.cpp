#include "shortcuts/ShortcutFilter.h"

#include "shortcuts/RecordKeys.h"

#include <algorithm>
#include <utility>

namespace tarnwell::shortcuts {

namespace {

bool isAscii(QStringView text)
{
    return std::all_of(text.cbegin(), text.cend(),
                       [](QChar character) { return character.unicode() < 0x80; });
}

QString folded(QString &&text)
{
    if (isAscii(text)) {
        // The rule by far, and one pass in place where it is.
        for (QChar &character : text) {
            if (character >= u'A' && character <= u'Z')
                character = QChar(character.unicode() | 0x20);
        }
        return std::move(text);
    }
    QString folded = text.normalized(QString::NormalizationForm_KD).toCaseFolded();
    folded.removeIf([](QChar character) { return character.category() == QChar::Mark_NonSpacing; });
    return folded;
}

} // namespace

QString foldedForSearch(const QString &text)
{
    return folded(QString(text));
}

QString searchText(const ShortcutRow &row)
{
    // Words are found wherever they stand; only that two parts never make one word matters. The
    // glyphs of a shortcut need no folding, which would cost every row the slow way.
    constexpr qsizetype usualLength = 120;
    QString text;
    text.reserve(usualLength);
    for (const plist::Value &level : row.item.value(record::menuPath).toArray()) {
        text += level.toDictionary().value(record::menuItemTitle).toStringView();
        text += u'\n';
    }
    text += row.title.toStringView();
    text += u'\n';
    if (row.key != row.title.toStringView()) {
        text += row.key;
        text += u'\n';
    }
    text += row.parentTitle.toStringView();
    text = folded(std::move(text));
    for (const foundation::StyledString *shortcut :
         {&row.translatedKey, &row.originalTranslatedKey}) {
        text += u'\n';
        text += foldedForSearch(shortcut->text());
    }
    return text;
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

bool ShortcutFilter::narrows(const ShortcutFilter &other) const
{
    // Every word that was looked for is part of one that is looked for now.
    return m_shortcut.isEmpty() && other.m_shortcut.isEmpty() &&
           std::all_of(other.m_words.cbegin(), other.m_words.cend(), [this](const QString &before) {
               return std::any_of(m_words.cbegin(), m_words.cend(),
                                  [&before](const QString &now) { return now.contains(before); });
           });
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
