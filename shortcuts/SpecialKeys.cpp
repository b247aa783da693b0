#include "shortcuts/SpecialKeys.h"

#include <QStringView>

#include <algorithm>
#include <iterator>

namespace tarnwell::shortcuts {

namespace {

struct SpecialKey
{
    quint16 code; // virtual key code; 0 for a key that only menus name
    quint8 glyph; // menu glyph code
    QStringView text;
};

// Searched from the top: of keys with one code the first is shown.
constexpr SpecialKey specialKeys[] = {
    // clang-format off
    {0x30, 0x02, u"\u21E5"}, // ⇥
    {0x30, 0x03, u"\u21E4"}, // ⇤
    {0x4C, 0x04, u"\u2305"}, // ⌅
    {0, 0x09, u"\u2423"}, // ␣
    {0x33, 0x0A, u"\u2326"}, // ⌦
    {0x75, 0x17, u"\u232B"}, // ⌫
    {0x24, 0x0B, u"\u21A9"}, // ↩
    {0x24, 0x0C, u"\u21AA"}, // ↪
    {0x24, 0x0D, u"\u21B5"}, // ↵
    {0, 0x10, u"\u21E3"}, // ⇣
    {0, 0x18, u"\u21E0"}, // ⇠
    {0, 0x19, u"\u21E1"}, // ⇡
    {0, 0x1A, u"\u21E2"}, // ⇢
    {0x35, 0x1B, u"\u238B"}, // ⎋
    {0x47, 0x1C, u"\u2327"}, // ⌧
    {0x74, 0x62, u"\u21DE"}, // ⇞
    {0x79, 0x6B, u"\u21DF"}, // ⇟
    {0x7B, 0x64, u"\u2190"}, // ←
    {0x7C, 0x65, u"\u2192"}, // →
    {0x7E, 0x68, u"\u2191"}, // ↑
    {0x7D, 0x6A, u"\u2193"}, // ↓
    {0x73, 0x66, u"\u2196"}, // ↖
    {0x77, 0x69, u"\u2198"}, // ↘
    {0x72, 0x67, u"<<Help Key>>"},
    {0, 0x6E, u"\u233D"}, // ⌽
    {0x7A, 0x6F, u"F1"},
    {0x78, 0x70, u"F2"},
    {0x63, 0x71, u"F3"},
    {0x76, 0x72, u"F4"},
    {0x60, 0x73, u"F5"},
    {0x61, 0x74, u"F6"},
    {0x62, 0x75, u"F7"},
    {0x64, 0x76, u"F8"},
    {0x65, 0x77, u"F9"},
    {0x6D, 0x78, u"F10"},
    {0x67, 0x79, u"F11"},
    {0x6F, 0x7A, u"F12"},
    {0x69, 0x87, u"F13"},
    {0x3B, 0x88, u"F14"}, // the left Control key: stored shortcuts know F14 by this code
    {0x71, 0x89, u"F15"},
    {0x6A, 0x8F, u"F16"},
    {0, 0x8C, u"\u23CF"}, // ⏏
    // clang-format on
};

} // namespace

std::optional<QString> SpecialKeyString(quint16 code)
{
    if (code == 0)
        return std::nullopt;
    const auto key = std::ranges::find(specialKeys, code, &SpecialKey::code);
    if (key == std::end(specialKeys))
        return std::nullopt;
    return key->text.toString();
}

std::optional<QString> MenuGlyphString(quint32 glyphCode)
{
    // A menu glyph code could be read as text in the encoding of the menu font before the table is
    // asked. No converter for that encoding exists here, so that attempt could never yield a
    // string, and the table always answers.
    const auto key = std::ranges::find(specialKeys, glyphCode, &SpecialKey::glyph);
    if (key == std::end(specialKeys))
        return std::nullopt;
    return key->text.toString();
}

} // namespace tarnwell::shortcuts
