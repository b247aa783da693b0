#include "shortcuts/KeyTranslation.h"
#include "fakes/FakeKeyboardLayouts.h"
#include "support/RowName.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace tarnwell::shortcuts {
namespace {

using namespace Qt::StringLiterals;
using fakes::FakeKeyboardLayouts;
using foundation::FontStyle;
using foundation::StyledString;
using foundation::TextColor;
using plist::Dictionary;
using plist::Value;
using tests::RowName;

const StyledString greyedNone(u"Keine"_s, {FontStyle::SmallSystem, TextColor::DisabledControl});

StyledString plain(const QString &text)
{
    return StyledString(text, {FontStyle::SmallSystem, TextColor::Inherited});
}

// --- stored key commands ----------------------------------------------------------------------

struct CommandRow
{
    const char *name;
    Dictionary command;
    QString shown; ///< empty for the greyed word
};

class StoredCommand : public testing::TestWithParam<CommandRow>
{};

TEST_P(StoredCommand, IsShown)
{
    FakeKeyboardLayouts keyboard;
    keyboard.useBoard(u"xkb:test"_s, {{0x1B, u"ß"_s}, {0x27, u"ﬁ"_s}});
    const CommandRow &row = GetParam();
    EXPECT_EQ(TranslatedStringFromKeyDictionary(keyboard.port(), row.command, u"Keine"_s),
              row.shown.isEmpty() ? greyedNone : plain(row.shown));
}

INSTANTIATE_TEST_SUITE_P(
    KeyCodes, StoredCommand,
    testing::Values(
        CommandRow{"SpecialKey", {{u"kc"_s, 0x7A}, {u"mod"_s, 0x0100}}, u"⌘F1"_s},
        CommandRow{"SpecialKeyWithShift", {{u"kc"_s, 0x7A}, {u"mod"_s, 0x0300}}, u"⇧⌘F1"_s},
        CommandRow{"AllModifiers", {{u"kc"_s, 0x00}, {u"mod"_s, 0x1B00}}, u"⇧⌃⌥⌘A"_s},
        CommandRow{"NoModifier", {{u"kc"_s, 0x00}, {u"mod"_s, 0}}, u"A"_s},
        CommandRow{"OtherModifierBits", {{u"kc"_s, 0x00}, {u"mod"_s, 0x74FF}}, u"⌃A"_s},
        CommandRow{"FirstOfTwoTabs", {{u"kc"_s, 0x30}, {u"mod"_s, 0x0100}}, u"⌘⇥"_s},
        CommandRow{"FirstOfThreeReturns", {{u"kc"_s, 0x24}, {u"mod"_s, 0}}, u"↩"_s},
        CommandRow{"LeftControl", {{u"kc"_s, 0x3B}, {u"mod"_s, 0}}, u"F14"_s},
        CommandRow{"CodeZeroIsAKey", {{u"kc"_s, 0}, {u"mod"_s, 0x0100}}, u"⌘A"_s},
        CommandRow{"UpperCaseOfTwoLetters", {{u"kc"_s, 0x1B}, {u"mod"_s, 0x0100}}, u"⌘SS"_s},
        CommandRow{"UpperCaseOfALigature", {{u"kc"_s, 0x27}, {u"mod"_s, 0}}, u"FI"_s},
        CommandRow{
            "CodeBeforeCharacter", {{u"kc"_s, 0x00}, {u"cK"_s, 0x42}, {u"mod"_s, 0x0100}}, u"⌘A"_s},
        CommandRow{"Cleared", {{u"kc"_s, -1}, {u"mod"_s, 0}}, {}},
        CommandRow{"ClearedButForModifiers", {{u"kc"_s, -1}, {u"mod"_s, 0x0100}}, u"⌘"_s},
        CommandRow{"NoModifiersStored", {{u"kc"_s, 0x00}}, {}},
        CommandRow{"ModifiersOfAnotherType", {{u"kc"_s, 0x00}, {u"mod"_s, u"256"_s}}, {}},
        CommandRow{"CodeOfAnotherType",
                   {{u"kc"_s, u"0"_s}, {u"cK"_s, 0x42}, {u"mod"_s, 0x0100}},
                   u"⌘B"_s}),
    RowName());

INSTANTIATE_TEST_SUITE_P(
    Widths, StoredCommand,
    testing::Values(
        CommandRow{"WideCode", {{u"kc"_s, 0x1007A}, {u"mod"_s, 0x0100}}, u"⌘F1"_s},
        CommandRow{"NegativeCode", {{u"kc"_s, -0x10000 + 0x7A}, {u"mod"_s, 0x0100}}, u"⌘F1"_s},
        CommandRow{"HugeCode", {{u"kc"_s, 0xFFFFFFFFFFFF007AU}, {u"mod"_s, 0}}, u"F1"_s},
        CommandRow{"RealCode", {{u"kc"_s, 122.9}, {u"mod"_s, 256.0}}, u"⌘F1"_s},
        CommandRow{"BooleanModifiers", {{u"kc"_s, 0x7A}, {u"mod"_s, true}}, u"F1"_s},
        CommandRow{"WideModifiers", {{u"kc"_s, 0x7A}, {u"mod"_s, 0x100000100}}, u"⌘F1"_s},
        CommandRow{"NegativeModifiers", {{u"kc"_s, 0x7A}, {u"mod"_s, -1}}, u"⇧⌃⌥⌘F1"_s}),
    RowName());

INSTANTIATE_TEST_SUITE_P(
    Characters, StoredCommand,
    testing::Values(CommandRow{"Letter", {{u"cK"_s, 0x41}, {u"mod"_s, 0x0100}}, u"⌘A"_s},
                    CommandRow{"CaseIsKept", {{u"cK"_s, 0xE9}, {u"mod"_s, 0x0100}}, u"⌘é"_s},
                    CommandRow{"SmallZIsACode", {{u"cK"_s, 0x7A}, {u"mod"_s, 0x0100}}, u"⌘F1"_s},
                    CommandRow{"Zero", {{u"cK"_s, 0}, {u"mod"_s, 0x0100}}, {}},
                    CommandRow{"ZeroInSixteenBits", {{u"cK"_s, 0x10000}, {u"mod"_s, 0x0100}}, {}},
                    CommandRow{"None", {{u"cK"_s, -1}, {u"mod"_s, 0x0100}}, {}},
                    CommandRow{"UnsignedNone", {{u"cK"_s, 0xFFFF}, {u"mod"_s, 0x0100}}, {}},
                    CommandRow{"NoModifiersStored", {{u"cK"_s, 0x41}}, {}},
                    CommandRow{"Nothing", {}, {}}),
    RowName());

/// Without a layout a key code that is not special is no key, so that the character is asked.
TEST(StoredCommandWithoutALayout, IsShownByItsCharacter)
{
    FakeKeyboardLayouts keyboard;
    const Dictionary command{{u"kc"_s, 0x00}, {u"cK"_s, 0x42}, {u"mod"_s, 0x0100}};
    keyboard.useNoLayout();
    EXPECT_EQ(TranslatedStringFromKeyDictionary(keyboard.port(), command, u"Keine"_s),
              plain(u"⌘B"_s));
    keyboard.useLayoutData(u"xkb:none"_s, {});
    EXPECT_EQ(TranslatedStringFromKeyDictionary(keyboard.port(), command, u"Keine"_s),
              plain(u"⌘B"_s));
    // A damaged layout is one whose keys type nothing.
    keyboard.useLayoutData(u"xkb:damaged"_s, "damaged");
    EXPECT_EQ(TranslatedStringFromKeyDictionary(keyboard.port(), command, u"Keine"_s),
              plain(u"⌘"_s));
}

// --- fingerprints -----------------------------------------------------------------------------

struct FingerprintRow
{
    const char *name;
    Value kc;
    Value cK;
    std::optional<QString> text;
};

class Fingerprint : public testing::TestWithParam<FingerprintRow>
{};

TEST_P(Fingerprint, ReadsTheCharacterAsModifiers)
{
    FakeKeyboardLayouts keyboard;
    EXPECT_EQ(TranslateKey(keyboard.port(), GetParam().kc, GetParam().cK), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Pairs, Fingerprint,
                         testing::Values(FingerprintRow{"None", -1, 0x41, u"None"_s},
                                         FingerprintRow{"UnsignedNone", 0xFFFF, 8, u"None"_s},
                                         FingerprintRow{"NoCode", {}, 0x41, u"None"_s},
                                         FingerprintRow{"CodeOfAnotherType", u"122"_s, 0x41,
                                                        u"None"_s},
                                         FingerprintRow{"NoCharacter", 0x7A, {}, u"⌘F1"_s},
                                         FingerprintRow{"CapitalA", 0x00, 0x41, u"⇧⌘A"_s},
                                         FingerprintRow{"CapitalO", 0x1F, 0x4F, u"⇧⌃⌥O"_s},
                                         FingerprintRow{"NoGlyph", 0x1F, 0x48, u"O"_s},
                                         FingerprintRow{"CharacterIsWide", 0x7A, 0x10008, u"F1"_s},
                                         FingerprintRow{"CharacterIsNone", 0x7A, -1, u"⇧⌃⌥F1"_s}),
                         RowName());

TEST(FingerprintWithoutALayout, IsNothing)
{
    FakeKeyboardLayouts keyboard;
    keyboard.useNoLayout();
    EXPECT_EQ(TranslateKey(keyboard.port(), 0x00, 0), std::nullopt);
    EXPECT_EQ(TranslateKey(keyboard.port(), 0x7A, 0), u"⌘F1"_s);
}

// --- characters with modifiers ----------------------------------------------------------------

struct CharacterRow
{
    const char *name;
    std::optional<QString> character;
    Value modifiers;
    QString shown;
};

class ShortcutString : public testing::TestWithParam<CharacterRow>
{};

TEST_P(ShortcutString, ShowsTheCharacter)
{
    const CharacterRow &row = GetParam();
    EXPECT_EQ(ShortcutStringFor(row.character, row.modifiers, u"Keine"_s),
              row.shown.isEmpty() ? greyedNone : plain(row.shown));
}

INSTANTIATE_TEST_SUITE_P(Characters, ShortcutString,
                         testing::Values(CharacterRow{"Letter", u"a"_s, 0x0100, u"⌘a"_s},
                                         CharacterRow{"AllModifiers", u"a"_s, 0x1B00, u"⇧⌃⌥⌘a"_s},
                                         CharacterRow{"NoModifier", u"a"_s, 0, u"a"_s},
                                         CharacterRow{"NoModifiersGiven", u"a"_s, {}, u"a"_s},
                                         CharacterRow{"Left", QString(QChar(28)), 0x0100, u"⌘←"_s},
                                         CharacterRow{"Right", QString(QChar(29)), 0x0200, u"⇧→"_s},
                                         CharacterRow{"Up", QString(QChar(30)), 0, u"↑"_s},
                                         CharacterRow{"Down", QString(QChar(31)), 0, u"↓"_s},
                                         CharacterRow{"Backspace", u"\b"_s, 0x0100, u"⌘⌫"_s},
                                         CharacterRow{"ArrowAloneOfSeveral", u"\u001Cabc"_s, 0,
                                                      u"←"_s},
                                         CharacterRow{"WholeText", u"ab"_s, 0x0100, u"⌘ab"_s},
                                         CharacterRow{"Empty", u""_s, 0x0100, {}},
                                         CharacterRow{"Missing", std::nullopt, 0x0100, {}}),
                         RowName());

QStringList logged;

TEST(ShortcutStringLog, NamesTheCharacter)
{
    logged.clear();
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &line) { logged.append(line); });
    ShortcutStringFor(u"a%@"_s, 0, {});
    ShortcutStringFor(std::nullopt, 0, {});
    qInstallMessageHandler(before);
    EXPECT_EQ(logged, (QStringList{u"a%@"_s, u"(null)"_s}));
}

