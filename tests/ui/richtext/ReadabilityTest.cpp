#include "ui/RichTextDocument.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>

#include <gtest/gtest.h>

#include <cmath>

using namespace tarnwell::ui;

namespace {

QPalette lightPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(255, 255, 255));
    palette.setColor(QPalette::Text, QColor(20, 20, 20));
    palette.setColor(QPalette::Link, QColor(0, 0, 255));
    return palette;
}

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::Text, QColor(240, 240, 240));
    palette.setColor(QPalette::Link, QColor(0, 0, 255));
    return palette;
}

double luminance(const QColor &color)
{
    const auto linear = [](double c) { return std::pow(c, 2.2); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

struct Row
{
    const char *name;
    QRgb color;
    bool keptInLight; ///< exactly as written
    bool keptInDark;
};

void PrintTo(const Row &row, std::ostream *stream)
{
    *stream << row.name;
}

class ReadableColorTest : public testing::TestWithParam<Row>
{};

TEST_P(ReadableColorTest, standsOutOnEveryBackground)
{
    const Row &row = GetParam();
    for (const bool isDark : {false, true}) {
        const QPalette palette = isDark ? darkPalette() : lightPalette();
        const QColor color = readableColor(row.color, palette);
        EXPECT_GE(contrast(color, palette.color(QPalette::Base)), 4.3)
            << color.name().toStdString();
        if (isDark ? row.keptInDark : row.keptInLight)
            EXPECT_EQ(color, QColor(row.color));
        else
            EXPECT_EQ(color, palette.color(QPalette::Text));
    }
}

const Row rows[] = {
    {"black", qRgb(0, 0, 0), false, false},         {"white", qRgb(255, 255, 255), false, true},
    {"dark_grey", qRgb(40, 40, 42), true, false},   {"dark_blue", qRgb(0, 0, 139), true, false},
    {"dark_red", qRgb(139, 0, 0), true, false},     {"yellow", qRgb(255, 255, 0), false, true},
    {"middle_green", qRgb(0, 128, 0), true, false},
};

INSTANTIATE_TEST_SUITE_P(Colors, ReadableColorTest, testing::ValuesIn(rows),
                         [](const auto &row) { return std::string(row.param.name); });

QTextCharFormat formatOfFirstRun(const QTextDocument &document)
{
    return document.firstBlock().begin().fragment().charFormat();
}

QTextCharFormat formatOf(const char *body, const QPalette &palette)
{
    QTextDocument document;
    QFont font;
    font.setPointSizeF(10);
    fillDocument(document,
                 parseRichText(QByteArray("{\\rtf1{\\colortbl;\\red255\\green255\\blue255;"
                                          "\\red0\\green0\\blue0;}") +
                               body + '}'),
                 {font, palette}, {});
    return formatOfFirstRun(document);
}

TEST(RichTextDocument, leavesTheDefaultColourToTheView)
{
    EXPECT_FALSE(formatOf(" a", darkPalette()).hasProperty(QTextFormat::ForegroundBrush));
    EXPECT_FALSE(formatOf("\\cf2 a", darkPalette()).hasProperty(QTextFormat::ForegroundBrush));
}

TEST(RichTextDocument, sizesFollowTheDesktopsFont)
{
    EXPECT_DOUBLE_EQ(formatOf("\\fs24 a", lightPalette()).font().pointSizeF(), 10);
    EXPECT_DOUBLE_EQ(formatOf("\\fs48 a", lightPalette()).font().pointSizeF(), 20);
    EXPECT_DOUBLE_EQ(formatOf("\\fs2 a", lightPalette()).font().pointSizeF(), 6);
}

TEST(RichTextDocument, textBehindABulletBeginsWhereItsOtherLinesDo)
{
    QTextDocument document;
    QFont font;
    font.setPixelSize(12); // a pixel is a point
    fillDocument(document,
                 parseRichText("{\\rtf1\\li400\\fi-200\\tx300\\tx1000{\\listtext\\bullet\\tab}a}"),
                 {font, lightPalette()}, {});
    const QTextBlockFormat format = document.firstBlock().blockFormat();
    EXPECT_EQ(format.leftMargin(), 20);
    EXPECT_EQ(format.textIndent(), -10);
    ASSERT_EQ(format.tabPositions().size(), 1);
    EXPECT_EQ(format.tabPositions().first().position, 10);
}

TEST(RichTextDocument, linksLeadToTheWebAndToMailAlone)
{
    const auto link = [](const char *address) {
        const QByteArray body =
            QByteArray("{\\field{\\*\\fldinst{HYPERLINK \"") + address + "\"}}{\\fldrslt a}}";
        return formatOf(body.constData(), darkPalette()).anchorHref().toStdString();
    };
    EXPECT_EQ(link("https://varnit.example/a b"), "https://varnit.example/a%20b");
    EXPECT_EQ(link("mailto:support@varnit.example"), "mailto:support@varnit.example");
    EXPECT_EQ(link("file:///etc/passwd"), "");
    EXPECT_EQ(link("javascript:alert(1)"), "");
    EXPECT_EQ(link("relative"), "");
}

} // namespace
