#pragma once

#include <QImage>
#include <QString>

namespace tarnwell::compositions {

/// What lies beyond is not painted.
inline constexpr qsizetype mostPaintedCharacters = 20'000;

enum class TextAlignment : quint8 { Normal, Centered, Opposite, Justified };

/// A text to be drawn into an image; all lengths in pixels.
struct TextRequest
{
    QString text;
    QString fontName; ///< as fonts name themselves to printers: "Family-BoldItalic"
    double glyphSize = 16.0;
    double width = 0.0;  ///< 0: as wide as the longest line
    double height = 0.0; ///< 0: as high as the lines together
    double leading = 0.0;
    double kerning = 0.0;
    TextAlignment horizontal = TextAlignment::Normal;
    TextAlignment vertical = TextAlignment::Normal;

    friend bool operator==(const TextRequest &, const TextRequest &) = default;
};

/// White glyphs on nothing. Null when there is nothing to see, or no font system in this process.
QImage paintText(const TextRequest &request, int *lineCount = nullptr);

} // namespace tarnwell::compositions
