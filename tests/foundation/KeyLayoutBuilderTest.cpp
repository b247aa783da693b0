#include "foundation/UnicodeKeyLayout.h"
#include "foundation/UnicodeKeyLayoutBuilder.h"
#include "support/RowName.h"

#include <QList>
#include <QStringList>

#include <gtest/gtest.h>

namespace tarnwell::foundation {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;

constexpr quint32 anyKeyboard = 40;

QString press(const QByteArray &layout, quint16 key, quint32 modifiers, quint32 options,
              quint32 &state)
{
    return UCKeyTranslate(layout, key, KeyAction::Down, modifiers, anyKeyboard, options, state, 255)
        .value_or(u"<nothing>"_s);
}

// --- texts ------------------------------------------------------------------------------------

struct TextRow
{
    const char *name;
    QString text;
};

class WrittenTexts : public testing::TestWithParam<TextRow>
{};

/// Some characters look like references in the format, so they must be stored in another way.
TEST_P(WrittenTexts, AreReadBackFromKeysAndCombinations)
{
    const QString &text = GetParam().text;
    KeyLayoutDescription layout;
    layout.tables = {{{1, {text, 0}}, {2, {{}, 1}}, {3, {u"e"_s, 0}}}};
    layout.deadKeys = {{text, {{u"e"_s, {text, 0}}}}};
    const QByteArray bytes = unicodeKeyLayoutData(layout);

    quint32 state = 0;
    EXPECT_EQ(press(bytes, 1, 0, 0, state), text);
    EXPECT_EQ(press(bytes, 2, 0, keyTranslateNoDeadKeys, state), text);
    EXPECT_EQ(press(bytes, 2, 0, 0, state), u""_s);
    EXPECT_EQ(press(bytes, 3, 0, 0, state), text);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, WrittenTexts,
    testing::Values(TextRow{"Letter", u"a"_s}, TextRow{"LikeARecord", u"\u4E00"_s},
                    TextRow{"LikeASequence", u"\u9FA5"_s}, TextRow{"Hangul", u"\uAC00"_s},
                    TextRow{"Compatibility", u"\uFB01"_s},
                    TextRow{"LikeNone", QString(QChar(0xFFFE))},
                    TextRow{"Surrogates", u"\U0001F600"_s}, TextRow{"Several", u"l·l"_s}),
    RowName());

// --- tables -----------------------------------------------------------------------------------

TEST(WrittenTables, AreChosenByEveryModifier)
{
    KeyLayoutDescription layout;
    layout.tables = {{{0, {u"a"_s, 0}}}, {{0, {u"A"_s, 0}}}, {}};
    for (std::size_t state = 0; state < 256; ++state)
        layout.tableForModifiers[state] = state % 3;
    const QByteArray bytes = unicodeKeyLayoutData(layout);
    for (quint32 modifiers = 0; modifiers < 256; ++modifiers) {
        quint32 state = 0;
        const QStringList texts{u"a"_s, u"A"_s, u""_s};
        EXPECT_EQ(press(bytes, 0, modifiers, 0, state), texts[modifiers % 3]) << modifiers;
    }
}

TEST(WrittenTables, TypeNothingForUnknownKeys)
{
    KeyLayoutDescription layout;
    layout.tables = {{{0, {u"a"_s, 0}}, {500, {u"b"_s, 0}}}};
    const QByteArray bytes = unicodeKeyLayoutData(layout);
    quint32 state = 0;
    EXPECT_EQ(press(bytes, 1, 0, 0, state), u""_s);
    EXPECT_EQ(press(bytes, 500, 0, 0, state), u""_s);
    EXPECT_EQ(press(bytes, 0xFFFF, 0, 0, state), u""_s);
}

TEST(WrittenTables, AreRefusedWhenTheyHaveTooManySequences)
{
    KeyLayoutDescription layout;
    for (int table = 0; table < 200; ++table) {
        auto &keys = layout.tables.emplace_back();
        for (quint16 key = 0; key < 128; ++key)
            keys[key].text = QString::number(table * 128 + key + 10);
    }
    EXPECT_TRUE(unicodeKeyLayoutData(layout).isEmpty());
}

// --- dead keys --------------------------------------------------------------------------------

/// Keys: 0 e, 1 x, 2 acute, 3 circumflex, 4 nothing. Acute on a circumflex leads on.
QByteArray accents()
{
    KeyLayoutDescription layout;
    layout.tables = {
        {{0, {u"e"_s, 0}}, {1, {u"x"_s, 0}}, {2, {{}, 1}}, {3, {{}, 2}}, {5, {u"o"_s, 0}}}};
    layout.deadKeys = {
        {u"´"_s, {{u"e"_s, {u"é"_s, 0}}, {u"o"_s, {{}, 3}}}},
        {u"^"_s, {{u"e"_s, {u"ê"_s, 0}}}},
        {u"ó"_s, {{u"o"_s, {u"ő"_s, 0}}}},
    };
    return unicodeKeyLayoutData(layout);
}

struct SequenceRow
{
    const char *name;
    QList<quint16> keys;
    quint32 options;
    QStringList typed;
    bool isPending;
};

class DeadKeys : public testing::TestWithParam<SequenceRow>
{};

TEST_P(DeadKeys, Combine)
{
    const SequenceRow &row = GetParam();
    const QByteArray bytes = accents();
    quint32 state = 0;
    QStringList typed;
    for (const quint16 key : row.keys)
        typed += press(bytes, key, 0, row.options, state);
    EXPECT_EQ(typed.join(u'|'), row.typed.join(u'|'));
    EXPECT_EQ(state != 0, row.isPending);
}

constexpr quint32 off = keyTranslateNoDeadKeys;

INSTANTIATE_TEST_SUITE_P(
    Sequences, DeadKeys,
    testing::Values(SequenceRow{"Alone", {2}, 0, {u""_s}, true},
                    SequenceRow{"WithALetter", {2, 0}, 0, {u""_s, u"é"_s}, false},
                    SequenceRow{"OtherAccent", {3, 0}, 0, {u""_s, u"ê"_s}, false},
                    SequenceRow{"NoCombination", {2, 1}, 0, {u""_s, u"´x"_s}, false},
                    SequenceRow{"NoCombinationOfARecord", {3, 5}, 0, {u""_s, u"^o"_s}, false},
                    SequenceRow{"TwoDeadKeys", {2, 3, 0}, 0, {u""_s, u"´"_s, u"ê"_s}, false},
                    SequenceRow{"LeadingOn", {2, 5, 5}, 0, {u""_s, u""_s, u"ő"_s}, false},
                    SequenceRow{"LeadingOnToNothing", {2, 5, 1}, 0, {u""_s, u""_s, u"óx"_s}, false},
                    SequenceRow{"EmptyKeyBetween", {2, 4, 0}, 0, {u""_s, u""_s, u"é"_s}, false},
                    SequenceRow{"SwitchedOff", {2, 0}, off, {u"´"_s, u"e"_s}, false}),
    RowName());

TEST(DeadKeys, KeepStateZeroForTheReverseSearch)
{
    const QByteArray bytes = accents();
    const auto layout = UnicodeKeyLayout::fromBytes(bytes);
    const auto type = layout->keyboardType(0);
    const quint16 letter = layout->output(*type, 0, 0).value_or(0);
    ASSERT_EQ(letter & 0xC000, 0x4000);
    EXPECT_EQ(layout->stateZeroCharacter(*type, letter & 0x3FFF), u'e');
}

} // namespace
} // namespace tarnwell::foundation
