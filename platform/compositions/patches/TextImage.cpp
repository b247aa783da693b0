#include "compositions/patches/TextImage.h"

#include "compositions/drawing/Geometry.h"
#include "compositions/evaluator/Context.h"
#include "compositions/model/Image.h"
#include "compositions/patches/Settings.h"

#include <algorithm>
#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

enum Input { String, FontName, GlyphSize, Width, Height, Leading, Kerning };
enum Output { ImageOutput, WidthOutput, HeightOutput, LineCount, GlyphCount };

constexpr std::array inputTable{PortDefinition{"inputString"_L1, Type::String},
                                PortDefinition{"inputFontName"_L1, Type::String},
                                PortDefinition{"inputGlyphSize"_L1, Type::Number, 0.1},
                                PortDefinition{"inputWidth"_L1, Type::Number},
                                PortDefinition{"inputHeight"_L1, Type::Number},
                                PortDefinition{"inputLeading"_L1, Type::Number},
                                PortDefinition{"inputKerning"_L1, Type::Number}};
constexpr std::array outputTable{PortDefinition{"outputImage"_L1, Type::Image},
                                 PortDefinition{"outputWidth"_L1, Type::Number},
                                 PortDefinition{"outputHeight"_L1, Type::Number},
                                 PortDefinition{"outputLineCount"_L1, Type::Index},
                                 PortDefinition{"outputGlyphCount"_L1, Type::Index}};

TextAlignment alignmentSetting(const NodeDescription &description, QLatin1StringView name)
{
    const QString text = description.setting(name).toString();
    return text == "Centered"_L1    ? TextAlignment::Centered
           : text == "Opposite"_L1  ? TextAlignment::Opposite
           : text == "Justified"_L1 ? TextAlignment::Justified
                                    : TextAlignment::Normal;
}

} // namespace

std::span<const PortDefinition> TextImage::inputs()
{
    return inputTable;
}

std::span<const PortDefinition> TextImage::outputs()
{
    return outputTable;
}

TextImage::TextImage(const NodeDescription &description)
    : m_measuresInPixels(flagSetting(description, "manualLayout"_L1))
    , m_fontName(description.setting("fontName"_L1).toString())
    , m_horizontal(alignmentSetting(description, "horizontalAlignment"_L1))
    , m_vertical(alignmentSetting(description, "verticalAlignment"_L1))
{}

void TextImage::run(Context &context)
{
    const double unit = unitsPerPixel(context.destination());
    const double scale = m_measuresInPixels ? 1.0 : 1.0 / unit;
    const QString fontName = context.string(FontName);
    const TextRequest request{.text = context.string(String),
                              .fontName = fontName.isEmpty() ? m_fontName : fontName,
                              .glyphSize = context.number(GlyphSize) * scale,
                              .width = context.number(Width) * scale,
                              .height = context.number(Height) * scale,
                              .leading = context.number(Leading) * scale,
                              .kerning = context.number(Kerning) * scale,
                              .horizontal = m_horizontal,
                              .vertical = m_vertical};
    const Picture &picture = pictureOf(request, context);
    context.set(ImageOutput, picture.image ? Value(picture.image) : Value());
    context.set(LineCount, Value::index(picture.lines));
    context.set(GlyphCount, Value::index(request.text.size()));
    const QSize size = picture.image ? picture.image->pixelSize() : QSize(0, 0);
    context.set(WidthOutput, size.width() * unit);
    context.set(HeightOutput, size.height() * unit);
}

const TextImage::Picture &TextImage::pictureOf(const TextRequest &request, Context &context)
{
    const auto found = std::ranges::find(m_pictures, request, &Picture::request);
    if (found != m_pictures.end()) {
        return *found;
    }
    Picture picture{.request = request, .image = {}};
    // To lay out and paint a character takes as long as running a simple patch, to find a font too.
    constexpr qint64 fontRuns = 50;
    context.charge(fontRuns + std::min(request.text.size(), mostPaintedCharacters));
    const QImage bitmap = paintText(request, &picture.lines);
    picture.bytes = bitmap.sizeInBytes();
    forget(picture.bytes);
    picture.image = Image::fromBitmap(bitmap, context.imageBudget());
    if (!picture.image && !bitmap.isNull()) {
        // Others use the memory too: all that is kept goes, the one that is shown included.
        m_pictures.clear();
        m_bytes = 0;
        context.set(ImageOutput, {});
        picture.image = Image::fromBitmap(bitmap, context.imageBudget());
    }
    m_bytes += picture.bytes;
    m_pictures.push_front(std::move(picture));
    return m_pictures.front();
}

/// Makes room for a new picture.
void TextImage::forget(qint64 bytes)
{
    constexpr size_t mostPictures = 128;
    constexpr qint64 mostBytes = limits::imageBytes / 16;
    while (!m_pictures.empty() &&
           (m_pictures.size() >= mostPictures || m_bytes + bytes > mostBytes)) {
        m_bytes -= m_pictures.back().bytes;
        m_pictures.pop_back();
    }
}

} // namespace tarnwell::compositions
