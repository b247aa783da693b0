#include "ui/StyledText.h"
#include "foundation/PlainToolTip.h"
#include "ui/StyledTextDelegate.h"

#include <QApplication>
#include <QHeaderView>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QTableView>
#include <QTextDocumentFragment>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace tarnwell::ui;
using tarnwell::foundation::FontStyle;
using tarnwell::foundation::StyledString;
using tarnwell::foundation::TextColor;

namespace {

QPalette paletteOf(QRgb text, QRgb base)
{
    QPalette palette;
    palette.setColor(QPalette::Text, QColor(text));
    palette.setColor(QPalette::Base, QColor(base));
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(0x777777));
    return palette;
}

const QPalette onWhite = paletteOf(0x000000, 0xffffff);
const QPalette onBlack = paletteOf(0xf0f0f0, 0x101010);

StyledTextStyle style(const QPalette &palette = onWhite)
{
    StyledTextStyle result;
    result.font = QApplication::font();
    result.palette = palette;
    return result;
}

StyledString twoLines(const QString &name, const QString &comment)
{
    StyledString text(name);
    text.append(u"\n"_s);
    text.append(comment, {FontStyle::SmallSystem, TextColor::Gray});
    return text;
}

/// How much darker or lighter than the background the painted text gets.
int strongestInk(const StyledString &text, const StyledTextStyle &textStyle)
{
    QImage image(200, 60, QImage::Format_RGB32);
    const QColor background = textStyle.palette.color(QPalette::Base);
    image.fill(background);
    QPainter painter(&image);
    StyledTextLayout(text, textStyle).draw(&painter, image.rect(), Qt::AlignLeft | Qt::AlignTop);
    painter.end();
    int strongest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            strongest = std::max(
                strongest, std::abs(image.pixelColor(x, y).lightness() - background.lightness()));
    }
    return strongest;
}

} // namespace

TEST(StyledText, GreyStandsBetweenTextAndBackgroundInEveryPalette)
{
    for (const QPalette &palette : {onWhite, onBlack}) {
        const StyledString plain(u"MMMM"_s);
        const StyledString grey(u"MMMM"_s, {FontStyle::Inherited, TextColor::Gray});
        const int full = strongestInk(plain, style(palette));
        const int muted = strongestInk(grey, style(palette));
        EXPECT_GT(full, 150);
        EXPECT_LT(muted, full - 30);
        EXPECT_GT(muted, full / 3) << "still legible";
    }
}

TEST(StyledText, SelectedTextsStayLegibleOnTheHighlight)
{
    QPalette palette = onWhite;
    palette.setColor(QPalette::Highlight, Qt::blue);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto color : {TextColor::Inherited, TextColor::Gray, TextColor::DisabledControl}) {
        EXPECT_GT(styledColor(color, palette, QPalette::Active, true).green(), 150) << int(color);
    }
    EXPECT_EQ(styledColor(TextColor::DisabledControl, palette, QPalette::Active, false),
              QColor(0x777777));
}

TEST(StyledText, SmallFontsFollowTheViewsFontWhateverItsUnit)
{
    QFont points = QApplication::font();
    points.setPointSizeF(20);
    QFont pixels = QApplication::font();
    pixels.setPixelSize(40);
    EXPECT_LT(styledFont(FontStyle::SmallSystem, points).pointSizeF(), 20);
    EXPECT_GT(styledFont(FontStyle::SmallSystem, points).pointSizeF(), 12);
    EXPECT_LT(styledFont(FontStyle::SmallBoldSystem, pixels).pixelSize(), 40);
    EXPECT_TRUE(styledFont(FontStyle::SmallBoldSystem, pixels).bold());
    EXPECT_EQ(styledFont(FontStyle::Inherited, points), points);
}

TEST(StyledText, EveryLineCountsInTheHeight)
{
    const qreal one = StyledTextLayout(StyledString(u"Name"_s), style()).size().height();
    const qreal two = StyledTextLayout(twoLines(u"Name"_s, u"Comment"_s), style()).size().height();
    const qreal empty = StyledTextLayout(twoLines(u"Name"_s, {}), style()).size().height();
    EXPECT_GT(two, one * 1.7);
    EXPECT_GT(empty, one * 1.7) << "a row without a comment is as high as its neighbours";
    EXPECT_GT(StyledTextLayout(StyledString(), style()).size().height(), 0);
}

