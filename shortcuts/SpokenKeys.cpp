#include "shortcuts/SpokenKeys.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <array>
#include <span>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

namespace {

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
    // As the menus of this product draw the two keys, not as their signs are named elsewhere.
    SpokenGlyph{u'\u2326', QT_TRANSLATE_NOOP("SpokenKeys", "Backspace")},
    SpokenGlyph{u'\u232B', QT_TRANSLATE_NOOP("SpokenKeys", "Forward Delete")},
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

/// The key of a shortcut where it is one of these characters alone.
constexpr std::array spokenKeys{
    SpokenGlyph{u',', QT_TRANSLATE_NOOP("SpokenKeys", "Comma")},
    SpokenGlyph{u'.', QT_TRANSLATE_NOOP("SpokenKeys", "Period")},
    SpokenGlyph{u';', QT_TRANSLATE_NOOP("SpokenKeys", "Semicolon")},
    SpokenGlyph{u':', QT_TRANSLATE_NOOP("SpokenKeys", "Colon")},
    SpokenGlyph{u'\'', QT_TRANSLATE_NOOP("SpokenKeys", "Apostrophe")},
    SpokenGlyph{u'"', QT_TRANSLATE_NOOP("SpokenKeys", "Quotation Mark")},
    SpokenGlyph{u'`', QT_TRANSLATE_NOOP("SpokenKeys", "Grave")},
    SpokenGlyph{u'\u00B4', QT_TRANSLATE_NOOP("SpokenKeys", "Acute")},
    SpokenGlyph{u'^', QT_TRANSLATE_NOOP("SpokenKeys", "Circumflex")},
    SpokenGlyph{u'\u00A8', QT_TRANSLATE_NOOP("SpokenKeys", "Diaeresis")},
    SpokenGlyph{u'~', QT_TRANSLATE_NOOP("SpokenKeys", "Tilde")},
    SpokenGlyph{u'!', QT_TRANSLATE_NOOP("SpokenKeys", "Exclamation Mark")},
    SpokenGlyph{u'?', QT_TRANSLATE_NOOP("SpokenKeys", "Question Mark")},
    SpokenGlyph{u'(', QT_TRANSLATE_NOOP("SpokenKeys", "Left Parenthesis")},
    SpokenGlyph{u')', QT_TRANSLATE_NOOP("SpokenKeys", "Right Parenthesis")},
    SpokenGlyph{u'[', QT_TRANSLATE_NOOP("SpokenKeys", "Left Bracket")},
    SpokenGlyph{u']', QT_TRANSLATE_NOOP("SpokenKeys", "Right Bracket")},
    SpokenGlyph{u'{', QT_TRANSLATE_NOOP("SpokenKeys", "Left Brace")},
    SpokenGlyph{u'}', QT_TRANSLATE_NOOP("SpokenKeys", "Right Brace")},
    SpokenGlyph{u'<', QT_TRANSLATE_NOOP("SpokenKeys", "Less Than")},
    SpokenGlyph{u'>', QT_TRANSLATE_NOOP("SpokenKeys", "Greater Than")},
    SpokenGlyph{u'-', QT_TRANSLATE_NOOP("SpokenKeys", "Minus")},
    SpokenGlyph{u'_', QT_TRANSLATE_NOOP("SpokenKeys", "Underscore")},
    SpokenGlyph{u'+', QT_TRANSLATE_NOOP("SpokenKeys", "Plus")},
    SpokenGlyph{u'=', QT_TRANSLATE_NOOP("SpokenKeys", "Equals")},
    SpokenGlyph{u'*', QT_TRANSLATE_NOOP("SpokenKeys", "Asterisk")},
    SpokenGlyph{u'/', QT_TRANSLATE_NOOP("SpokenKeys", "Slash")},
    SpokenGlyph{u'\\', QT_TRANSLATE_NOOP("SpokenKeys", "Backslash")},
    SpokenGlyph{u'|', QT_TRANSLATE_NOOP("SpokenKeys", "Vertical Bar")},
    SpokenGlyph{u'#', QT_TRANSLATE_NOOP("SpokenKeys", "Number Sign")},
    SpokenGlyph{u'$', QT_TRANSLATE_NOOP("SpokenKeys", "Dollar")},
    SpokenGlyph{u'%', QT_TRANSLATE_NOOP("SpokenKeys", "Percent")},
    SpokenGlyph{u'&', QT_TRANSLATE_NOOP("SpokenKeys", "Ampersand")},
    SpokenGlyph{u'@', QT_TRANSLATE_NOOP("SpokenKeys", "At")},
    SpokenGlyph{u' ', QT_TRANSLATE_NOOP("SpokenKeys", "Space")},
};

/// The words for a character, null for one that is its own word.
const char *wordsFor(std::span<const SpokenGlyph> spoken, QChar character)
{
    const auto found = std::ranges::find_if(
        spoken, [character](const SpokenGlyph &entry) { return character == entry.glyph; });
    return found == spoken.end() ? nullptr : found->words;
}

} // namespace

QString spokenShortcut(const QString &shortcut)
{
    QStringList words;
    QString rest;
    for (const QChar character : shortcut) {
        if (const char *glyph = wordsFor(spokenGlyphs, character))
            words.append(QCoreApplication::translate("SpokenKeys", glyph));
        else
            rest.append(character);
    }
    const char *key = rest == "<<Help Key>>"_L1 ? QT_TRANSLATE_NOOP("SpokenKeys", "Help")
                      : rest.size() == 1        ? wordsFor(spokenKeys, rest.front())
                                                : nullptr;
    if (key)
        words.append(QCoreApplication::translate("SpokenKeys", key));
    else if (!rest.isEmpty())
        words.append(rest);
    return words.join(u' ');
}

} // namespace tarnwell::shortcuts
