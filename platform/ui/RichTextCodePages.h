#pragma once

#include <QByteArrayView>
#include <QString>

#include <map>
#include <memory>

namespace tarnwell::ui {

inline constexpr int westernCodePage = 1252;
inline constexpr int macRomanCodePage = 10000;

/// The code page that texts in a font of a character set (as \fcharset numbers them) are written
/// in; 0 where the document's own counts.
int codePageOfCharacterSet(int characterSet);

/// Decodes text of code pages.
class CodePageDecoder
{
public:
    CodePageDecoder();
    ~CodePageDecoder();

    /// The characters of some bytes. What stands for no character becomes U+FFFD; a code page that
    /// is not known is read as the Western one.
    QString decode(QByteArrayView bytes, int codePage);

private:
    class Converter;

    std::map<int, std::unique_ptr<Converter>> m_converters; ///< null for one that there isn't
};

} // namespace tarnwell::ui
