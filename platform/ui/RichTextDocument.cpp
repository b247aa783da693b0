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
constexpr int lightnessSteps = 32;
constexpr double greyChroma = 0.08;
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

bool isGrey(const QColor &color)
{
    const auto [least, most] = std::minmax({color.redF(), color.greenF(), color.blueF()});
    return most - least < greyChroma;
}

/// The nearest colour of the same hue that is readable on a background.
QColor withReadableLightness(const QColor &color, const QColor &background)
{
    const bool lighter = luminance(background) < 0.18;
    float hue = 0;
    float saturation = 0;
    float lightness = 0;
    color.getHslF(&hue, &saturation, &lightness);
    QColor result = color;
    for (int step = 1; step <= lightnessSteps && contrast(result, background) < readableContrast;
         ++step) {
        const float share = float(step) / lightnessSteps;
        result.setHslF(std::max(hue, 0.0F), saturation,
                       lighter ? lightness + (1 - lightness) * share : lightness * (1 - share));
    }
    return result;
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
        format.setAlignment(alignment(style));
        if (style.rightToLeft)
            format.setLayoutDirection(Qt::RightToLeft);
        format.setLeftMargin(pixels(style.leftIndent));
        format.setRightMargin(pixels(style.rightIndent));
        const double indent = shownIndent(style);
        format.setTextIndent(pixels(indent));
        format.setTopMargin(pixels(style.spaceBefore));
        format.setBottomMargin(pixels(style.spaceAfter));
        if (style.lineHeight != 1)
            format.setLineHeight(style.lineHeight * 100, QTextBlockFormat::ProportionalHeight);
        if (const auto stops = tabs(style); !stops.isEmpty())
            format.setTabPositions(stops);
        return format;
    }

    /// The indent of the first line; one that hangs out further than the page goes is cut off.
    static double shownIndent(const RichTextParagraphStyle &style)
    {
        return std::max(style.firstLineIndent, -style.leftIndent);
    }

    /// The tab stops as the toolkit counts them: from where the first line begins.
    QList<QTextOption::Tab> tabs(const RichTextParagraphStyle &style) const
    {
        const double indent = shownIndent(style);
        QList<QTextOption::Tab> result;
        for (const RichTextTab &tab : style.tabs) {
            const double position = tab.position - style.leftIndent - indent;
            if (position > 0)
                result.append({pixels(position), tabKind(tab.kind),
                               tab.kind == RichTextTab::Kind::Decimal ? m_decimalPoint : QChar()});
        }
        // Behind the bullet of a hanging line the text begins where that of the others does.
        if (indent < 0)
            result.append({pixels(-indent), QTextOption::LeftTab});
        std::ranges::sort(result, {}, &QTextOption::Tab::position);
        return result;
    }

    static Qt::Alignment alignment(const RichTextParagraphStyle &style)
    {
        switch (style.alignment) {
        case RichTextParagraphStyle::Alignment::Left:
            return Qt::AlignLeft | Qt::AlignAbsolute;
        case RichTextParagraphStyle::Alignment::Right:
            return Qt::AlignRight | Qt::AlignAbsolute;
        case RichTextParagraphStyle::Alignment::Center:
            return Qt::AlignHCenter;
        case RichTextParagraphStyle::Alignment::Justified:
            return Qt::AlignJustify;
        case RichTextParagraphStyle::Alignment::Natural:
            break;
        }
        return Qt::AlignLeading;
    }

    static QTextOption::TabType tabKind(RichTextTab::Kind kind)
    {
        switch (kind) {
        case RichTextTab::Kind::Right:
            return QTextOption::RightTab;
        case RichTextTab::Kind::Center:
            return QTextOption::CenterTab;
        case RichTextTab::Kind::Decimal:
            return QTextOption::DelimiterTab;
        case RichTextTab::Kind::Left:
            break;
        }
        return QTextOption::LeftTab;
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
        font.setStrikeOut(style.struckOut);
        format.setFont(font);
        if (style.position == RichTextStyle::Position::Superscript)
            format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
        else if (style.position == RichTextStyle::Position::Subscript)
            format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
        setColors(style, format);
        setLink(style, format);
        return format;
    }

    void setColors(const RichTextStyle &style, QTextCharFormat &format) const
    {
        if (style.background) {
            // Where the writer chose both colours they belong together.
            const QColor background(*style.background);
            const QColor wanted(style.foreground.value_or(qRgb(0, 0, 0)));
            format.setBackground(background);
            format.setForeground(contrast(wanted, background) >= readableContrast || !isGrey(wanted)
                                     ? withReadableLightness(wanted, background)
                                 : luminance(background) < 0.18 ? QColor(Qt::white)
                                                                : QColor(Qt::black));
        } else if (style.foreground) {
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
    QChar m_decimalPoint = u'.';
    int m_pictureCount = 0;
};

} // namespace

QColor readableColor(QRgb color, const QPalette &palette)
{
    const QColor background = palette.color(QPalette::Base);
    const QColor wanted(color);
    if (contrast(wanted, background) >= readableContrast && wanted != QColor(Qt::black))
        return wanted;
    if (isGrey(wanted))
        return palette.color(QPalette::Text);
    return withReadableLightness(wanted, background);
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
