#include "foundation/plist/PropertyList.h"
#include "tests/support/RowName.h"

#include <QtEndian>

#include <gtest/gtest.h>

namespace tarnwell::plist {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;

QByteArray bytesOf(quint64 number)
{
    QByteArray bytes(8, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

struct Trailer
{
    int offsetWidth = 1;
    int referenceWidth = 1;
    quint64 count = 0;
    quint64 top = 0;
    quint64 tableOffset = 0;

    QByteArray bytes() const
    {
        return QByteArray(6, '\0') + char(offsetWidth) + char(referenceWidth) + bytesOf(count) +
               bytesOf(top) + bytesOf(tableOffset);
    }
};

/// A binary property list of objects that are encoded already, the first of them on top.
QByteArray binary(const QList<QByteArray> &objects)
{
    QByteArray out = "bplist00";
    QByteArray table;
    for (const QByteArray &object : objects) {
        table += char(out.size());
        out += object;
    }
    const Trailer trailer{.count = quint64(objects.size()), .tableOffset = quint64(out.size())};
    return out + table + trailer.bytes();
}

/// One true value, under a trailer that may lie.
QByteArray withTrailer(const Trailer &trailer)
{
    return "bplist00\x09\x08"_ba + trailer.bytes();
}

/// Lists that hold the next one twice.
QByteArray spreading()
{
    QList<QByteArray> objects;
    for (char next = 1; next <= 40; ++next)
        objects += QByteArray("\xa2") + next + next;
    return binary(objects + QList{"\x09"_ba});
}

/// Many lists that share one long stretch of the file.
QByteArray overlapping()
{
    const QByteArray list = "\xaf\x10\x40"_ba + QByteArray(64, '\x02');
    const QByteArray table = "\x08"_ba + QByteArray(64, '\x0a');
    const Trailer trailer{.count = 65, .tableOffset = 8 + 2 + quint64(list.size())};
    return "bplist00\xa1\x01"_ba + list + table + trailer.bytes();
}

QByteArray deepBinary(int levels)
{
    // With references of two bytes, each list holding the object behind it.
    QByteArray out = "bplist00";
    QByteArray table;
    for (int i = 0; i < levels; ++i) {
        table += bytesOf(quint64(out.size())).last(2);
        out += '\xa1' + bytesOf(quint64(i) + 1).last(2);
    }
    table += bytesOf(quint64(out.size())).last(2);
    out += '\x09';
    const Trailer trailer{.offsetWidth = 2,
                          .referenceWidth = 2,
                          .count = quint64(levels) + 1,
                          .tableOffset = quint64(out.size())};
    return out + table + trailer.bytes();
}

/// Is short where it is met first, and deep enough only together with what is above it elsewhere.
QByteArray deepByTurns()
{
    // [chain of 300 -> true, chain of 300 -> first chain], the first chain read first.
    QList<QByteArray> lists;
    const auto list = [](int reference) { return '\xa1' + bytesOf(quint64(reference)).last(2); };
    lists += "\xa2"_ba + bytesOf(1).last(2) + bytesOf(301).last(2);
    for (int i = 1; i < 300; ++i)
        lists += list(i + 1);
    lists += list(601);
    for (int i = 301; i < 600; ++i)
        lists += list(i + 1);
    lists += list(1);
    lists += "\x09"_ba;
    QByteArray out = "bplist00";
    QByteArray table;
    for (const QByteArray &object : std::as_const(lists)) {
        table += bytesOf(quint64(out.size())).last(2);
        out += object;
    }
    const Trailer trailer{.offsetWidth = 2,
                          .referenceWidth = 2,
                          .count = quint64(lists.size()),
                          .tableOffset = quint64(out.size())};
    return out + table + trailer.bytes();
}

QByteArray deepXml(int levels)
{
    return QByteArray("<array>").repeated(levels) + QByteArray("</array>").repeated(levels);
}

struct BadRow
{
    const char *name;
    QByteArray bytes;
    QString message;
};

class BadPropertyList : public testing::TestWithParam<BadRow>
{};

TEST_P(BadPropertyList, IsRefusedInWords)
{
    ReadError error;
    EXPECT_TRUE(read(GetParam().bytes, &error).isNull());
    EXPECT_EQ(error.message.toStdString(), GetParam().message.toStdString());
}

const BadRow binaryRows[] = {
    {"Signature", "bplist", u"The version of this binary property list is not 00"_s},
    {"Version", withTrailer({.count = 1, .tableOffset = 9}).replace("00", "16"),
     u"The version of this binary property list is not 00"_s},
    {"NoTrailer", "bplist00\x09", u"The file ends before its trailer"_s},
    {"OffsetWidth", withTrailer({.offsetWidth = 9, .count = 1, .tableOffset = 9}),
     u"Trailer: offsets of 9 bytes"_s},
    {"ReferenceWidth", withTrailer({.referenceWidth = 0, .count = 1, .tableOffset = 9}),
     u"Trailer: references of 0 bytes"_s},
    {"TableBehindTheFile", withTrailer({.count = 1, .tableOffset = ~quint64(0) - 8}),
     u"Trailer: the offset table at 0xfffffffffffffff7 lies outside of the file"_s},
    {"CountThatWrapsAround",
     withTrailer({.offsetWidth = 8, .count = quint64(1) << 61, .tableOffset = 9}),
     u"Trailer: no room for 2305843009213693952 objects"_s},
    {"NoObjects", withTrailer({.tableOffset = 9}), u"Trailer: the top object is 0 of 0"_s},
    {"TopObject", withTrailer({.count = 1, .top = 1, .tableOffset = 9}),
     u"Trailer: the top object is 1 of 1"_s},
    {"OffsetIntoTheTable", withTrailer({.count = 1, .tableOffset = 9}).replace(9, 1, "\x09"),
     u"Object 0 at offset 0x9: lies outside of the objects"_s},
    {"Null", binary({QByteArray(1, '\0')}), u"Object 0 at offset 0x8: unknown marker 0x00"_s},
    {"Marker", binary({"\xa1\x01", "\xf0"}), u"Object 1 at offset 0xa: unknown marker 0xf0"_s},
    {"WideInteger", binary({"\x15"}), u"Object 0 at offset 0x8: an integer of 2^5 bytes"_s},
    {"IntegerBeyond64Bits", binary({"\x14"_ba + QByteArray(16, '\x01')}),
     u"Object 0 at offset 0x8: an integer beyond 64 bits"_s},
    {"ShortInteger", binary({"\x13\x01"}), u"Object 0 at offset 0x8: is longer than the file"_s},
    {"WideUid", binary({"\x8f"_ba + QByteArray(16, '\x01')}),
     u"Object 0 at offset 0x8: a UID of 16 bytes"_s},
    {"LongString", binary({"\x55only"}), u"Object 0 at offset 0x8: is longer than the file"_s},
    {"CountThatWrapsAroundTwice", binary({"\x6f\x13\x80"_ba + QByteArray(7, '\0')}),
     u"Object 0 at offset 0x8: is longer than the file"_s},
    {"CountThatIsNone", binary({"\x4f\x51x"}),
     u"Object 0 at offset 0x8: its count is no integer"_s},
    {"NotAscii", binary({"\x51\xe9"}),
     u"Object 0 at offset 0x8: an ASCII string with other bytes"_s},
    {"Reference", binary({"\xa1\x07"}), u"Object 0 at offset 0x8: refers to object 7 of 1"_s},
    {"NumberAsKey", binary({"\xd1\x01\x01", "\x10\x01"}),
     u"Object 0 at offset 0x8: has object 1, which is no string, as a key"_s},
    {"ItselfAsElement", binary({"\xa1\x01", "\xa1\x00"_ba + '\0'}),
     u"Object 0 at offset 0x8: contains itself"_s},
    {"ItselfAsKey", binary({"\xd1\x00\x01"_ba, "\x09"}),
     u"Object 0 at offset 0x8: contains itself"_s},
    {"Overlapping", overlapping(), u"Object 2 at offset 0xa: overlaps other objects"_s},
    {"SpreadingOut", spreading(),
     u"Object 16 at offset 0x38: spreads out to more than 16777216 values"_s},
    {"Deep", deepBinary(513), u"Object 512 at offset 0x608: nested deeper than 512 levels"_s},
    {"VeryDeep", deepBinary(20'000),
     u"Object 512 at offset 0x608: nested deeper than 512 levels"_s},
    {"DeepByTurns", deepByTurns(), u"Object 388 at offset 0x496: nested deeper than 512 levels"_s},
};

INSTANTIATE_TEST_SUITE_P(Binary, BadPropertyList, testing::ValuesIn(binaryRows), RowName());

const BadRow xmlRows[] = {
    {"Empty", "", u"The file is empty"_s},
    {"Blank", " \n", u"The file is empty"_s},
    {"NoValue", "<plist>\n</plist>", u"Line 2: there is no value"_s},
    {"UnknownElement", "<plist>\n<array>\n<null/></array></plist>",
     u"Line 3: unknown element 'null'"_s},
    {"SecondValue", "<plist><true/>\n<true/></plist>",
     u"Line 2: element 'true' after the end of the value"_s},
    {"KeyInArray", "<array><key>a</key></array>", u"Line 1: a key outside of a dictionary"_s},
    {"ValueWithoutKey", "<dict><true/></dict>", u"Line 1: element 'true' where a key should be"_s},
    {"KeyWithoutValue", "<dict><key>a</key></dict>", u"Line 1: no value for the key 'a'"_s},
    {"TwoKeys", "<dict><key>a</key><key>b</key></dict>", u"Line 1: no value for the key 'a'"_s},
    {"TextBetween", "<array>x</array>", u"Line 1: text outside of a value"_s},
    {"TextInBoolean", "<true>yes</true>", u"Line 1: text within a boolean"_s},
    {"Integer", "<integer>1.5</integer>", u"Line 1: '1.5' is no integer of 64 bits"_s},
    {"EmptyInteger", "<integer/>", u"Line 1: '' is no integer of 64 bits"_s},
    {"TwoSigns", "<integer>--1</integer>", u"Line 1: '--1' is no integer of 64 bits"_s},
    {"OnlyAPrefix", "<integer>0x</integer>", u"Line 1: '0x' is no integer of 64 bits"_s},
    {"IntegerAbove", "<integer>18446744073709551616</integer>",
     u"Line 1: '18446744073709551616' is no integer of 64 bits"_s},
    {"IntegerBelow", "<integer>-9223372036854775809</integer>",
     u"Line 1: '-9223372036854775809' is no integer of 64 bits"_s},
    {"Real", "<real>1,5</real>", u"Line 1: '1,5' is no number"_s},
    {"RealWithTwoSigns", "<real>+-1</real>", u"Line 1: '+-1' is no number"_s},
    {"LongInteger", "<integer>" + QByteArray(100, '1') + "</integer>",
     u"Line 1: '"_s + QString(60, u'1') + u"…' is no integer of 64 bits"_s},
    {"Date", "<date>2001-02-29T00:00:00Z</date>", u"Line 1: '2001-02-29T00:00:00Z' is no date"_s},
    {"DateWithoutZone", "<date>2001-01-01T00:00:00</date>",
     u"Line 1: '2001-01-01T00:00:00' is no date"_s},
    {"DateWithRest", "<date>2001-01-01T00:00:00Z1</date>",
     u"Line 1: '2001-01-01T00:00:00Z1' is no date"_s},
    {"Data", "<data>AA*=</data>", u"Line 1: the data is not in Base64"_s},
    {"Entities",
     "<!DOCTYPE plist [<!ENTITY a 'aaaa'>\n<!ENTITY b "
     "'&a;&a;'>]><plist><string>&b;</string></plist>",
     u"Line 2: the document type has declarations of its own"_s},
    {"Attributes", "<plist" + QByteArray(" a='1'").repeated(501) + "/>",
     u"An element has more than 500 attributes"_s},
    {"Deep", deepXml(513), u"Line 1: nested deeper than 512 levels"_s},
};

INSTANTIATE_TEST_SUITE_P(Xml, BadPropertyList, testing::ValuesIn(xmlRows), RowName());

/// The words are those of the XML parser, and may change with it.
TEST(BadPropertyListText, IsReportedWithItsLine)
{
    for (const QByteArrayView bytes :
         {"<plist>\n<array></plist>", "<plist>\n<string>&other;</string></plist>",
          "<plist>\n<string><b/></string></plist>", "<plist>\n<true/>", "\nnothing like it"}) {
        ReadError error;
        EXPECT_TRUE(read(bytes, &error).isNull()) << bytes.data();
        EXPECT_TRUE(error.message.startsWith("Line 2: "_L1)) << error.message.toStdString();
    }
}

/// Every shortened form and every wrong byte of a good file: nothing but an answer or an error.
TEST(DamagedPropertyList, AlwaysEndsInAValueOrAnError)
{
    const Value value = Dictionary{{u"list"_s, Array{1, -1, 2.5, u"é"_s, QByteArray("data")}},
                                   {u"more"_s, Dictionary{{u"date"_s, Date{1.0}}}}};
    const auto check = [](const QByteArray &bytes) {
        ReadError error;
        const Value damaged = read(bytes, &error);
        EXPECT_NE(damaged.isNull(), error.message.isEmpty()) << bytes.toHex().constData();
    };
    for (const QByteArray &good : {write(value, Format::Binary), write(value, Format::Xml)}) {
        for (qsizetype i = 0; i < good.size(); ++i) {
            check(good.first(i));
            for (const char wrong : {'\0', '\x01', '\x7f', '\xff', '<', char(good[i] ^ 1)})
                check(QByteArray(good).replace(i, 1, QByteArray(1, wrong)));
        }
    }
}

} // namespace
} // namespace tarnwell::plist
