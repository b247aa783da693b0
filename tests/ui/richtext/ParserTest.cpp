#include "ui/RichText.h"

#include <gtest/gtest.h>

using namespace tarnwell::ui;

namespace {

/// A text in a notation that is easy to compare: each paragraph on a line, its style in front in
/// angle brackets, and where the style of characters changes, the new one in brackets.
QString described(const RichTextStyle &style)
{
    const RichTextStyle normal;
    QStringList marks;
    if (style.bold)
        marks << QStringLiteral("b");
    if (style.italic)
        marks << QStringLiteral("i");
    if (style.underlined)
        marks << QStringLiteral("u");
    if (style.monospaced)
        marks << QStringLiteral("mono");
    if (style.pointSize != normal.pointSize)
        marks << QString::number(style.pointSize);
    if (style.foreground)
        marks << QStringLiteral("#%1").arg(*style.foreground & 0xFFFFFF, 6, 16, QChar(u'0'));
    if (!style.link.isEmpty())
        marks << style.link;
    return u'[' + marks.join(u',') + u']';
}

QString described(const RichTextParagraphStyle &style)
{
    QStringList marks;
    const auto length = [&marks](const char *name, double value, double normal = 0) {
        if (value != normal)
            marks << QStringLiteral("%1%2").arg(QLatin1String(name)).arg(value);
    };
    if (style.alignment != Qt::AlignLeading)
        marks << QStringLiteral("align%1").arg(style.alignment.toInt());
    length("li", style.leftIndent);
    length("ri", style.rightIndent);
    length("fi", style.firstLineIndent);
    length("sb", style.spaceBefore);
    length("sa", style.spaceAfter);
    length("x", style.lineHeight, 1);
    return marks.isEmpty() ? QString() : u'<' + marks.join(u',') + u'>';
}

QString described(const RichText &text)
{
    QStringList lines;
    for (const RichTextParagraph &paragraph : text.paragraphs) {
        QString line = described(paragraph.style);
        RichTextStyle before;
        for (const RichTextRun &run : paragraph.runs) {
            if (run.style != before)
                line += described(run.style);
            before = run.style;
            if (run.picture)
                line += QStringLiteral("(%1 %2x%3)")
                            .arg(run.picture->name)
                            .arg(run.picture->size.width())
                            .arg(run.picture->size.height());
            else
                line += run.text;
        }
        lines << line;
    }
    return lines.join(u'\n');
}

struct Row
{
    const char *name;
    QByteArray rtf;
    QString expected;
};

void PrintTo(const Row &row, std::ostream *stream)
{
    *stream << row.name;
}

class ParserTest : public testing::TestWithParam<Row>
{};

TEST_P(ParserTest, readsConstruct)
{
    const Row &row = GetParam();
    EXPECT_EQ(described(parseRichText(row.rtf)).toStdString(), row.expected.toStdString());
}

QByteArray rtf(const char *body)
{
    return QByteArray("{\\rtf1\\ansi\\ansicpg1252") + body + '}';
}

const Row textRows[] = {
    {"plain", rtf(" Hello"), QStringLiteral("Hello")},
    {"paragraphs", rtf(" one\\par two\\\nthree\\\r\nfour\\par}"),
     QStringLiteral("one\ntwo\nthree\nfour")},
    {"line ends of the file are nothing", rtf(" o\r\nn\ne"), QStringLiteral("one")},
    {"empty paragraphs stay", rtf(" a\\par\\par b"), QStringLiteral("a\n\nb")},
    {"escapes of the format's own characters", rtf(" \\{\\\\\\}"), QStringLiteral("{\\}")},
    {"one blank ends a word", rtf("\\b0  x\\b0-y"), QStringLiteral(" x-y")},
    {"characters with names", rtf("\\ldblquote a\\rdblquote\\emdash b\\bullet\\tab c\\line d"),
     QStringLiteral("“a”—b•\tc\u2028d")},
    {"hard blank, soft and hard hyphen", rtf(" a\\~b\\-c\\_d"),
     QStringLiteral("a\u00A0b\u00ADc\u2011d")},
    {"hidden text", rtf(" a{\\v b}c"), QStringLiteral("ac")},
    {"cells of a table", rtf(" a\\cell b\\cell\\row c"), QStringLiteral("a\tb\t\nc")},
};

const Row encodingRows[] = {
    {"western bytes", rtf(" caf\\'e9 \\'93x\\'94 \\'80"), QStringLiteral("café “x” €")},
    {"raw western bytes", rtf(" caf\xE9"), QStringLiteral("café")},
    {"unicode with one substitute", rtf(" \\u8984?\\u8963?x"), QStringLiteral("⌘⌃x")},
    {"unicode with two", rtf("\\uc2 \\u8984 ab\\u8963\\'61\\'62x"), QStringLiteral("⌘⌃x")},
    {"unicode with none", rtf("\\uc0\\u8984 x\\u8963 y"), QStringLiteral("⌘x⌃y")},
    {"substitutes count per group", rtf(" {\\uc0\\u8984 }\\u8963?x"), QStringLiteral("⌘⌃x")},
    {"a group's end ends the skipping", rtf(" {\\u8984}x"), QStringLiteral("⌘x")},
    {"negative unicode", rtf(" \\u-4064?x"), QStringLiteral("\uF020x")},
    {"surrogate pair", rtf("\\uc0\\u-10179 \\u-8704 "), QStringLiteral("\U0001F600")},
    {"half a surrogate pair", rtf("\\uc0\\u-10179 x"), QStringLiteral("\uFFFDx")},
};

const Row styleRows[] = {
    {"bold, italic, underlined", rtf(" a{\\b b{\\i c}}\\ul d\\ulnone e"),
     QStringLiteral("a[b]b[b,i]c[u]d[]e")},
    {"switched off by 0", rtf("\\b a\\b0 b"), QStringLiteral("[b]a[]b")},
    {"sizes in half points", rtf("\\fs48 a\\fs23 b\\fs c"), QStringLiteral("[24]a[11.5]b[]c")},
    {"immoderate sizes", rtf("\\fs99999 a\\fs-4 b"), QStringLiteral("[120]a[1]b")},
    {"colours",
     rtf("{\\colortbl;\\red255\\green0\\blue0;\\red0\\green0\\blue300;}"
         "\\cf1 a\\cf2\\cb1 b\\cf0 c\\cf9 d"),
     QStringLiteral("[#ff0000]a[#0000ff]b[]cd")},
    {"fonts by family and by name",
     rtf("{\\fonttbl\\f0\\fswiss Sans;\\f1\\fmodern Odd;\\f2\\fnil Menlo-Regular;\\f3\\fnil "
         "Monotype Corsiva;}\\f0 a\\f1 b\\f2 c\\f3 d"),
     QStringLiteral("a[mono]bc[]d")},
    {"plain resets", rtf("\\b\\i\\fs40 a\\plain b"), QStringLiteral("[b,i,20]a[]b")},
    {"equal styles are one run", rtf(" a{\\b0 b}\\i0 c"), QStringLiteral("abc")},
};

const Row paragraphRows[] = {
    {"alignment", rtf("\\qc a\\par\\qr b\\par\\qj c\\par\\ql d\\par\\pard e"),
     QStringLiteral("<align4>a\n<align18>b\n<align8>c\n<align17>d\ne")},
    {"indents and spacing", rtf("\\li400\\ri200\\fi-200\\sb120\\sa60 a\\par\\pard b"),
     QStringLiteral("<li20,ri10,fi-10,sb6,sa3>a\nb")},
    {"multiple of the line", rtf("\\sl360\\slmult1 a\\par\\sl-300\\slmult0 b"),
     QStringLiteral("<x1.5>a\nb")},
    {"a group's paragraph style ends with it", rtf("{\\qc a\\par}b"),
     QStringLiteral("<align4>a\nb")},
    {"bullets are text", rtf("\\li360{\\listtext\\tab\\bullet\\tab}a"),
     QStringLiteral("<li18>\t•\ta")},
};

const Row groupRows[] = {
    {"optional groups that are not known", rtf(" a{\\*\\later{\\b b}c}d"), QStringLiteral("ad")},
    {"groups that are not text",
     rtf("{\\info{\\title T}}{\\stylesheet{\\s0 S;}}{\\header H}{\\*\\listtable{\\list}}a"),
     QStringLiteral("a")},
    {"words that are not known", rtf("\\later\\b a\\earlier7 b"), QStringLiteral("[b]ab")},
    {"link",
     rtf(" a{\\field{\\*\\fldinst{HYPERLINK \"https://varnit.example/x?y=1\"}}"
         "{\\fldrslt \\ul b}}c"),
     QStringLiteral("a[u,https://varnit.example/x?y=1]b[]c")},
    {"link without quotes",
     rtf("{\\field{\\*\\fldinst HYPERLINK mailto:a@b.example }{\\fldrslt b}}"),
     QStringLiteral("[mailto:a@b.example]b")},
    {"other fields show their result", rtf("{\\field{\\*\\fldinst PAGE}{\\fldrslt 7}}"),
     QStringLiteral("7")},
    {"pictures within the text are passed over",
     rtf(" a{\\pict\\pngblip 89504e47}{\\pict\\jpegblip\\bin3 {}\\}b"), QStringLiteral("ab")},
    {"bytes of another code page stay text", rtf("\\ansicpg1251 \\'cf\\'81"),
     QStringLiteral("Ï\uFFFD")},
    {"picture of the package",
     rtf(" a{{\\NeXTGraphic my pane.png \\width6400 \\height4800 \\noorient}\\'ac}b"),
     QStringLiteral("a(my pane.png 320x240)b")},
    {"picture with a name beyond ASCII", rtf("{{\\NeXTGraphic \\uc0\\u233 t\\u233 .png}\xAC}"),
     QStringLiteral("(été.png -1x-1)")},
};

const Row malformedRows[] = {
    {"not RTF", QByteArray("Hello {\\b x}"), QString()},
    {"empty", QByteArray(), QString()},
    {"cut off in a group", QByteArray("{\\rtf1 a{\\b b"), QStringLiteral("a[b]b")},
    {"cut off in a word", QByteArray("{\\rtf1 a\\"), QStringLiteral("a")},
    {"cut off in a byte", QByteArray("{\\rtf1 a\\'e"), QStringLiteral("a")},
    {"too many ends", QByteArray("{\\rtf1 a}}}b"), QStringLiteral("ab")},
    {"binary longer than the text", QByteArray("{\\rtf1 a\\bin999999 bc"), QStringLiteral("a")},
    {"control characters", QByteArray("{\\rtf1 a\x01\\'00\\u65535?\\u-560?b}"),
     QStringLiteral("ab")},
    {"numbers beyond reason", QByteArray("{\\rtf1\\uc99999999999\\f-99999999999\\cf-1 a}"),
     QStringLiteral("a")},
};

constexpr auto nameOf = [](const auto &info) {
    QString name = QString::fromLatin1(info.param.name);
    for (QChar &c : name) {
        if (!c.isLetterOrNumber())
            c = u'_';
    }
    return name.toStdString();
};

INSTANTIATE_TEST_SUITE_P(Text, ParserTest, testing::ValuesIn(textRows), nameOf);
INSTANTIATE_TEST_SUITE_P(Encoding, ParserTest, testing::ValuesIn(encodingRows), nameOf);
INSTANTIATE_TEST_SUITE_P(Style, ParserTest, testing::ValuesIn(styleRows), nameOf);
INSTANTIATE_TEST_SUITE_P(Paragraph, ParserTest, testing::ValuesIn(paragraphRows), nameOf);
INSTANTIATE_TEST_SUITE_P(Group, ParserTest, testing::ValuesIn(groupRows), nameOf);
INSTANTIATE_TEST_SUITE_P(Malformed, ParserTest, testing::ValuesIn(malformedRows), nameOf);

} // namespace
