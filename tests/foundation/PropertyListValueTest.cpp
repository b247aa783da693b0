#include "foundation/plist/Value.h"
#include "tests/support/RowName.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tarnwell::plist {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr qint64 largest = std::numeric_limits<qint64>::max();
constexpr qint64 smallest = std::numeric_limits<qint64>::min();
constexpr quint64 twoTo63 = quint64(1) << 63;

struct EqualityRow
{
    const char *name;
    Value a;
    Value b;
    bool areEqual;
};

class ValueEquality : public testing::TestWithParam<EqualityRow>
{};

TEST_P(ValueEquality, IsByValueAndTheSameBothWays)
{
    const auto &[name, a, b, areEqual] = GetParam();
    EXPECT_EQ(a == b, areEqual);
    EXPECT_EQ(b == a, areEqual);
    EXPECT_EQ(Value(Array{a}) == Value(Array{b}), areEqual);
    EXPECT_EQ((Dictionary{{u"k"_s, a}} == Dictionary{{u"k"_s, b}}), areEqual);
}

const EqualityRow equalityRows[] = {
    {"IntegerAndReal", 1, 1.0, true},
    {"SinglePrecision", 0.5, 0.5F, true},
    {"TrueAndOne", true, 1, false},
    {"FalseAndZero", false, 0.0, false},
    {"SignedAndUnsigned", qint64(5), quint64(5), true},
    {"MinusOneAndTheSameBits", -1, ~quint64(0), false},
    {"HugeAndItsReal", twoTo63, 0x1p63, true},
    {"SmallestAndItsReal", smallest, -0x1p63, true},
    {"LargestIsNotItsRoundedReal", largest, 0x1p63, false},
    {"LargeOddIsNotItsRoundedReal", (qint64(1) << 53) + 1, 0x1p53, false},
    {"NotANumber", nan, -nan, true},
    {"NotANumberAndZero", nan, 0, false},
    {"InfinityAndLargest", std::numeric_limits<double>::infinity(), ~quint64(0), false},
    {"NegativeZero", -0.0, 0, true},
    {"StringAndNumber", u"1"_s, 1, false},
    {"EmptyStringAndEmptyData", QString(), QByteArray(), false},
    {"EmptyArrayAndEmptyDictionary", Array(), Dictionary(), false},
    {"NullStringAndEmptyString", QString(), u""_s, true},
    {"DateAndReal", Date{5.0}, 5.0, false},
    {"UidAndInteger", Uid{5}, 5, false},
    {"PrefixOfArray", Array{1}, Array{1, 2}, false},
    {"OtherKeys", Dictionary{{u"a"_s, 1}}, Dictionary{{u"b"_s, 1}}, false},
    {"OrderOfMaking", Dictionary{{u"a"_s, 1}, {u"b"_s, 2}}, Dictionary{{u"b"_s, 2}, {u"a"_s, 1}},
     true},
};

INSTANTIATE_TEST_SUITE_P(Table, ValueEquality, testing::ValuesIn(equalityRows), RowName());

/// A list that holds a list twice, which holds a list twice, and so on.
Value doubled(int levels)
{
    Value value = u"leaf"_s;
    for (int i = 0; i < levels; ++i)
        value = Array{value, value};
    return value;
}

/// The same as a value, but sharing itself on every second level only, beginning with the given
/// one.
Value halfDoubled(int levels, int first)
{
    Value value = u"leaf"_s;
    for (int i = 0; i < levels; ++i)
        value =
            i % 2 == first ? Array{value, value} : Array{Array{value, value}, Array{value, value}};
    return value;
}

