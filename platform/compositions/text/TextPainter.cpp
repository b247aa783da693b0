#include "compositions/text/TextPainter.h"

#include "compositions/Limits.h"

#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPainter>
#include <QTextLayout>

#include <cmath>
#include <memory>
#include <vector>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostLines = 2'000;
constexpr double largestGlyph = 2'048.0;

/// The first of the families that is installed. Where none is, the system's stand-in for the common
/// grotesque serves: asked for a family that it does not know, it would hand out anything.
QString installedFamily(const QStringList &families)
{
    for (const QString &family : families) {
        if (QFontDatabase::hasFamily(family)) {
            return family;
        }
    }
    // These have stand-ins of the same width on nearly every system.
    for (const QLatin1StringView known : {"Courier"_L1, "Times"_L1}) {
        if (families.front().startsWith(known)) {
            return known;
        }
    }
    return u"Helvetica"_s;
}

/// "HelveticaNeue-BoldItalic" becomes the family "Helvetica Neue" in bold italics.
QFont fontOf(const QString &name)
{
    const qsizetype dash = name.lastIndexOf(u'-');
    const QString family = dash < 0 ? name : name.left(dash);
    const QString style = dash < 0 ? QString() : name.mid(dash + 1);
    QString spaced;
    for (qsizetype i = 0; i < family.size(); ++i) {
        if (i > 0 && family[i].isUpper() && family[i - 1].isLower()) {
            spaced += u' ';
        }
        spaced += family[i];
    }
    QFont font(QStringList{installedFamily({family, spaced}), u"sans-serif"_s});
    font.setItalic(style.contains("Italic"_L1) || style.contains("Oblique"_L1));
    if (style.contains("Black"_L1) || style.contains("Heavy"_L1)) {
        font.setWeight(QFont::Black);
    } else if (style.contains("Bold"_L1)) {
        font.setWeight(QFont::Bold);
    } else if (style.contains("Medium"_L1)) {
        font.setWeight(QFont::Medium);
    } else if (style.contains("Light"_L1) || style.contains("Thin"_L1)) {
        font.setWeight(QFont::Light);
    }
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

struct Paragraphs
{
    std::vector<std::unique_ptr<QTextLayout>> layouts;
    double width = 0.0;
    double height = 0.0;
    int lines = 0;
};

Paragraphs layOut(const TextRequest &request, const QFont &font, double lineWidth)
{
    Paragraphs result;
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    if (request.width > 0.0 && request.horizontal == TextAlignment::Justified) {
        option.setAlignment(Qt::AlignJustify);
    }
    QString text = request.text.left(mostPaintedCharacters);
    text.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n');
    for (const QString &paragraph : text.split(u'\n')) {
        auto layout = std::make_unique<QTextLayout>(paragraph, font);
        layout->setTextOption(option);
        layout->setCacheEnabled(true);
        layout->beginLayout();
        for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
            line.setLineWidth(lineWidth);
            line.setPosition({0.0, result.height});
            result.width = std::max(result.width, line.naturalTextWidth());
            result.height += line.height() + request.leading;
            if (++result.lines >= mostLines || result.height > limits::imageSide) {
                break;
            }
        }
        layout->endLayout();
        result.layouts.push_back(std::move(layout));
        if (result.lines >= mostLines || result.height > limits::imageSide) {
            break;
        }
    }
    result.height = std::max(result.height - request.leading, 0.0);
    return result;
}

int pixels(double wanted, double needed)
{
    return int(
        std::ceil(std::clamp(wanted > 0.0 ? wanted : needed, 0.0, double(limits::imageSide))));
}

double offset(TextAlignment alignment, double room)
{
    return alignment == TextAlignment::Centered   ? room / 2.0
           : alignment == TextAlignment::Opposite ? room
                                                  : 0.0;
}

} // namespace

QImage paintText(const TextRequest &request, int *lineCount)
{
    if (request.text.isEmpty() || !(request.glyphSize >= 1.0) ||
        qobject_cast<QGuiApplication *>(QCoreApplication::instance()) == nullptr) {
        return {};
    }
    QFont font = fontOf(request.fontName);
    font.setPixelSize(int(std::lround(std::min(request.glyphSize, largestGlyph))));
    if (std::isfinite(request.kerning) && std::abs(request.kerning) < largestGlyph) {
        font.setLetterSpacing(QFont::AbsoluteSpacing, request.kerning);
    }
    const double lineWidth = request.width > 0.0
                                 ? std::min(request.width, double(limits::imageSide))
                                 : double(limits::imageSide);
    const Paragraphs paragraphs = layOut(request, font, lineWidth);
    const QSize size(pixels(request.width, paragraphs.width),
                     pixels(request.height, paragraphs.height));
    if (lineCount != nullptr) {
        *lineCount = paragraphs.lines;
    }
    if (size.isEmpty()) {
        return {};
    }
    QImage image(size, QImage::Format_RGBA8888_Premultiplied);
    if (image.isNull()) {
        return {};
    }
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(Qt::white);
    const double top = offset(request.vertical, size.height() - paragraphs.height);
    for (const auto &layout : paragraphs.layouts) {
        for (int i = 0; i < layout->lineCount(); ++i) {
            const QTextLine line = layout->lineAt(i);
            const double left = offset(request.horizontal, size.width() - line.naturalTextWidth());
            line.draw(&painter, {left, top});
        }
    }
    return image;
}

} // namespace tarnwell::compositions
