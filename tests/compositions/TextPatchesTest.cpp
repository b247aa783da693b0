#include "CompositionBuilder.h"

#include "compositions/model/Image.h"
#include "compositions/model/Structure.h"

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Dictionary;

struct Row
{
    const char *name;
    QString className;
    Dictionary inputs;
    QString output;
    QString result;
    Dictionary settings = {};
    QString identifier = {};
};

void PrintTo(const Row &row, std::ostream *stream)
{
    *stream << row.name;
}

class TextPatch : public testing::TestWithParam<Row>
{};

TEST_P(TextPatch, GivesTheText)
{
    const Row &row = GetParam();
    SinglePatch patch(row.className, row.inputs, {row.output}, row.settings, row.identifier);
    EXPECT_EQ(patch.at(0.0).toString(), row.result);
}

Dictionary truncate(int most, int direction, int mode = 0)
{
    return {{u"inputString"_s, u"one two three"_s},
            {u"inputMax"_s, most},
            {u"inputMode"_s, mode},
            {u"inputDirection"_s, direction},
            {u"inputToken"_s, u"…"_s}};
}

Row number(const char *name, double value, const QString &pattern, const QString &result)
{
    return {name,   u"QCNumberFormatter"_s,  {{u"inputNumber"_s, value}}, u"outputString"_s,
            result, {{u"format"_s, pattern}}};
}

Row date(const char *name, double time, const Dictionary &settings, const QString &result)
{
    return {name,    u"QCDateFormatter"_s, {{u"inputTime"_s, time}}, u"outputString"_s, result,
            settings};
}

const QString text = u"outputString"_s;

INSTANTIATE_TEST_SUITE_P(
    Table, TextPatch,
    testing::Values(
        Row{"printer",
            u"QCStringFormat"_s,
            {{u"argument_1"_s, u"a"_s}, {u"argument_2"_s, 2.5}},
            text,
            u"<a|2.5> 100%"_s,
            {{u"format"_s, u"<%@|%@> 100%%"_s}},
            u"printer"_s},
        Row{"printerWithoutPlaces",
            u"QCStringFormat"_s,
            {},
            text,
            u"plain"_s,
            {{u"format"_s, u"plain"_s}},
            u"printer"_s},
        Row{"scannerFirst",
            u"QCStringFormat"_s,
            {{u"inputString"_s, u"x=12, y=7"_s}},
            u"argument_1"_s,
            u"12"_s,
            {{u"format"_s, u"x=%@, y=%@"_s}},
            u"scanner"_s},
        Row{"scannerLast",
            u"QCStringFormat"_s,
            {{u"inputString"_s, u"x=12, y=7"_s}},
            u"argument_2"_s,
            u"7"_s,
            {{u"format"_s, u"x=%@, y=%@"_s}},
            u"scanner"_s},
        Row{"scannerMismatch",
            u"QCStringFormat"_s,
            {{u"inputString"_s, u"z=12"_s}},
            u"argument_1"_s,
            u""_s,
            {{u"format"_s, u"x=%@"_s}},
            u"scanner"_s},
        Row{"truncateEnd", u"QCStringTruncate"_s, truncate(3, 0), text, u"one…"_s},
        Row{"truncateStart", u"QCStringTruncate"_s, truncate(5, 1), text, u"…three"_s},
        Row{"truncateWords", u"QCStringTruncate"_s, truncate(2, 0, 1), text, u"one two…"_s},
        Row{"truncateNothing", u"QCStringTruncate"_s, truncate(99, 0), text, u"one two three"_s},
        Row{"range",
            u"QCStringRange"_s,
            {{u"inputString"_s, u"abcdef"_s}, {u"inputIndex"_s, 2}, {u"inputLength"_s, 3}},
            text,
            u"cde"_s},
        Row{"rangeBeyond",
            u"QCStringRange"_s,
            {{u"inputString"_s, u"abc"_s}, {u"inputIndex"_s, 9}, {u"inputLength"_s, 3}},
            text,
            u""_s},
        Row{"length",
            u"QCStringLength"_s,
            {{u"inputString"_s, u"äöü"_s}},
            u"outputLength"_s,
            u"3"_s},
        Row{"compare",
            u"QCStringCompare"_s,
            {{u"inputString1"_s, u"a"_s}, {u"inputString2"_s, u"a"_s}},
            u"outputResult"_s,
            u"1"_s},
        Row{"upper",
            u"QCStringCase"_s,
            {{u"inputString"_s, u"straße one"_s}, {u"inputCase"_s, 0}},
            text,
            u"STRASSE ONE"_s},
        Row{"words",
            u"QCStringCase"_s,
            {{u"inputString"_s, u"oNE two"_s}, {u"inputCase"_s, 2}},
            text,
            u"One Two"_s},
        number("decimals", 3.14159, u"0.00"_s, u"3.14"_s),
        number("optionalDecimals", 2.5, u"#,##0.###"_s, u"2.5"_s),
        number("groups", 1234567.0, u"#,##0"_s, u"1,234,567"_s),
        number("padding", 7.0, u"000"_s, u"007"_s),
        number("percent", 0.256, u"0.0 %"_s, u"25.6 %"_s),
        number("negative", -1234.5, u"#,##0.00 EUR"_s, u"-1,234.50 EUR"_s),
        number("negativeZero", -0.001, u"0.00"_s, u"0.00"_s),
        number("noPlaceholder", 5.0, u"x"_s, u"x5"_s),
        date("iso", 0.0, {{u"format"_s, u"yyyy-MM-dd'T'HH:mm:ss"_s}}, u"2001-01-01T00:00:00"_s),
        date("fractions", 3600.256, {{u"format"_s, u"h:mm:ss.SS a"_s}}, u"1:00:00.25 AM"_s),
        date("names", 86400.0 * 40, {{u"format"_s, u"EEEE, d MMMM yy"_s}},
             u"Saturday, 10 February 01"_s),
        date("zone", 0.0, {{u"format"_s, u"HH:mm Z"_s}, {u"timeZone"_s, u"Asia/Tokyo"_s}},
             u"09:00 +0900"_s),
        date("quotes", 0.0, {{u"format"_s, u"h 'o''clock'"_s}}, u"12 oclock"_s),
        date("farAway", 1e300, {{u"format"_s, u"yyyy"_s}}, u"9923"_s)),
    [](const auto &row) { return row.param.name; });

