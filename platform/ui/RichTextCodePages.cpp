#include "ui/RichTextCodePages.h"

#include <QSysInfo>

#include <algorithm>
#include <array>
#include <cstdio>

#include <iconv.h>

namespace tarnwell::ui {

namespace {

// The two code pages that nearly every text has are built in, so that they need no converter of
// the system's.
constexpr char16_t western80[] = u"\u20AC\uFFFD\u201A\u0192\u201E\u2026\u2020\u2021"
                                 u"\u02C6\u2030\u0160\u2039\u0152\uFFFD\u017D\uFFFD"
                                 u"\uFFFD\u2018\u2019\u201C\u201D\u2022\u2013\u2014"
                                 u"\u02DC\u2122\u0161\u203A\u0153\uFFFD\u017E\u0178";
constexpr char16_t macRoman80[] = u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü"
                                  u"†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
                                  u"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
                                  u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
static_assert(std::size(western80) == 32 + 1);
static_assert(std::size(macRoman80) == 128 + 1);

// The rest is asked of the system by number; others are not, since a number is a stranger's.
constexpr std::array otherCodePages{437,  850,  852,  866,  874,  932,  936,  949,  950,
                                    1250, 1251, 1253, 1254, 1255, 1256, 1257, 1258, 1361};

char16_t westernCharacter(quint8 byte)
{
    return byte >= 0x80 && byte < 0xA0 ? western80[byte - 0x80] : char16_t{byte};
}

char16_t macRomanCharacter(quint8 byte)
{
    return byte >= 0x80 ? macRoman80[byte - 0x80] : char16_t{byte};
}

QString decodeBytes(QByteArrayView bytes, char16_t (*character)(quint8))
{
    QString text(bytes.size(), Qt::Uninitialized);
    std::ranges::transform(bytes, text.begin(),
                           [character](char byte) { return QChar(character(quint8(byte))); });
    return text;
}

} // namespace

class CodePageDecoder::Converter
{
public:
    explicit Converter(iconv_t descriptor)
        : m_descriptor(descriptor)
    {}
    ~Converter() { iconv_close(m_descriptor); }
    Q_DISABLE_COPY_MOVE(Converter)

    /// Null when the system has none for the code page.
    static std::unique_ptr<Converter> open(int codePage)
    {
        char name[16];
        std::snprintf(name, sizeof name, "CP%d", codePage);
        const auto descriptor = iconv_open(
            QSysInfo::ByteOrder == QSysInfo::LittleEndian ? "UTF-16LE" : "UTF-16BE", name);
        // The platform's own mark for failure is a pointer of all ones.
        if (descriptor == reinterpret_cast<iconv_t>(-1)) // NOLINT(performance-no-int-to-ptr)
            return nullptr;
        return std::make_unique<Converter>(descriptor);
    }

    QString decode(QByteArrayView bytes)
    {
        iconv(m_descriptor, nullptr, nullptr, nullptr, nullptr);
        QString text;
        auto *in = const_cast<char *>(bytes.data());
        std::size_t inLeft = std::size_t(bytes.size());
        while (inLeft > 0) {
            std::array<char16_t, 256> buffer;
            char *out = reinterpret_cast<char *>(buffer.data());
            std::size_t outLeft = sizeof buffer;
            const std::size_t before = inLeft;
            const std::size_t result = iconv(m_descriptor, &in, &inLeft, &out, &outLeft);
            const auto units = qsizetype((sizeof buffer - outLeft) / sizeof(char16_t));
            text.append(QStringView(buffer.data(), units));
            const bool isStuck = result == std::size_t(-1) && (units == 0 || inLeft == before);
            const bool isFull = outLeft < 8;
            if (isStuck || (result == std::size_t(-1) && !isFull)) {
                text.append(QChar::ReplacementCharacter);
                ++in;
                --inLeft;
            }
        }
        // Some code pages hold a letter back until they know that no accent follows.
        std::array<char16_t, 8> rest;
        char *out = reinterpret_cast<char *>(rest.data());
        std::size_t outLeft = sizeof rest;
        iconv(m_descriptor, nullptr, nullptr, &out, &outLeft);
        text.append(
            QStringView(rest.data(), qsizetype((sizeof rest - outLeft) / sizeof(char16_t))));
        return text;
    }

private:
    iconv_t m_descriptor;
};

int codePageOfCharacterSet(int characterSet)
{
    switch (characterSet) {
    case 77:
        return macRomanCodePage;
    case 128:
        return 932;
    case 129:
        return 949;
    case 130:
        return 1361;
    case 134:
        return 936;
    case 136:
        return 950;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 163:
        return 1258;
    case 177:
        return 1255;
    case 178:
        return 1256;
    case 186:
        return 1257;
    case 204:
        return 1251;
    case 222:
        return 874;
    case 238:
        return 1250;
    case 255:
        return 850;
    default:
        return 0;
    }
}

CodePageDecoder::CodePageDecoder() = default;
CodePageDecoder::~CodePageDecoder() = default;

QString CodePageDecoder::decode(QByteArrayView bytes, int codePage)
{
    if (std::ranges::all_of(bytes, [](char byte) { return quint8(byte) < 0x80; }))
        return QString::fromLatin1(bytes);
    if (codePage == macRomanCodePage)
        return decodeBytes(bytes, macRomanCharacter);
    if (codePage == 65001)
        return QString::fromUtf8(bytes);
    if (std::ranges::find(otherCodePages, codePage) != otherCodePages.end()) {
        auto [entry, isNew] = m_converters.try_emplace(codePage);
        if (isNew)
            entry->second = Converter::open(codePage);
        if (entry->second)
            return entry->second->decode(bytes);
    }
    return decodeBytes(bytes, westernCharacter);
}

} // namespace tarnwell::ui
