#include "shortcuts/ShortcutCells.h"

#include "foundation/Logging.h"
#include "shortcuts/KeyTranslation.h"
#include "shortcuts/RecordKeys.h"

#include <QCoreApplication>

#include <array>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

namespace {

std::optional<QString> text(const plist::Value &value)
{
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

struct SpokenGlyph
{
    char16_t glyph;
    const char *words;
};

constexpr std::array spokenGlyphs{
    SpokenGlyph{u'\u21E7', QT_TRANSLATE_NOOP("SpokenKeys", "Shift")},
    SpokenGlyph{u'\u2303', QT_TRANSLATE_NOOP("SpokenKeys", "Control")},
    SpokenGlyph{u'\u2325', QT_TRANSLATE_NOOP("SpokenKeys", "Option")},
    SpokenGlyph{u'\u2318', QT_TRANSLATE_NOOP("SpokenKeys", "Command")},
    SpokenGlyph{u'\u21E5', QT_TRANSLATE_NOOP("SpokenKeys", "Tab")},
    SpokenGlyph{u'\u21E4', QT_TRANSLATE_NOOP("SpokenKeys", "Back Tab")},
    SpokenGlyph{u'\u2305', QT_TRANSLATE_NOOP("SpokenKeys", "Enter")},
    SpokenGlyph{u'\u2423', QT_TRANSLATE_NOOP("SpokenKeys", "Space")},
    SpokenGlyph{u'\u2326', QT_TRANSLATE_NOOP("SpokenKeys", "Delete")},
    SpokenGlyph{u'\u232B', QT_TRANSLATE_NOOP("SpokenKeys", "Delete")},
    SpokenGlyph{u'\u21A9', QT_TRANSLATE_NOOP("SpokenKeys", "Return")},
    SpokenGlyph{u'\u238B', QT_TRANSLATE_NOOP("SpokenKeys", "Escape")},
    SpokenGlyph{u'\u2327', QT_TRANSLATE_NOOP("SpokenKeys", "Clear")},
    SpokenGlyph{u'\u21DE', QT_TRANSLATE_NOOP("SpokenKeys", "Page Up")},
    SpokenGlyph{u'\u21DF', QT_TRANSLATE_NOOP("SpokenKeys", "Page Down")},
    SpokenGlyph{u'\u2190', QT_TRANSLATE_NOOP("SpokenKeys", "Left Arrow")},
    SpokenGlyph{u'\u2192', QT_TRANSLATE_NOOP("SpokenKeys", "Right Arrow")},
    SpokenGlyph{u'\u2191', QT_TRANSLATE_NOOP("SpokenKeys", "Up Arrow")},
    SpokenGlyph{u'\u2193', QT_TRANSLATE_NOOP("SpokenKeys", "Down Arrow")},
    SpokenGlyph{u'\u2196', QT_TRANSLATE_NOOP("SpokenKeys", "Home")},
    SpokenGlyph{u'\u2198', QT_TRANSLATE_NOOP("SpokenKeys", "End")},
};

} // namespace

QString menuPathText(const plist::Dictionary &item)
{
    QString path;
    for (const plist::Value &level : item.value(record::menuPath).toArray()) {
        const plist::Value &title = level.toDictionary().value(record::menuItemTitle);
        if (!title.isString())
            continue;
        path = path.isNull() ? u""_s + title.toString()
                             : u"%1 %2 %3"_s.arg(path, u"\u261E"_s, title.toString());
    }
    return path;
}

std::optional<foundation::StyledString> shortcutCellValue(const ShortcutRow &row,
                                                          int columnIdentifier)
{
    TARNWELL_SYSTEM_LOG(u"Dict: %1"_s.arg(description(row)));
    switch (static_cast<ShortcutColumn>(columnIdentifier)) {
    case ShortcutColumn::MenuItem: {
        const QString path = menuPathText(row.item);
        return SmallFontFor(path.isEmpty() ? text(row.title) : path, true, false);
    }
    case ShortcutColumn::NewShortcut:
        return row.translatedKey;
    case ShortcutColumn::OriginalShortcut:
        return row.originalTranslatedKey;
    case ShortcutColumn::Menu:
        return SmallFontFor(text(row.parentTitle), true, false);
    }
    return std::nullopt;
}

QString spokenShortcut(const QString &glyphs)
{
    QStringList words;
    QString rest;
    for (const QChar character : glyphs) {
        const auto *spoken = std::find_if(
            spokenGlyphs.begin(), spokenGlyphs.end(),
            [character](const SpokenGlyph &entry) { return character == entry.glyph; });
        if (spoken != spokenGlyphs.end())
            words.append(QCoreApplication::translate("SpokenKeys", spoken->words));
        else
            rest.append(character);
    }
    if (rest == " "_L1)
        words.append(QCoreApplication::translate("SpokenKeys", "Space"));
    else if (!rest.isEmpty())
        words.append(rest);
    return words.join(u' ');
}

} // namespace tarnwell::shortcuts
