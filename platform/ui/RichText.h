#pragma once

#include <QByteArrayView>
#include <QList>
#include <QRgb>
#include <QSizeF>
#include <QString>

#include <optional>

/// Rich text as a value: what this program's own documents say, and what word processors write for
/// the same. It knows nothing of the fonts and colours of the place where it will be shown. Lengths
/// are in points.
namespace tarnwell::ui {

/// The size of text that names no size, and the one that stands for the desktop's own font.
inline constexpr double normalPointSize = 12.0;

/// How a stretch of text looks.
struct RichTextStyle
{
    bool bold = false;
    bool italic = false;
    bool underlined = false;
    bool monospaced = false;
    double pointSize = normalPointSize;
    std::optional<QRgb> foreground; ///< nothing is the reader's own text colour
    QString link;                   ///< an address; empty for none

    friend bool operator==(const RichTextStyle &, const RichTextStyle &) = default;
};

/// A picture that lies beside the text.
struct RichTextPicture
{
    QString name; ///< of the file, as the text gives it: not to be trusted
    QSizeF size;  ///< to show it in; empty for the picture's own
};

/// Text of one style, or a picture.
struct RichTextRun
{
    QString text;
    RichTextStyle style;
    std::optional<RichTextPicture> picture;
};

struct RichTextParagraphStyle
{
    Qt::Alignment alignment = Qt::AlignLeading;
    double leftIndent = 0;
    double rightIndent = 0;
    double firstLineIndent = 0; ///< from the left indent; negative for a hanging first line
    double spaceBefore = 0;
    double spaceAfter = 0;
    double lineHeight = 1; ///< as a multiple of the font's own
};

struct RichTextParagraph
{
    RichTextParagraphStyle style;
    QList<RichTextRun> runs;

    QString text() const;
};

struct RichText
{
    QList<RichTextParagraph> paragraphs;
};

/// Reads RTF. Malformed text is no error: what can be made out of it is there, and bytes that are
/// no RTF at all give an empty text. What is not known is passed over, but its text stays; bytes
/// beyond ASCII are those of Windows' western code page. Groups that lie deeper than any writer
/// puts them, and what comes after an immoderate number of paragraphs, runs or pictures, are left
/// out.
RichText parseRichText(QByteArrayView rtf);

} // namespace tarnwell::ui