TEST(ValueSharing, KeepsComparingAndPrintingShort)
{
    EXPECT_EQ(doubled(200), doubled(200));
    EXPECT_NE(doubled(200), doubled(199));
    EXPECT_EQ(halfDoubled(200, 0), halfDoubled(200, 1));
    EXPECT_LT(description(doubled(200)).size(), 20'000);
    EXPECT_TRUE(description(doubled(200)).endsWith(u'…'));
}

struct NumberRow
{
    const char *name;
    Value value;
    qint64 integer;
    quint64 unsignedInteger;
    double real;
};

class ValueNumbers : public testing::TestWithParam<NumberRow>
{};

TEST_P(ValueNumbers, AreHeldWithinTheRangeAskedFor)
{
    const NumberRow &row = GetParam();
    EXPECT_EQ(row.value.toInteger(), row.integer);
    EXPECT_EQ(row.value.toUnsignedInteger(), row.unsignedInteger);
    EXPECT_EQ(row.value.toDouble(), row.real);
}

const NumberRow numberRows[] = {
    {"Negative", -3, -3, 0, -3.0},
    {"Huge", ~quint64(0), largest, ~quint64(0), 0x1p64},
    {"Truncated", -2.9, -2, 0, -2.9},
    {"RealBeyond", 1e30, largest, ~quint64(0), 1e30},
    {"RealFarBelow", -1e30, smallest, 0, -1e30},
    {"RealBetweenTheRanges", 0x1p63, largest, twoTo63, 0x1p63},
    {"NoNumberAtAll", true, 0, 0, 0.0},
};

INSTANTIATE_TEST_SUITE_P(Table, ValueNumbers, testing::ValuesIn(numberRows), RowName());

TEST(Array, PartsFromItsCopiesWhenChanged)
{
    const Array original{1, u"two"_s, 3};
    Array changed = original;
    changed.append(4);
    changed.replace(0, u"one"_s);
    changed.removeAt(2);
    changed.insert(1, u"between"_s);
    EXPECT_EQ(changed, (Array{u"one"_s, u"between"_s, u"two"_s, 4}));
    EXPECT_EQ(original, (Array{1, u"two"_s, 3}));
}

TEST(Array, TakesItsOwnElements)
{
    Array array{u"a"_s};
    for (int i = 0; i < 100; ++i) {
        array.append(array[0]);
        array.insert(0, array[array.size() - 1]);
        array.replace(1, array[0]);
    }
    EXPECT_EQ(array.size(), 201);
    for (const Value &value : array)
        ASSERT_EQ(value, u"a"_s);
}

TEST(Array, HoldsNoNull)
{
    Array array{1, Value(), 2};
    array.append(Value());
    array.insert(0, Value());
    array.replace(0, Value());
    EXPECT_EQ(array, Array{2});
}

TEST(Dictionary, OrdersKeysByCodeUnit)
{
    // U+FF5E stands after the surrogates of U+1F600, though its code point is smaller.
    const QStringList sorted{u""_s, u"B"_s, u"a"_s, u"aa"_s, u"é"_s, u"😀"_s, u"～"_s};
    Dictionary forwards;
    Dictionary backwards;
    std::vector<std::pair<QString, Value>> entries;
    for (qsizetype i = 0; i < sorted.size(); ++i) {
        forwards.insert(sorted[i], 1);
        backwards.insert(sorted[sorted.size() - 1 - i], 1);
        entries.emplace_back(sorted[(i * 3) % sorted.size()], 1);
    }
    EXPECT_EQ(forwards.keys(), sorted);
    EXPECT_EQ(backwards.keys(), sorted);
    EXPECT_EQ(Dictionary::fromEntries(entries).keys(), sorted);
    for (const QString &key : sorted)
        EXPECT_TRUE(forwards.contains(key));
}

TEST(Dictionary, LetsTheLastOfEqualKeysCount)
{
    const Dictionary dictionary{{u"a"_s, 1}, {u"b"_s, 2}, {u"a"_s, 3}, {u"b"_s, Value()}};
    EXPECT_EQ(dictionary, (Dictionary{{u"a"_s, 3}}));
}

TEST(Dictionary, PartsFromItsCopiesWhenChanged)
{
    const Dictionary original{{u"a"_s, 1}, {u"b"_s, 2}, {u"c"_s, 3}};
    Dictionary changed = original;
    changed.insert(u"b"_s, u"new"_s);
    Dictionary more = changed;
    more.insert(u"aa"_s, 0);
    EXPECT_TRUE(more.remove("c"_L1));
    EXPECT_FALSE(more.remove(u"c"));
    more.insert(u"a"_s, Value());
    EXPECT_EQ(more, (Dictionary{{u"aa"_s, 0}, {u"b"_s, u"new"_s}}));
    EXPECT_EQ(changed, (Dictionary{{u"a"_s, 1}, {u"b"_s, u"new"_s}, {u"c"_s, 3}}));
    EXPECT_EQ(original.value("b"_L1), 2);
}

TEST(Dictionary, TakesItsOwnKeysAndValues)
{
    Dictionary dictionary{{u"a"_s, u"v"_s}};
    for (int i = 0; i < 100; ++i)
        dictionary.insert(u"k%1"_s.arg(i), dictionary.value(u"a"));
    const auto first = dictionary.begin();
    dictionary.insert(first->key, first->value);
    EXPECT_EQ(dictionary.size(), 101);
    EXPECT_EQ(dictionary.value("k99"_L1), u"v"_s);
}

TEST(Dictionary, AnswersWithNullForWhatItHasNot)
{
    EXPECT_TRUE(Dictionary().value(u"a").isNull());
    EXPECT_TRUE((Dictionary{{u"b"_s, 1}}).value("a"_L1).isNull());
    EXPECT_TRUE(Value(1).toDictionary().value(u"a").toArray().isEmpty());
}

struct DescriptionRow
{
    const char *name;
    Value value;
    QString expected;
};

class ValueDescription : public testing::TestWithParam<DescriptionRow>
{};

TEST_P(ValueDescription, IsOneLine)
{
    EXPECT_EQ(description(GetParam().value), GetParam().expected);
}

const DescriptionRow descriptionRows[] = {
    {"Null", Value(), u"(null)"_s},
    {"StringAtTheTop", u"Save “As”…\n\u0007\u2028"_s, u"Save “As”…\\n\\u0007\\u2028"_s},
    {"Collections",
     Dictionary{{u"b"_s, Array{1, 2.5, true, u"x"_s}}, {u"a"_s, Dictionary()}, {u"c"_s, Array()}},
     u"{a = {}; b = (1, 2.5, true, \"x\"); c = ()}"_s},
    {"Others", Array{QByteArray("\x01\xff"), Date{-1.0}, Uid{7}, ~quint64(0)},
     u"(<01ff>, 2000-12-31T23:59:59Z, uid 7, 18446744073709551615)"_s},
    {"FarDate", Date{1e300}, u"date 1e+300"_s},
};

INSTANTIATE_TEST_SUITE_P(Table, ValueDescription, testing::ValuesIn(descriptionRows), RowName());

} // namespace
} // namespace tarnwell::plist
