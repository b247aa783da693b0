#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QRgb>
#include <QSizeF>
#include <QString>

#include <optional>

/// Rich text as a value: what the common part of RTF says, free of fonts and colour schemes of the
/// place where it will be shown. Lengths are in points.
namespace tarnwell::ui {

/// The size of text that names no size, and the one that stands for the desktop's own font.
inline constexpr double normalPointSize = 12.0;

/// How a stretch of text looks.
struct RichTextStyle
{
    enum class Position : quint8 { Normal, Superscript, Subscript };

    bool bold = false;
    bool italic = false;
    bool underlined = false;
    bool struckOut = false;
    bool monospaced = false;
    Position position = Position::Normal;
    double pointSize = normalPointSize;
    std::optional<QRgb> foreground; ///< nothing is the reader's own text colour
    std::optional<QRgb> background;
    QString link; ///< a web or mail address; empty for none

    friend bool operator==(const RichTextStyle &, const RichTextStyle &) = default;
};

/// A picture: a file of the package, or bytes within the text.
struct RichTextPicture
{
    QString name;    ///< of the file, as the text gives it: not to be trusted
    QByteArray data; ///< an encoded image, where there is no name
    QSizeF size;     ///< to show it in; empty for the picture's own

    friend bool operator==(const RichTextPicture &, const RichTextPicture &) = default;
};

/// Text of one style, or a picture.
struct RichTextRun
{
    QString text;
    RichTextStyle style;
    std::optional<RichTextPicture> picture;
};

struct RichTextTab
{
    enum class Kind : quint8 { Left, Right, Center, Decimal };

    double position = 0;
    Kind kind = Kind::Left;

    friend bool operator==(const RichTextTab &, const RichTextTab &) = default;
};

struct RichTextParagraphStyle
{
    enum class Alignment : quint8 { Natural, Left, Right, Center, Justified };

    Alignment alignment = Alignment::Natural;
    bool rightToLeft = false;
    double leftIndent = 0;
    double rightIndent = 0;
    double firstLineIndent = 0; ///< from the left indent; negative for a hanging first line
    double spaceBefore = 0;
    double spaceAfter = 0;
    double lineHeight = 1; ///< as a multiple of the font's own
    QList<RichTextTab> tabs;

    friend bool operator==(const RichTextParagraphStyle &,
                           const RichTextParagraphStyle &) = default;
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
/// no RTF at all give an empty text. Groups that lie deeper than any writer puts them, and what
/// comes after an immoderate number of paragraphs, runs or pictures, are left out.
RichText parseRichText(QByteArrayView rtf);

} // namespace tarnwell::ui