TEST(StringComponentsPatch, Splits)
{
    SinglePatch patch(u"QCStringComponents"_s,
                      {{u"inputString"_s, u"a,b,,c"_s}, {u"inputSeparator"_s, u","_s}},
                      {u"outputComponents"_s});
    EXPECT_EQ(patch.at(0).toStructure()->count(), 4);
    EXPECT_EQ(patch.at(0).toStructure()->member(3).toString(), u"c"_s);
}

Dictionary textInputs(const QString &string, double glyphSize, double width = 0.0)
{
    return {{u"inputString"_s, string},
            {u"inputFontName"_s, u"DejaVuSans-Bold"_s},
            {u"inputGlyphSize"_s, glyphSize},
            {u"inputWidth"_s, width}};
}

TEST(TextImagePatch, MeasuresInUnitsOrPixels)
{
    // The destination is 640 pixels, so 0.1 units are 32 pixels.
    const QStringList outputs{u"outputImage"_s, u"outputWidth"_s, u"outputHeight"_s};
    SinglePatch units(u"QCTextImage"_s, textInputs(u"Menu"_s, 0.1), outputs);
    SinglePatch pixels(u"QCTextImage"_s, textInputs(u"Menu"_s, 32.0), outputs,
                       {{u"manualLayout"_s, true}});
    const ImageRef image = units.at(0).toImage();
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixelSize(), pixels.at(0).toImage()->pixelSize());
    EXPECT_GE(image->pixelSize().height(), 32);
    EXPECT_LE(image->pixelSize().height(), 64);
    EXPECT_DOUBLE_EQ(units.at(0, u"outputWidth"_s).toNumber(), image->pixelSize().width() / 320.0);
    EXPECT_EQ(units.at(1).toImage(), image) << "nothing changed, nothing is painted";
}

TEST(TextImagePatch, WrapsInAWidth)
{
    SinglePatch patch(u"QCTextImage"_s, textInputs(u"one two three four"_s, 20.0, 100.0),
                      {u"outputImage"_s, u"outputLineCount"_s}, {{u"manualLayout"_s, 1}});
    EXPECT_EQ(patch.at(0).toImage()->pixelSize().width(), 100);
    EXPECT_GT(patch.at(0, u"outputLineCount"_s).toNumber(), 1.0);
}

TEST(TextImagePatch, PaintsWhiteOnNothing)
{
    SinglePatch patch(u"QCTextImage"_s, textInputs(u"I"_s, 60.0), {u"outputImage"_s},
                      {{u"manualLayout"_s, true}});
    const QImage bitmap = patch.at(0).toImage()->bitmap();
    EXPECT_EQ(bitmap.pixelColor(0, 0).alpha(), 0);
    int white = 0;
    for (int y = 0; y < bitmap.height(); ++y) {
        for (int x = 0; x < bitmap.width(); ++x) {
            white += bitmap.pixelColor(x, y) == QColor(Qt::white) ? 1 : 0;
        }
    }
    EXPECT_GT(white, 50);
}

/// The rows of a list are painted by one patch, in every frame.
TEST(TextImagePatch, KeepsItsLastPictures)
{
    SinglePatch patch(u"QCTextImage"_s, textInputs(u"Undo"_s, 20.0), {u"outputImage"_s},
                      {{u"manualLayout"_s, true}});
    const ImageRef first = patch.at(0).toImage();
    const ImageRef second = patch.set(u"inputString"_s, u"Redo"_s).at(1).toImage();
    EXPECT_NE(first, second);
    EXPECT_EQ(patch.set(u"inputString"_s, u"Undo"_s).at(2).toImage(), first);
    // A text that never repeats does not fill the memory.
    std::vector<std::weak_ptr<const Image>> pictures;
    for (int i = 0; i < 300; ++i) {
        pictures.push_back(patch.set(u"inputString"_s, QString::number(i)).at(3 + i).toImage());
    }
    EXPECT_TRUE(pictures.front().expired());
    EXPECT_FALSE(pictures.back().expired());
}

TEST(TextImagePatch, RefusesTheAbsurd)
{
    for (const double size : {0.0, -5.0, 1e300}) {
        SinglePatch patch(u"QCTextImage"_s, textInputs(QString(100'000, u'x'), size),
                          {u"outputImage"_s}, {{u"manualLayout"_s, true}});
        const ImageRef image = patch.at(0).toImage();
        EXPECT_TRUE(!image || image->pixelSize().width() <= 8192) << size;
    }
}

} // namespace
} // namespace tarnwell::compositions::test
