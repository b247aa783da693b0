#include "foundation/UnicodeKeyLayout.h"
#include "support/RowName.h"

#include <QList>
#include <QtEndian>

#include <gtest/gtest.h>

#include <functional>

namespace tarnwell::foundation {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;

/// A layout written out by hand, so that the reader is not only held against our own writer.
class LayoutBytes
{
public:
    LayoutBytes &half(std::initializer_list<int> numbers)
    {
        for (const int number : numbers) {
            const quint16 stored = qToLittleEndian(static_cast<quint16>(number));
            m_bytes.append(reinterpret_cast<const char *>(&stored), 2);
        }
        return *this;
    }
    LayoutBytes &word(std::initializer_list<quint32> numbers)
    {
        for (const quint32 number : numbers)
            half({static_cast<int>(number & 0xFFFF), static_cast<int>(number >> 16)});
        return *this;
    }
    quint32 size() const { return static_cast<quint32>(m_bytes.size()); }
    const QByteArray &bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

// Where the parts are.
constexpr quint32 modifiersAt = 68;
constexpr quint32 tablesAt = 80;
constexpr quint32 recordsAt = 128;
constexpr quint32 terminatorsAt = 204;
constexpr quint32 sequencesAt = 216;

/// Two keyboard types, 41 and the default, that share everything but the records: 41 has none.
/// Two tables of eight keys: alone and with Command.
QByteArray writtenByHand()
{
    LayoutBytes layout;
    layout.half({0x1002, 0x0100}).word({0, 2});
    layout.word({41, 41, modifiersAt, tablesAt, 0, 0, sequencesAt});
    layout.word({0, 0, modifiersAt, tablesAt, recordsAt, terminatorsAt, sequencesAt});

    // Modifier states 0 and 1 have a table each; all others use table 0.
    layout.half({0x3001, 0}).word({2}).half({0x0100, 0});

    layout.half({0x4001, 8}).word({2, tablesAt + 16, tablesAt + 32});
    layout.half({'a', 0x4000, 0x4001, 0x4002, 0x4003, 0x8000, 0xFFFE, 0xFFFF});
    layout.half({'A', 0x4000, 0x4001, 0x4004, 0x8001, 0x8002, 0xFFFE, 0xFFFF});

    layout.half({0x5001, 4}).word({recordsAt + 20, recordsAt + 28, recordsAt + 44, recordsAt + 60});
    // 0: a dead key of state 1. 1: e, with an entry for each of two states.
    layout.half({0xFFFF, 1, 0, 0});
    layout.half({'e', 0, 2, 0x0001, 1, 0xE9, 2, 0xEA});
    // 2: o; states 1 to 3 give p, r, t. 3: a dead key of state 1; states 1 and 2 lead to 2 and 3.
    layout.half({'o', 0, 1, 0x0002, 1, 0x0202, 'p', 0});
    layout.half({0, 1, 1, 0x0002, 1, 0x0101});
    layout.half({0xFFFF, 2});

    layout.half({0x6001, 3, 0xB4, '^', 0x8000, 0});
    layout.half({0x7001, 2, 10, 14, 14, 'i', 'j'});
    return layout.bytes();
}

constexpr quint32 off = keyTranslateNoDeadKeys;

struct PressRow
{
    const char *name;
    QList<quint16> keys;
    quint32 modifiers;
    quint32 keyboard;
    quint32 options;
    QString typed; ///< of the last key; "nothing" for no translation at all
    quint32 state;
};

class ReadLayout : public testing::TestWithParam<PressRow>
{};

TEST_P(ReadLayout, Translates)
{
    const PressRow &row = GetParam();
    const QByteArray bytes = writtenByHand();
    ASSERT_EQ(bytes.size(), sequencesAt + 14);
    quint32 state = 0;
    QString typed;
    for (const quint16 key : row.keys)
        typed = UCKeyTranslate(bytes, key, KeyAction::Display, row.modifiers, row.keyboard,
                               row.options, state, 255)
                    .value_or(u"nothing"_s);
    EXPECT_EQ(typed, row.typed);
    EXPECT_EQ(state, row.state);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, ReadLayout,
    testing::Values(PressRow{"Character", {0}, 0, 40, 0, u"a"_s, 0},
                    PressRow{"OtherTable", {0}, 1, 40, 0, u"A"_s, 0},
                    PressRow{"DefaultTable", {0}, 16, 40, 0, u"a"_s, 0},
                    PressRow{"HighBitsOfTheState", {0}, 0x101, 40, 0, u"A"_s, 0},
                    PressRow{"RecordInStateZero", {2}, 0, 40, 0, u"e"_s, 0},
                    PressRow{"TerminalEntry", {1, 2}, 0, 40, 0, u"é"_s, 0},
                    PressRow{"SecondTerminalEntry", {1, 4, 2}, 0, 40, 0, u"ê"_s, 0},
                    PressRow{"FirstOfARange", {1, 3}, 0, 40, 0, u"p"_s, 0},
                    PressRow{"SecondOfARange", {1, 4, 3}, 0, 40, 0, u"r"_s, 0},
                    PressRow{"LastOfARange", {1, 4, 4, 3}, 0, 40, 0, u"t"_s, 0},
                    PressRow{"StepOfStates", {1, 4, 4}, 0, 40, 0, u""_s, 3},
                    PressRow{"TerminatorFirst", {1, 0}, 0, 40, 0, u"´a"_s, 0},
                    PressRow{"TerminatorOfThree", {1, 4, 4, 0}, 0, 40, 0, u"ija"_s, 0},
                    PressRow{"DeadKeyTwice", {1, 1}, 0, 40, 0, u"´"_s, 1},
                    PressRow{"DeadKeysOff", {1}, 0, 40, off, u"´"_s, 0},
                    PressRow{"Sequence", {5}, 0, 40, 0, u"ij"_s, 0},
                    PressRow{"EmptySequence", {4}, 1, 40, 0, u""_s, 0},
                    PressRow{"NoneInOneWay", {6}, 0, 40, 0, u""_s, 0},
                    PressRow{"NoneInTheOther", {7}, 0, 40, 0, u""_s, 0},
                    PressRow{"PastTheTable", {8}, 0, 40, 0, u""_s, 0},
                    PressRow{"MissingRecord", {3}, 1, 40, 0, u"nothing"_s, 0},
                    PressRow{"MissingSequence", {5}, 1, 40, 0, u"nothing"_s, 0},
                    PressRow{"KeyboardWithoutRecords", {1}, 0, 41, 0, u"nothing"_s, 0},
                    PressRow{"KeyboardOfItsOwn", {5}, 0, 41, 0, u"ij"_s, 0}),
    RowName());

TEST(ReadLayout, ReturnsNoMoreThanThereIsRoomFor)
{
    const QByteArray bytes = writtenByHand();
    quint32 state = 0;
    for (const qsizetype room : {2, 1, 0, -1}) {
        const auto typed =
            UCKeyTranslate(bytes, 5, KeyAction::AutoKey, 0, 40, 0, state, room).value_or(u"?"_s);
        EXPECT_EQ(typed, u"ij"_s.first(qMax<qsizetype>(room, 0)));
    }
    EXPECT_EQ(UCKeyTranslate(bytes, 5, KeyAction::Up, 0, 40, 0, state, 9), QString());
}

// --- damage -----------------------------------------------------------------------------------

struct DamageRow
{
    const char *name;
    std::function<void(QByteArray &)> damage;
};

void put16(QByteArray &bytes, qsizetype position, quint16 number)
{
    qToLittleEndian(number, bytes.data() + position);
}

void put32(QByteArray &bytes, qsizetype position, quint32 number)
{
    qToLittleEndian(number, bytes.data() + position);
}

class DamagedLayout : public testing::TestWithParam<DamageRow>
{};

TEST_P(DamagedLayout, TranslatesToNothing)
{
    QByteArray bytes = writtenByHand();
    GetParam().damage(bytes);
    quint32 state = 0;
    EXPECT_EQ(UCKeyTranslate(bytes, 5, KeyAction::Display, 0, 40, off, state, 255), std::nullopt);
}

// The second keyboard type, which serves number 40, begins at 40.
INSTANTIATE_TEST_SUITE_P(
    Faults, DamagedLayout,
    testing::Values(
        DamageRow{"Empty", [](QByteArray &b) { b.clear(); }},
        DamageRow{"OnlyAHeader", [](QByteArray &b) { b.truncate(12); }},
        DamageRow{"OtherFormat", [](QByteArray &b) { put16(b, 0, 0x1001); }},
        DamageRow{"NoKeyboardType", [](QByteArray &b) { put32(b, 8, 0); }},
        DamageRow{"ModifiersOutside", [](QByteArray &b) { put32(b, 48, 0xFFFFFFF0); }},
        DamageRow{"ModifiersAbsent", [](QByteArray &b) { put32(b, 48, 0); }},
        DamageRow{"ModifiersOfAnotherFormat", [](QByteArray &b) { put16(b, modifiersAt, 1); }},
        DamageRow{"NoSuchTable", [](QByteArray &b) { b[modifiersAt + 8] = 2; }},
        DamageRow{"TablesOutside", [](QByteArray &b) { put32(b, 52, 0x10000); }},
        DamageRow{"TablesOfAnotherFormat", [](QByteArray &b) { put16(b, tablesAt, 0x4002); }},
        DamageRow{"NoTable", [](QByteArray &b) { put32(b, tablesAt + 4, 0); }},
        DamageRow{"TableOutside", [](QByteArray &b) { put32(b, tablesAt + 8, 0xFFFFFFFF); }},
        DamageRow{"SequencesAbsent", [](QByteArray &b) { put32(b, 64, 0); }},
        DamageRow{"SequencesOutside", [](QByteArray &b) { put32(b, 64, 0x7FFFFFFF); }},
        DamageRow{"NoSequence", [](QByteArray &b) { put16(b, sequencesAt + 2, 0); }},
        DamageRow{"SequenceOutside", [](QByteArray &b) { put16(b, sequencesAt + 6, 0xFFFF); }},
        DamageRow{"SequenceBackwards", [](QByteArray &b) { put16(b, sequencesAt + 4, 20); }},
        DamageRow{"Truncated", [](QByteArray &b) { b.chop(2); }}),
    RowName());

/// Presses every key with some modifiers and dead keys on and off, and searches the tables.
void readEverything(const QByteArray &bytes)
{
    for (const quint32 options : {quint32{0}, off}) {
        for (quint32 modifiers = 0; modifiers < 3; ++modifiers) {
            quint32 state = 0;
            for (quint16 key = 0; key < 10; ++key)
                UCKeyTranslate(bytes, key, KeyAction::Down, modifiers, 40, options, state, 255);
        }
    }
}

/// What the sanitizers see is the point here: no damage leads outside the bytes.
TEST(DamagedLayout, IsReadWithinItsBytes)
{
    const QByteArray whole = writtenByHand();
    for (qsizetype size = 0; size <= whole.size(); ++size) {
        // A buffer of exactly this size, so that a read past it is seen.
        readEverything(QByteArray(whole.constData(), size));
    }
    for (qsizetype position = 0; position + 2 <= whole.size(); position += 2) {
        for (const quint16 number : {0x0000, 0x00FF, 0x4003, 0x7FFF, 0x8000, 0xFFFF}) {
            QByteArray damaged(whole.constData(), whole.size());
            put16(damaged, position, number);
            readEverything(damaged);
        }
    }
}

TEST(DamagedLayout, ClaimsNoMoreThanItsBytesHold)
{
    QByteArray bytes = writtenByHand();
    put32(bytes, 8, 0xFFFFFFFF);
    put32(bytes, tablesAt + 4, 0xFFFFFFFF);
    const auto layout = UnicodeKeyLayout::fromBytes(bytes);
    ASSERT_TRUE(layout);
    EXPECT_LE(layout->keyboardTypeCount(), bytes.size() / 28);
    EXPECT_EQ(layout->keyboardType(layout->keyboardTypeCount()), std::nullopt);
    const auto type = layout->keyboardType(1);
    ASSERT_TRUE(type);
    EXPECT_LE(layout->tableCount(*type), bytes.size() / 4);
}

} // namespace
} // namespace tarnwell::foundation
