#include "foundation/plist/PropertyList.h"
#include "tests/support/RowName.h"

#include <gtest/gtest.h>

#include <limits>

namespace tarnwell::plist {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct ValueRow
{
    const char *name;
    Value value;
};

class RoundTrip : public testing::TestWithParam<ValueRow>
{};

TEST_P(RoundTrip, KeepsValueAndTypeInBothFormats)
{
    const Value &value = GetParam().value;
    const QByteArray binary = write(value, Format::Binary);
    for (const QByteArray &bytes : {binary, write(value, Format::Xml)}) {
        ReadError error;
        const Value reread = read(bytes, &error);
        EXPECT_EQ(reread, value) << error.message.toStdString();
        // Equality does not tell 1 from 1.0: the bytes do.
        EXPECT_EQ(write(reread, Format::Binary), binary);
    }
}

Value nested(int levels)
{
    Value value = true;
    for (int i = 0; i < levels; ++i)
        value = i % 2 ? Value(Array{value}) : Value(Dictionary{{u"k"_s, value}});
    return value;
}

Value manyStrings(int count)
{
    Array array;
    for (int i = 0; i < count; ++i)
        array.append(QString::number(i));
    return array;
}

const ValueRow roundTripRows[] = {
    {"Booleans", Array{true, false}},
    {"SmallIntegers", Array{0, 1, 127, 128, 255, 256, 65535, 65536}},
    {"LargeIntegers", Array{quint64(0xffffffff), quint64(0x100000000),
                            std::numeric_limits<qint64>::max(), quint64(1) << 63, ~quint64(0)}},
    {"NegativeIntegers", Array{-1, -128, -32769, std::numeric_limits<qint64>::min()}},
    {"Reals", Array{0.0, -0.0, 1.0, 0.1, 5e-324, 1.7976931348623157e308, infinity, -infinity, nan}},
    {"TwinsOfOtherTypes", Array{1, 1.0, true, u"1"_s, QByteArray("1"), Date{1.0}}},
    {"Strings", Array{u""_s, u"é"_s, u"\u007f"_s, u"😀"_s, u"<a>&amp;\"'"_s, u"]]>"_s}},
    {"WhiteSpace", Array{u" "_s, u"\r\n\t "_s, u"a\rb"_s, u"\u0085\u00a0"_s}},
    {"LengthsAroundTheMarker", Array{QString(14, u'x'), QString(15, u'x'), QString(15, u'é'),
                                     QString(256, u'x'), QString(65536, u'é')}},
    {"Data", Array{QByteArray(), QByteArray("\0\xff", 2), QByteArray(1000, 'd')}},
    {"Dates", Array{Date{0.0}, Date{-978307201.0}, Date{252423993599.0}}},
    {"Uids", Array{Uid{0}, Uid{256}, Uid{70000}, Uid{~quint64(0)}}},
    {"EmptyCollections", Dictionary{{u""_s, Array()}, {u"d"_s, Dictionary()}}},
    {"DeepestNesting", nested(maximumDepth)},
    {"TwoByteReferences", manyStrings(1000)},
    {"ThreeByteReferences", manyStrings(70'000)},
    {"Shared", Array{Array{1, 2}, Array{1, 2}}},
};

INSTANTIATE_TEST_SUITE_P(Table, RoundTrip, testing::ValuesIn(roundTripRows), RowName());

/// What only the binary format can hold.
class BinaryRoundTrip : public testing::TestWithParam<ValueRow>
{};

TEST_P(BinaryRoundTrip, KeepsWhatXmlCannot)
{
    const Value &value = GetParam().value;
    const Value reread = read(write(value, Format::Binary));
    EXPECT_EQ(reread, value);
    EXPECT_EQ(reread.isSinglePrecision(), value.isSinglePrecision());
}

const ValueRow binaryRows[] = {
    {"LoneSurrogates", Array{QString(QChar(0xd800)), QString(QChar(0xdc00)), u"a"_s}},
    {"ControlCharacters", u"\0\u0001\uffff"_s},
    {"FractionOfASecond", Date{0.123456789}},
    {"DatesWithoutACalendar", Array{Date{1e300}, Date{nan}, Date{-infinity}}},
    {"SinglePrecision", 0.1F},
    {"KeyOfAUid", Dictionary{{u"CF$UID"_s, 5}}},
};

INSTANTIATE_TEST_SUITE_P(Table, BinaryRoundTrip, testing::ValuesIn(binaryRows), RowName());

struct LossRow
{
    const char *name;
    Value value;
    Value inXml;
};

class XmlLoss : public testing::TestWithParam<LossRow>
{};

TEST_P(XmlLoss, IsReadableAndVisible)
{
    ReadError error;
    EXPECT_EQ(read(write(GetParam().value, Format::Xml), &error), GetParam().inXml)
        << error.message.toStdString();
}

const LossRow lossRows[] = {
    {"ControlCharacters", u"a\0b\u0008\ufffe"_s, u"a\ufffdb\ufffd\ufffd"_s},
    {"LoneSurrogates", QString(QChar(0xdc00)) + u"😀"_s + QChar(0xd83d), u"\ufffd😀\ufffd"_s},
    {"SurrogatesTheWrongWayRound", QString(QChar(0xdc00)) + QChar(0xd83d), u"\ufffd\ufffd"_s},
    {"Key", Dictionary{{u"\u0001"_s, 1}}, Dictionary{{u"\ufffd"_s, 1}}},
    {"FractionOfASecond", Date{-0.5}, Date{-1.0}},
    {"DateAfterTheCalendar", Date{1e300}, Date{252423993599.0}},
    {"DateThatIsNoNumber", Date{nan}, Date{0.0}},
    {"DictionaryLikeAUid", Dictionary{{u"CF$UID"_s, 5}}, Uid{5}},
};

INSTANTIATE_TEST_SUITE_P(Table, XmlLoss, testing::ValuesIn(lossRows), RowName());

struct ReadRow
{
    const char *name;
    QByteArray bytes;
    Value value;
};

class XmlReading : public testing::TestWithParam<ReadRow>
{};

TEST_P(XmlReading, TakesWhatOthersWrite)
{
    ReadError error;
    EXPECT_EQ(read(GetParam().bytes, &error), GetParam().value) << error.message.toStdString();
}

const ReadRow xmlRows[] = {
    {"Hexadecimal",
     "<plist><array><integer>0xFFFFFFFFFFFFFFFF</integer><integer>-0x10</integer></array></plist>",
     Array{~quint64(0), -16}},
    {"SignsAndSpace", "<plist><array><integer> +7\n</integer><real>\t-.5 </real></array></plist>",
     Array{7, -0.5}},
    {"OtherInfinities",
     "<plist><array><real>-Infinity</real><real>1e999</real><real>+inf</real></array></plist>",
     Array{-infinity, infinity, infinity}},
    {"TooSmall", "<real>-1e-999</real>", -0.0},
    {"NoRoot", "<string>x</string>", u"x"_s},
    {"CommentsAndSections",
     "<plist><!-- c --><string>a<!-- c -->b<![CDATA[<c>&]]>&#x1F600;</string><?pi?></plist>",
     u"ab<c>&😀"_s},
    {"EqualKeys", "<dict><key>a</key><true/><key>a</key><integer>1</integer></dict>",
     Dictionary{{u"a"_s, 1}}},
    {"FractionOfASecond", "<date>2001-01-01T00:00:01.25Z</date>", Date{1.25}},
    {"WrappedData", "<data>\n\tAAEC\n\tAw==\n</data>", QByteArray("\0\1\2\3", 4)},
    {"Utf16", QByteArray("\xff\xfe<\0s\0t\0r\0i\0n\0g\0>\0\xe9\0<\0/\0s\0t\0r\0i\0n\0g\0>\0", 38),
     u"é"_s},
};

INSTANTIATE_TEST_SUITE_P(Table, XmlReading, testing::ValuesIn(xmlRows), RowName());

TEST(PropertyListWriting, StoresEqualLeavesAndSharedContainersOnce)
{
    const Array shared{u"a long string that is stored once"_s};
    const QByteArray once = write(Array{shared}, Format::Binary);
    const QByteArray often = write(Array{shared, shared, shared}, Format::Binary);
    EXPECT_EQ(often.size(), once.size() + 2);

    // A copy made of other parts holds equal leaves in another container.
    const Array apart{u"a long string that is stored once"_s};
    EXPECT_EQ(write(Array{shared, apart}, Format::Binary).size(), once.size() + 1 + 2 + 1);
}

Value doubled(int levels)
{
    Value value = true;
    for (int i = 0; i < levels; ++i)
        value = Array{value, value};
    return value;
}

class RefusedWriting : public testing::TestWithParam<ValueRow>
{};

TEST_P(RefusedWriting, GivesNoBytes)
{
    EXPECT_EQ(write(GetParam().value, Format::Binary), QByteArray());
    EXPECT_EQ(write(GetParam().value, Format::Xml), QByteArray());
}

const ValueRow refusedRows[] = {
    {"Null", Value()},
    {"TooDeep", nested(maximumDepth + 1)},
    {"SpreadsOut", doubled(40)},
    {"SpreadsOutBeyondCounting", doubled(500)},
};

INSTANTIATE_TEST_SUITE_P(Table, RefusedWriting, testing::ValuesIn(refusedRows), RowName());

} // namespace
} // namespace tarnwell::plist
