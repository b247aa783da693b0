#include "ui/RichTextDocument.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>

#include <algorithm>
#include <cmath>

namespace tarnwell::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr double readableContrast = 4.5;
constexpr double smallestShownSize = 0.6; // of the desktop's own
constexpr double largestShownSize = 4.0;

double linear(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

/// How light a colour looks, from 0 to 1.
double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// From 1, indistinguishable, to 21, black on white.
double contrast(const QColor &a, const QColor &b)
{
    const double lighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

bool isAllowedLink(const QUrl &url)
{
    for (const auto &scheme : {"http"_L1, "https"_L1, "mailto"_L1}) {
        if (url.scheme() == scheme)
            return url.isValid();
    }
    return false;
}

/// Puts the text into a document, run by run.
class Filler
{
public:
    Filler(QTextDocument &document, const RichTextAppearance &appearance,
           const RichTextPictureSource &pictures)
        : m_document(document)
        , m_appearance(appearance)
        , m_pictures(pictures)
        , m_cursor(&document)
        , m_pixelsPerPoint(QFontInfo(appearance.font).pixelSize() / normalPointSize)
        , m_monospacedFamily(QFontDatabase::systemFont(QFontDatabase::FixedFont).family())
    {}

    void fill(const RichText &text)
    {
        m_cursor.beginEditBlock();
        bool isFirst = true;
        for (const RichTextParagraph &paragraph : text.paragraphs) {
            const QTextBlockFormat format = blockFormat(paragraph.style);
            const QTextCharFormat emptyLine = charFormat(
                paragraph.runs.isEmpty() ? RichTextStyle() : paragraph.runs.first().style);
            if (std::exchange(isFirst, false)) {
                m_cursor.setBlockFormat(format);
                m_cursor.setBlockCharFormat(emptyLine);
            } else {
                m_cursor.insertBlock(format, emptyLine);
            }
            for (const RichTextRun &run : paragraph.runs) {
                if (run.picture)
                    insertPicture(*run.picture);
                else
                    m_cursor.insertText(run.text, charFormat(run.style));
            }
        }
        m_cursor.endEditBlock();
    }

private:
    double pixels(double points) const { return points * m_pixelsPerPoint; }

    QTextBlockFormat blockFormat(const RichTextParagraphStyle &style) const
    {
        QTextBlockFormat format;
        format.setAlignment(style.alignment);
        format.setLeftMargin(pixels(style.leftIndent));
        format.setRightMargin(pixels(style.rightIndent));
        // One that hangs out further than the page goes is cut off.
        const double indent = std::max(style.firstLineIndent, -style.leftIndent);
        format.setTextIndent(pixels(indent));
        // Behind the bullet of a hanging line the text begins where that of the others does.
        if (indent < 0)
            format.setTabPositions({{pixels(-indent), QTextOption::LeftTab}});
        format.setTopMargin(pixels(style.spaceBefore));
        format.setBottomMargin(pixels(style.spaceAfter));
        if (style.lineHeight != 1)
            format.setLineHeight(style.lineHeight * 100, QTextBlockFormat::ProportionalHeight);
        return format;
    }

    QTextCharFormat charFormat(const RichTextStyle &style) const
    {
        QTextCharFormat format;
        QFont font = m_appearance.font;
        if (style.monospaced)
            font.setFamilies({m_monospacedFamily});
        const double scale =
            std::clamp(style.pointSize / normalPointSize, smallestShownSize, largestShownSize);
        if (font.pointSizeF() > 0)
            font.setPointSizeF(font.pointSizeF() * scale);
        else
            font.setPixelSize(std::max(1, qRound(font.pixelSize() * scale)));
        font.setBold(style.bold || font.bold());
        font.setItalic(style.italic || font.italic());
        font.setUnderline(style.underlined);
        format.setFont(font);
        setColors(style, format);
        setLink(style, format);
        return format;
    }

    void setColors(const RichTextStyle &style, QTextCharFormat &format) const
    {
        if (style.foreground) {
            const QColor color = readableColor(*style.foreground, m_appearance.palette);
            // The default is left to the view, so that it follows when the colours change.
            if (color != m_appearance.palette.color(QPalette::Text))
                format.setForeground(color);
        }
    }

    void setLink(const RichTextStyle &style, QTextCharFormat &format) const
    {
        if (style.link.isEmpty())
            return;
        const QUrl url(style.link);
        if (!isAllowedLink(url))
            return;
        format.setAnchor(true);
        format.setAnchorHref(url.toString(QUrl::FullyEncoded));
        format.setForeground(
            readableColor(m_appearance.palette.color(QPalette::Link).rgb(), m_appearance.palette));
        format.setFontUnderline(true);
    }

    void insertPicture(const RichTextPicture &picture)
    {
        const QImage image = m_pictures ? m_pictures(picture) : QImage();
        if (image.isNull())
            return;
        const QUrl name(u"picture:%1"_s.arg(m_pictureCount++));
        m_document.addResource(QTextDocument::ImageResource, name, image);
        QTextImageFormat format;
        format.setName(name.toString());
        if (!picture.size.isEmpty()) {
            format.setWidth(pixels(picture.size.width()));
            format.setHeight(pixels(picture.size.height()));
        }
        m_cursor.insertImage(format);
    }

    QTextDocument &m_document;
    const RichTextAppearance &m_appearance;
    const RichTextPictureSource &m_pictures;
    QTextCursor m_cursor;
    double m_pixelsPerPoint;
    QString m_monospacedFamily;
    int m_pictureCount = 0;
};

} // namespace

QColor readableColor(QRgb color, const QPalette &palette)
{
    const QColor wanted(color);
    const bool isReadable = contrast(wanted, palette.color(QPalette::Base)) >= readableContrast;
    // Black is what writers call their default.
    return isReadable && wanted != QColor(Qt::black) ? wanted : palette.color(QPalette::Text);
}

void fillDocument(QTextDocument &document, const RichText &text,
                  const RichTextAppearance &appearance, const RichTextPictureSource &pictures)
{
    document.clear();
    document.setUndoRedoEnabled(false);
    document.setDefaultFont(appearance.font);
    Filler(document, appearance, pictures).fill(text);
}

} // namespace tarnwell::ui
