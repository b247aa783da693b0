#pragma once

#include "ui/RichText.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPalette>

#include <functional>

class QTextDocument;

namespace tarnwell::ui {

/// Where a text is going to be shown.
struct RichTextAppearance
{
    QFont font;       ///< of normal text, of which all other sizes are multiples
    QPalette palette; ///< its base is the background
};

/// The image of a picture; a null image for one that cannot be shown.
using RichTextPictureSource = std::function<QImage(const RichTextPicture &picture)>;

/// A colour as it can be read on the palette's base: one that stands out well stays, any other one
/// and black become the palette's own text colour.
QColor readableColor(QRgb color, const QPalette &palette);

/// Replaces the contents of a document by a text. Only links to the web and to mail addresses
/// become links.
void fillDocument(QTextDocument &document, const RichText &text,
                  const RichTextAppearance &appearance, const RichTextPictureSource &pictures);

/// An image of untrusted bytes in one of the common formats; a null image for any other and for
/// one of more than `mostPixels` pixels, which is then not decoded.
QImage decodePicture(const QByteArray &data, qint64 mostPixels);

/// Replaces the contents of a document by those of a rich-text package: the folder "Name.rtfd"
/// with "TXT.rtf" and its pictures. Returns false, and leaves the document as it is, when there is
/// no such text. Nothing outside the folder is read, through links neither.
bool loadRichTextPackage(const QString &folder, const RichTextAppearance &appearance,
                         QTextDocument &document);

} // namespace tarnwell::ui
