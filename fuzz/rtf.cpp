// Reads rich text and lays it into a document, as showing a package does.

#include "ui/RichTextDocument.h"

#include <QGuiApplication>
#include <QTextDocument>

#include <cstdint>
#include <cstdlib>

namespace {

void makeApplication()
{
    static int argc = 1;
    static char name[] = "rtf";
    static char *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(argc, argv);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace tarnwell::ui;
    makeApplication();
    const QByteArrayView bytes(data, qsizetype(size));
    const RichText text = parseRichText(bytes);
    for (const RichTextParagraph &paragraph : text.paragraphs) {
        if (!paragraph.text().isValidUtf16())
            std::abort();
    }
    QTextDocument document;
    const RichTextAppearance appearance{QFont(), QPalette()};
    fillDocument(document, text, appearance,
                 [](const RichTextPicture &) { return QImage(1, 1, QImage::Format_RGB32); });
    // Nothing in a text may look like the document's own structure.
    if (document.blockCount() != std::max<qsizetype>(1, text.paragraphs.size()))
        std::abort();
    return 0;
}
