#include "desktop/XkbKeyboardLayouts.h"
#include "desktop/XkbKeymap.h"
#include "fakes/FakeKeyboardLayouts.h"
#include "foundation/KeyCodes.h"
#include "foundation/UnicodeKeyLayout.h"
#include "shortcuts/KeyTranslation.h"
#include "support/RowName.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

/// What menus show for the keys of many boards, in files to be read by people.

namespace tarnwell::shortcuts {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;

constexpr QChar column(u'\t');

QString hexadecimal(quint16 code)
{
    return u"%1"_s.arg(code, 2, 16, QChar(u'0')).toUpper();
}

/// A text that can be seen.
QString visible(const QString &text)
{
    QString seen;
    for (const QChar unit : text) {
        if (unit <= u' ')
            seen += QChar(0x2400 + unit.unicode());
        else
            seen += unit;
    }
    return seen.isEmpty() ? u"-"_s : seen;
}

/// A key with each of the sixteen sets of modifiers.
QString displayLine(const ports::KeyboardLayouts &layouts, quint16 code)
{
    QStringList line{hexadecimal(code)};
    for (quint32 bits = 0; bits < 16; ++bits)
        line.append(visible(KeyCodeDisplayString(layouts, code, bits ^ 8).value_or(QString())));
    return line.join(column);
}

/// What a key types alone and with Shift, Option and both; dead keys as their accent in brackets.
QString typedLine(const ports::KeyboardLayouts &layouts, quint16 code)
{
    const QByteArray data = layouts.currentKeyboardLayout()->unicodeKeyLayoutData;
    QStringList line{hexadecimal(code)};
    for (const quint32 modifiers : {0, 2, 8, 10}) {
        quint32 state = 0;
        const auto typed = [&](quint32 options) {
            return foundation::UCKeyTranslate(data, code, foundation::KeyAction::Down, modifiers,
                                              40, options, state, 255)
                .value_or(QString());
        };
        typed(0);
        const bool isDead = state != 0;
        const QString text = visible(typed(foundation::keyTranslateNoDeadKeys));
        line.append(isDead ? u'[' + text + u']' : text);
    }
    return line.join(column);
}

QString layoutFile(const ports::KeyboardLayouts &layouts)
{
    QString shown = u"# Menus: the key code, then without Command: alone, ⇧, ⌥, ⇧⌥, ⌃, ⇧⌃, ⌃⌥, "
                    u"⇧⌃⌥; then the same with it\n"_s;
    QString typed = u"# Typed: the key code, then alone, with ⇧, with ⌥, with ⇧⌥; [dead keys]\n"_s;
    for (const foundation::KeyPosition &key : foundation::keyPositions()) {
        const quint16 code = key.virtualKeyCode;
        if (SpecialKeyString(code) || LayoutKeyString(layouts, code) == QString())
            continue;
        shown += displayLine(layouts, code) + u'\n';
        typed += typedLine(layouts, code) + u'\n';
    }
    return shown + u'\n' + typed;
}

void compareWithGolden(const QString &name, const QString &text)
{
    QFile file(QStringLiteral(TARNWELL_GOLDEN_FOLDER "/") + name + u".txt"_s);
    if (QCoreApplication::arguments().contains(u"--write-golden"_s)) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
        return;
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    const QStringList expected = QString::fromUtf8(file.readAll()).split(u'\n');
    const QStringList actual = text.split(u'\n');
    ASSERT_EQ(actual.size(), expected.size());
    for (qsizetype line = 0; line < actual.size(); ++line)
        EXPECT_EQ(actual[line], expected[line]) << qPrintable(name) << ", line " << line + 1;
}

struct BoardRow
{
    const char *name;
    const char *layout;
    const char *variant = "";
    xkb_layout_index_t group = 0;
};

class Board : public testing::TestWithParam<BoardRow>
{};

TEST_P(Board, ShowsItsKeys)
{
    const desktop::XkbContextPointer context = desktop::makeXkbContext();
    const desktop::XkbKeymapPointer keymap = desktop::compileKeymap(
        context.get(),
        {{}, QString::fromLatin1(GetParam().layout), QString::fromLatin1(GetParam().variant), {}});
    ASSERT_NE(keymap, nullptr);
    const auto source = desktop::inputSourceFromKeymap(keymap.get(), GetParam().group, QString());
    fakes::FakeKeyboardLayouts keyboard;
    keyboard.useLayoutData(source.identifier, source.unicodeKeyLayoutData);
    compareWithGolden(QString::fromLatin1(GetParam().name), layoutFile(keyboard.port()));
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, Board,
    testing::Values(BoardRow{"us", "us"}, BoardRow{"us_intl", "us", "intl"},
                    BoardRow{"us_dvorak", "us", "dvorak"}, BoardRow{"us_colemak", "us", "colemak"},
                    BoardRow{"gb", "gb"}, BoardRow{"de", "de"}, BoardRow{"fr", "fr"},
                    BoardRow{"ch", "ch"}, BoardRow{"ch_fr", "ch", "fr"}, BoardRow{"es", "es"},
                    BoardRow{"it", "it"}, BoardRow{"br", "br"}, BoardRow{"ru", "ru"},
                    BoardRow{"fr_ru", "fr,ru", "", 1}, BoardRow{"gr", "gr"}, BoardRow{"tr", "tr"},
                    BoardRow{"jp", "jp"}, BoardRow{"il", "il"}, BoardRow{"ara", "ara"},
                    BoardRow{"th", "th"}),
    RowName());

TEST(SpecialKeys, AreTheSameOnEveryBoard)
{
    fakes::FakeKeyboardLayouts keyboard;
    QString codes = u"# Menus: the key code, then without Command: alone, ⇧, ⌥, ⇧⌥, ⌃, ⇧⌃, ⌃⌥, "
                    u"⇧⌃⌥; then the same with it\n"_s;
    for (quint32 code = 0; code <= 0xFFFF; ++code) {
        if (SpecialKeyString(static_cast<quint16>(code)))
            codes += displayLine(keyboard.port(), static_cast<quint16>(code)) + u'\n';
    }
    QString glyphs = u"# Menu glyph codes\n"_s;
    for (quint32 glyph = 0; glyph <= 0xFFFF; ++glyph) {
        if (const auto text = MenuGlyphString(glyph))
            glyphs += hexadecimal(static_cast<quint16>(glyph)) + column + *text + u'\n';
    }
    compareWithGolden(u"special_keys"_s, codes + u'\n' + glyphs);
}

} // namespace
} // namespace tarnwell::shortcuts
