// Texts that ask for more than any text should get.

#include "ui/RichTextDocument.h"

#include <QTextDocument>

#include <gtest/gtest.h>

using namespace tarnwell::ui;

namespace {

qsizetype textSize(const RichText &text)
{
    qsizetype size = 0;
    for (const RichTextParagraph &paragraph : text.paragraphs)
        size += paragraph.text().size();
    return size;
}

TEST(HostileRichText, groupsWithoutEndOrBottom)
{
    const QByteArray deep("{\\rtf1 a" + QByteArray(500'000, '{') + "b" + QByteArray(500'000, '}') +
                          "c}");
    EXPECT_EQ(parseRichText(deep).paragraphs.at(0).text(), QStringLiteral("ac"));
    EXPECT_EQ(textSize(parseRichText("{\\rtf1 a" + QByteArray(500'000, '}'))), 1);
}

TEST(HostileRichText, paragraphsAndStylesWithoutNumber)
{
    EXPECT_LE(parseRichText("{\\rtf1" + QByteArray("\\par").repeated(200'000)).paragraphs.size(),
              100'000);
    const RichText runs = parseRichText("{\\rtf1" + QByteArray("\\b a\\b0 b").repeated(200'000));
    ASSERT_EQ(runs.paragraphs.size(), 1);
    EXPECT_LE(runs.paragraphs.at(0).runs.size(), 200'001);
}

TEST(HostileRichText, tablesWithoutNumber)
{
    QByteArray fonts;
    for (int i = 0; i < 100'000; ++i)
        fonts += "{\\f" + QByteArray::number(i) + "\\fnil X;}";
    const QByteArray colors = QByteArray("\\red1;").repeated(200'000);
    EXPECT_EQ(textSize(parseRichText("{\\rtf1{\\fonttbl" + fonts + "}{\\colortbl" + colors +
                                     "}\\f99999\\cf999999 a}")),
              1);
}

TEST(HostileRichText, picturesWithoutNumber)
{
    const RichText text =
        parseRichText("{\\rtf1" + QByteArray("{{\\NeXTGraphic a.png}x}").repeated(10'000) + "}");
    int asked = 0;
    QTextDocument document;
    fillDocument(document, text, {QFont(), QPalette()}, [&asked](const RichTextPicture &) {
        ++asked;
        return QImage();
    });
    EXPECT_EQ(asked, 64);
}

TEST(HostileRichText, everyBeginningOfATextIsReadable)
{
    const QByteArray whole(
        "{\\rtf1\\ansi{\\fonttbl{\\f0\\fmodern\\fcharset128 "
        "M;}}{\\colortbl;\\red9;}\\pard\\tqr\\tx9"
        "\\f0\\cf1 \\'93\\'fa\\u-10179?\\u-8704?{\\field{\\*\\fldinst{HYPERLINK \"http://a\"}}"
        "{\\fldrslt x}}{{\\NeXTGraphic a.png \\width9}\\'ac}{\\pict\\pngblip\\bin4 1234 89}}");
    for (qsizetype length = 0; length <= whole.size(); ++length) {
        QTextDocument document;
        fillDocument(document, parseRichText(whole.first(length)), {QFont(), QPalette()}, {});
        EXPECT_TRUE(document.toPlainText().isValidUtf16()) << length;
    }
}

} // namespace