TEST(StyledText, LinesThatAreTooWideEndInAnEllipsis)
{
    struct Row
    {
        const char *name;
        QString text;
    };
    const Row rows[] = {
        {"latin", u"A menu item with a rather long name"_s},
        {"right to left", u"פריט תפריט עם שם ארוך למדי שאינו נכנס"_s},
        {"outside the basic plane", QString(u"😀"_s).repeated(40)},
        {"one long word", QString(500, u'w')},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const StyledTextLayout layout(StyledString(row.text), style(), 100);
        EXPECT_LE(layout.size().width(), 100);
        EXPECT_GT(layout.size().width(), 60) << "what fits is shown";
        EXPECT_TRUE(layout.shownText().endsWith(u'…'));
        EXPECT_FALSE(layout.shownText().chopped(1).endsWith(QChar(0xd83d))) << "no half character";
    }
    EXPECT_EQ(StyledTextLayout(StyledString(u"Short"_s), style(), 100).shownText(), u"Short"_s);
    EXPECT_EQ(StyledTextLayout(StyledString(u"Short"_s), style(), 1).shownText(), u"…"_s);
    EXPECT_EQ(StyledTextLayout(twoLines(u"Ab"_s, QString(90, u'c')), style(), 100)
                  .shownText()
                  .section(u'\n', 0, 0),
              u"Ab"_s)
        << "each line is cut by itself";
}

TEST(StyledTextDelegate, RowsAreHighEnoughForTheirCells)
{
    QStandardItemModel model(1, 1);
    QTableView table;
    table.setIconSize(QSize(16, 16));
    table.setModel(&model);
    StyledTextDelegate delegate;
    table.setItemDelegate(&delegate);
    for (const int points : {8, 12, 24}) {
        QFont font = table.font();
        font.setPointSize(points);
        table.setFont(font);
        const StyledString text = twoLines(u"Name"_s, u"Comment"_s);
        model.setData(model.index(0, 0), QVariant::fromValue(text), styledTextRole);
        setRowHeightFor(text, &table);
        StyledTextStyle cell = style();
        cell.font = font;
        const qreal needed = StyledTextLayout(text, cell).size().height();
        EXPECT_GE(table.rowHeight(0), needed) << points;
        EXPECT_LT(table.rowHeight(0), needed + 12) << points;
        EXPECT_GE(table.rowHeight(0), table.sizeHintForIndex(model.index(0, 0)).height()) << points;
    }
}

TEST(StyledTextDelegate, PaintsStyledCellsAndLeavesOthersToTheToolkit)
{
    QStandardItemModel model(1, 1);
    QTableView table;
    table.setModel(&model);
    table.horizontalHeader()->hide();
    table.verticalHeader()->hide();
    table.setColumnWidth(0, 120);
    StyledTextDelegate delegate;
    table.setItemDelegate(&delegate);
    const QImage blank = table.grab().toImage();
    model.setData(model.index(0, 0), QVariant::fromValue(StyledString(u"Styled"_s)),
                  styledTextRole);
    model.setData(model.index(0, 0), u"Styled"_s, Qt::DisplayRole);
    const QImage styled = table.grab().toImage();
    EXPECT_NE(styled, blank);
    model.setData(model.index(0, 0), QVariant(), styledTextRole);
    EXPECT_NE(table.grab().toImage(), blank);
}

TEST(PlainToolTip, ShowsATextLetterForLetter)
{
    for (const QString &text :
         {u"/Applications/R&D.app"_s, u"<b>bold</b>"_s, u"&lt;b>"_s, u"two\n<i>lines</i>"_s,
          u"a  < b"_s, u"<!DOCTYPE"_s, u"<?xml?><p>"_s}) {
        const QString toolTip = tarnwell::foundation::plainToolTip(text);
        EXPECT_EQ(Qt::mightBeRichText(toolTip)
                      ? QTextDocumentFragment::fromHtml(toolTip).toPlainText()
                      : toolTip,
                  text);
    }
}