// --- parts ------------------------------------------------------------------------------------

TEST(MenuGlyphs, AreFoundByTheirOwnCodes)
{
    EXPECT_EQ(MenuGlyphString(0x03), u"⇤"_s); // the second key of a shared key code
    EXPECT_EQ(MenuGlyphString(0x09), u"␣"_s); // a row without a key code
    EXPECT_EQ(MenuGlyphString(0x67), u"<<Help Key>>"_s);
    EXPECT_EQ(MenuGlyphString(0x8C), u"⏏"_s);
    EXPECT_EQ(MenuGlyphString(0), std::nullopt);
    EXPECT_EQ(MenuGlyphString(0x61), std::nullopt);
    EXPECT_EQ(MenuGlyphString(0x102), std::nullopt);
}

TEST(SmallFont, StandsInForAMissingText)
{
    EXPECT_EQ(SmallFontFor(std::nullopt, true, true),
              StyledString(u"n/a"_s, {FontStyle::SmallBoldSystem, TextColor::DisabledControl}));
    EXPECT_TRUE(SmallFontFor(u""_s, false, false).isEmpty());
}

TEST(KeyCodeDisplay, IsNothingWithoutALayout)
{
    FakeKeyboardLayouts keyboard;
    EXPECT_EQ(KeyCodeDisplayString(keyboard.port(), 0x2E, 6), u"⌃⌥⌘M"_s);
    EXPECT_EQ(KeyCodeDisplayString(keyboard.port(), 0xFFFF, 8), u""_s);
    keyboard.useNoLayout();
    EXPECT_EQ(KeyCodeDisplayString(keyboard.port(), 0x2E, 6), std::nullopt);
}

} // namespace
} // namespace tarnwell::shortcuts
