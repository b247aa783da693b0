#include "fakes/FakeKeyboardLayouts.h"
#include "foundation/StatusCodes.h"
#include "shortcuts/KeyTranslation.h"
#include "support/RowName.h"

#include <QtEndian>

#include <gtest/gtest.h>

namespace tarnwell::shortcuts {
namespace {

using namespace Qt::StringLiterals;
using fakes::FakeKeyboardLayouts;
using foundation::fnfErr;
using foundation::KeyLayoutDescription;
using foundation::paramErr;
using foundation::unicodeKeyLayoutData;
using tests::RowName;

constexpr quint16 untouched = 0xABCD;

/// Tables, by number, of keys whose letters combine, are dead, are plain or are sequences.
KeyLayoutDescription layout()
{
    KeyLayoutDescription layout;
    layout.tables = {{{3, {u"a"_s, 0}}, {4, {{}, 1}}, {6, {u"xy"_s, 0}}, {7, {u"\u4E00"_s, 0}}},
                     {{1, {u"e"_s, 0}}, {2, {u"e"_s, 0}}, {3, {u"A"_s, 0}}},
                     {{0, {u"a"_s, 0}}, {9, {u"m"_s, 0}}}};
    layout.deadKeys = {{u"´"_s, {{u"e"_s, {u"é"_s, 0}}}}};
    return layout;
}

struct SearchRow
{
    const char *name;
    char16_t character;
    int status;
    quint16 key;
};

class KeySearch : public testing::TestWithParam<SearchRow>
{};

TEST_P(KeySearch, FindsTheFirstKey)
{
    FakeKeyboardLayouts keyboard;
    keyboard.useLayoutData(u"xkb:test"_s, unicodeKeyLayoutData(layout()));
    quint16 key = untouched;
    EXPECT_EQ(KeyCodeForCharacter(keyboard.port(), {}, GetParam().character, &key),
              GetParam().status);
    EXPECT_EQ(key, GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(Characters, KeySearch,
                         testing::Values(SearchRow{"Plain", u'A', 0, 3},
                                         SearchRow{"FirstTableBeforeFirstKey", u'a', 0, 3},
                                         SearchRow{"LastTable", u'm', 0, 9},
                                         SearchRow{"StateZeroOfALetterThatCombines", u'e', 0, 1},
                                         SearchRow{"CombinationIsNoKey", u'é', paramErr, untouched},
                                         SearchRow{"AccentIsNoKey", u'´', paramErr, untouched},
                                         SearchRow{"PartOfASequence", u'x', paramErr, untouched},
                                         SearchRow{"StoredAsASequence", u'\u4E00', paramErr,
                                                   untouched},
                                         SearchRow{"NoSuchCharacter", u'z', paramErr, untouched},
                                         SearchRow{"NullCharacter", u'\0', paramErr, untouched}),
                         RowName());

struct StatusRow
{
    const char *name;
    std::optional<QByteArray> current;
    std::optional<QByteArray> given;
    bool hasOut;
    int status;
};

class KeySearchStatus : public testing::TestWithParam<StatusRow>
{};

TEST_P(KeySearchStatus, SaysWhatIsMissing)
{
    const StatusRow &row = GetParam();
    FakeKeyboardLayouts keyboard;
    keyboard.useNoLayout();
    if (row.current)
        keyboard.useLayoutData(u"xkb:current"_s, *row.current);
    std::optional<ports::InputSource> given;
    if (row.given)
        given = ports::InputSource{u"xkb:given"_s, *row.given};
    quint16 key = untouched;
    EXPECT_EQ(KeyCodeForCharacter(keyboard.port(), given, u'm', row.hasOut ? &key : nullptr),
              row.status);
}

const QByteArray good = unicodeKeyLayoutData(layout());
const QByteArray empty = unicodeKeyLayoutData({});

/// A layout that claims to have no keyboard type.
QByteArray withoutKeyboards()
{
    QByteArray bytes = good;
    qToLittleEndian<quint32>(0, bytes.data() + 8);
    return bytes;
}

/// As many keyboard types, tables and keys as numbers can say, all in the same few bytes.
QByteArray crowd()
{
    QByteArray bytes(1 << 20, '\1');
    const auto put = [&](qsizetype position, quint32 number) {
        qToLittleEndian(number, bytes.data() + position);
    };
    put(0, 0x01001002);
    put(8, 0xFFFFFFFF);
    for (qsizetype type = 12; type + 28 < bytes.size() / 2; type += 28)
        put(type + 12, static_cast<quint32>(bytes.size() / 2));
    put(bytes.size() / 2, 0xFFFF4001);
    put(bytes.size() / 2 + 4, 0xFFFFFFFF);
    for (qsizetype table = bytes.size() / 2 + 8; table + 4 < bytes.size(); table += 4)
        put(table, 64);
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(
    Sources, KeySearchStatus,
    testing::Values(StatusRow{"Current", good, {}, true, 0}, StatusRow{"Given", {}, good, true, 0},
                    StatusRow{"GivenBeforeCurrent", empty, good, true, 0},
                    StatusRow{"NoSource", {}, {}, true, fnfErr},
                    StatusRow{"NoSourceBeforeNoOut", {}, {}, false, fnfErr},
                    StatusRow{"NoOut", good, {}, false, paramErr},
                    StatusRow{"NoOutBeforeNoData", QByteArray(), {}, false, paramErr},
                    StatusRow{"NoData", QByteArray(), {}, true, missingLayoutDataErr},
                    StatusRow{"GivenWithoutData", good, QByteArray(), true, missingLayoutDataErr},
                    StatusRow{"NoKeyboardType", withoutKeyboards(), {}, true, paramErr},
                    StatusRow{"NoTables", empty, {}, true, paramErr},
                    StatusRow{"NoLayoutAtAll", QByteArray("some text"), {}, true, paramErr},
                    StatusRow{"TruncatedTables", good.first(400), {}, true, paramErr},
                    StatusRow{"EndsInAHugeLayout", crowd(), {}, true, paramErr}),
    RowName());

} // namespace
} // namespace tarnwell::shortcuts
