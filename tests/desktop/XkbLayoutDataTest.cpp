#include "desktop/XkbLayoutData.h"
#include "desktop/XkbKeyboardLayouts.h"
#include "desktop/XkbKeymap.h"
#include "desktop/XkbModifiers.h"
#include "foundation/UnicodeKeyLayout.h"
#include "support/RowName.h"

#include <QHash>
#include <QList>

#include <gtest/gtest.h>

namespace tarnwell::desktop {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;

constexpr quint32 alone = 0;
constexpr quint32 command = 1;
constexpr quint32 shift = 2;
constexpr quint32 capsLock = 4;
constexpr quint32 option = 8;
constexpr quint32 control = 16;

QByteArray layoutData(const QString &layout, const QString &variant, xkb_layout_index_t group)
{
    const XkbContextPointer context = makeXkbContext();
    const XkbKeymapPointer keymap = compileKeymap(context.get(), {{}, layout, variant, {}});
    return keymap ? inputSourceFromKeymap(keymap.get(), group, layout).unicodeKeyLayoutData
                  : QByteArray();
}

// --- one key ----------------------------------------------------------------------------------

struct KeyRow
{
    const char *name;
    QString layout;
    QString variant;
    xkb_layout_index_t group;
    quint16 key;
    quint32 modifiers;
    QString text;
};

class KeyOfLayout : public testing::TestWithParam<KeyRow>
{};

TEST_P(KeyOfLayout, Types)
{
    const KeyRow &row = GetParam();
    const QByteArray data = layoutData(row.layout, row.variant, row.group);
    quint32 state = 0;
    EXPECT_EQ(foundation::UCKeyTranslate(data, row.key, foundation::KeyAction::Display,
                                         row.modifiers, 40, foundation::keyTranslateNoDeadKeys,
                                         state, 255),
              row.text);
}

INSTANTIATE_TEST_SUITE_P(
    Levels, KeyOfLayout,
    testing::Values(KeyRow{"FrenchDigit", u"fr"_s, {}, 0, 0x12, shift, u"1"_s},
                    KeyRow{"GermanAt", u"de"_s, {}, 0, 0x0C, option, u"@"_s},
                    KeyRow{"RightOptionToo", u"de"_s, {}, 0, 0x0C, 64, u"@"_s},
                    KeyRow{"GermanShiftedOption", u"de"_s, {}, 0, 0x12, option | shift, u"¡"_s},
                    KeyRow{"CapsLock", u"de"_s, {}, 0, 0x27, capsLock, u"Ä"_s},
                    KeyRow{"CapsLockAndShift", u"de"_s, {}, 0, 0x27, capsLock | shift, u"ä"_s},
                    KeyRow{"TurkishDotless", u"tr"_s, {}, 0, 0x22, alone, u"ı"_s},
                    KeyRow{"RussianLetter", u"ru"_s, {}, 0, 0x00, alone, u"ф"_s},
                    KeyRow{"ControlLetter", u"us"_s, {}, 0, 0x00, control, u"\u0001"_s},
                    KeyRow{"ControlOnACyrillicKey", u"ru"_s, {}, 0, 0x00, control, u"\u0001"_s},
                    KeyRow{"Keypad", u"us"_s, {}, 0, 0x59, shift, u"7"_s},
                    KeyRow{"GermanKeypadComma", u"de"_s, {}, 0, 0x41, alone, u","_s},
                    KeyRow{"Tab", u"us"_s, {}, 0, 0x30, alone, u"\t"_s},
                    KeyRow{"FunctionKey", u"us"_s, {}, 0, 0x7A, alone, u""_s},
                    KeyRow{"Arrow", u"us"_s, {}, 0, 0x7B, alone, u""_s},
                    KeyRow{"ModifierKey", u"us"_s, {}, 0, 0x38, alone, u""_s},
                    KeyRow{"BackspaceOnCapsLock", u"us"_s, u"colemak"_s, 0, 0x39, alone, u"\b"_s},
                    KeyRow{"JapaneseYen", u"jp"_s, {}, 0, 0x5D, alone, u"\\"_s}),
    RowName());

INSTANTIATE_TEST_SUITE_P(
    Command, KeyOfLayout,
    testing::Values(
        KeyRow{"LatinKeepsItsOwn", u"fr"_s, {}, 0, 0x0C, command, u"a"_s},
        KeyRow{"AccentedLetter", u"fr"_s, {}, 0, 0x13, command, u"é"_s},
        KeyRow{"DeadKeyShowsItsAccent", u"de"_s, {}, 0, 0x18, command, u"´"_s},
        KeyRow{"BackspaceOnCapsLockHasNoName", u"us"_s, u"colemak"_s, 0, 0x39, command, u""_s},
        KeyRow{"Cyrillic", u"ru"_s, {}, 0, 0x0C, command, u"q"_s},
        KeyRow{"CyrillicWithShift", u"ru"_s, {}, 0, 0x0C, command | shift, u"Q"_s},
        KeyRow{"CyrillicFullStop", u"ru"_s, {}, 0, 0x2C, command, u"/"_s},
        KeyRow{"CyrillicLetterAtTheFullStop", u"ru"_s, {}, 0, 0x2F, command, u"."_s},
        KeyRow{"HebrewSlashAtQ", u"il"_s, {}, 0, 0x0C, command, u"q"_s},
        KeyRow{"Greek", u"gr"_s, {}, 0, 0x29, command, u";"_s},
        KeyRow{"Arabic", u"ara"_s, {}, 0, 0x04, command, u"h"_s},
        KeyRow{"ArabicDigit", u"ara"_s, u"digits"_s, 0, 0x12, command, u"1"_s},
        KeyRow{"Thai", u"th"_s, {}, 0, 0x1F, command, u"o"_s},
        KeyRow{"Kana", u"jp"_s, u"kana"_s, 0, 0x2E, command, u"m"_s},
        KeyRow{"Devanagari", u"in"_s, u"deva"_s, 0, 0x2D, command, u"n"_s},
        KeyRow{"AccentsOnly", u"cz"_s, u"ucw"_s, 0, 0x06, command, u"z"_s},
        KeyRow{"SecondGroupTakesTheFirst", u"fr,ru"_s, {}, 1, 0x0C, command, u"a"_s},
        KeyRow{"FirstGroupTakesTheSecond", u"ru,fr"_s, {}, 0, 0x29, command, u"m"_s},
        KeyRow{"FirstLatinOfThree", u"ru,gr,us"_s, u",,dvorak"_s, 1, 0x0C, command, u"'"_s},
        KeyRow{"NoLatinGroup", u"ru,gr"_s, {}, 1, 0x0C, command, u"q"_s},
        KeyRow{"LatinGroupByItself", u"fr,ru"_s, {}, 0, 0x0C, command, u"a"_s},
        KeyRow{"Serbian", u"rs"_s, {}, 0, 0x0C, command, u"q"_s},
        KeyRow{"SerbianLatin", u"rs"_s, u"latin"_s, 0, 0x29, command, u"č"_s}),
    RowName());

// --- dead keys --------------------------------------------------------------------------------

struct AccentRow
{
    const char *name;
    QString layout;
    QString variant;
    QList<QPair<quint16, quint32>> keys; ///< key and modifiers
    QString typed;
};

class AccentOfLayout : public testing::TestWithParam<AccentRow>
{};

TEST_P(AccentOfLayout, Combines)
{
    const AccentRow &row = GetParam();
    const QByteArray data = layoutData(row.layout, row.variant, 0);
    quint32 state = 0;
    QString typed;
    for (const auto &[key, modifiers] : row.keys)
        typed += foundation::UCKeyTranslate(data, key, foundation::KeyAction::Down, modifiers, 40,
                                            0, state, 255)
                     .value_or(u"?"_s);
    EXPECT_EQ(typed, row.typed);
    EXPECT_EQ(state, 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Accents, AccentOfLayout,
    testing::Values(AccentRow{"Acute", u"de"_s, {}, {{0x18, 0}, {0x0E, 0}}, u"é"_s},
                    AccentRow{"Upper", u"de"_s, {}, {{0x18, 0}, {0x0E, shift}}, u"É"_s},
                    AccentRow{"Grave", u"de"_s, {}, {{0x18, shift}, {0x00, 0}}, u"à"_s},
                    AccentRow{"WithSpace", u"de"_s, {}, {{0x32, 0}, {0x31, 0}}, u"^"_s},
                    AccentRow{"WithAnother", u"de"_s, {}, {{0x32, 0}, {0x01, 0}}, u"ŝ"_s},
                    AccentRow{"NoCombination", u"de"_s, {}, {{0x18, 0}, {0x03, 0}}, u"´f"_s},
                    AccentRow{"Umlaut", u"fr"_s, {}, {{0x21, shift}, {0x20, 0}}, u"ü"_s},
                    AccentRow{"GreekTonos", u"gr"_s, {}, {{0x29, 0}, {0x00, 0}}, u"ά"_s},
                    AccentRow{"Cedilla", u"us"_s, u"intl"_s, {{0x27, 0}, {0x08, 0}}, u"ć"_s}),
    RowName());

// --- modifiers --------------------------------------------------------------------------------

// --- keymaps that programs make for the keys that they send -----------------------------------

/// Whether a keymap is taken for a board's; it is given as runs of keys, "10 1 2": the first key
/// code and the symbol of each.
bool isBoard(const QStringList &runs)
{
    QString codes;
    QString symbols;
    for (const QString &run : runs) {
        const int first = run.section(u' ', 0, 0).toInt();
        for (int i = 0; const QString &symbol : run.split(u' ').sliced(1)) {
            codes += u"<K%1> = %1; "_s.arg(first + i);
            symbols += u"key <K%1> { [ %2 ] }; "_s.arg(first + i++).arg(symbol);
        }
    }
    const QString text = u"xkb_keymap { xkb_keycodes { minimum = 8; maximum = 255; %1 }; xkb_types "
                         "{ include \"complete\" }; xkb_compatibility {}; xkb_symbols { %2 }; };"_s;
    const XkbKeymapPointer keymap(xkb_keymap_new_from_string(
        makeXkbContext().get(), text.arg(codes, symbols).toUtf8().constData(),
        XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
    return isKeymapOfBoard(keymap.get());
}

TEST(KeymapsOfPrograms, AreNotThoseOfABoard)
{
    const QStringList letters{u"24 q w e r t y u i o p Up Up Return"_s,
                              u"38 a s d f g h j k l Up Up Up Up Up z x c v b n m"_s,
                              u"65 space"_s};
    const QString digits = u"10 1 2 3 4 5 6 7 8 9 0"_s;
    EXPECT_TRUE(isBoard(letters + QStringList{digits}));
    EXPECT_FALSE(isBoard(letters));
    EXPECT_FALSE(isBoard(letters.first(2) + QStringList{digits})) << "no space bar";
    EXPECT_FALSE(isBoard({u"9 1 2 3 4 5 6 7 8 9 0 a b c d e f g h i j k l m n o p q r s t u v w x "
                          "y z 1 2 3 4 5 6 7 8 9 0 1 2 3 4"_s,
                          letters.last()}))
        << "no Return";
}

TEST(ModifierMasks, AreThoseOfTheUsualKeys)
{
    const XkbContextPointer context = makeXkbContext();
    const XkbKeymapPointer keymap = compileKeymap(context.get(), {{}, u"de"_s, {}, {}});
    ASSERT_NE(keymap, nullptr);
    const XkbModifierMasks masks = modifierMasks(keymap.get());
    EXPECT_EQ(masks.shift, 0x01U);
    EXPECT_EQ(masks.capsLock, 0x02U);
    EXPECT_EQ(masks.control, 0x04U);
    EXPECT_EQ(masks.alt, 0x08U);
    EXPECT_EQ(masks.numLock, 0x10U);
    EXPECT_EQ(masks.super, 0x40U);
    EXPECT_EQ(masks.level3, 0x80U);
}

} // namespace
} // namespace tarnwell::desktop
