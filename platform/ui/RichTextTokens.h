#pragma once

#include <QByteArrayView>
#include <QLatin1StringView>

#include <optional>

namespace tarnwell::ui {

/// One piece of RTF.
struct RichTextToken
{
    enum class Kind {
        End,
        GroupStart,
        GroupEnd,
        Word,   ///< \word or \word123
        Symbol, ///< \ and a character that is no letter
        Byte,   ///< \'hh
        Bytes,  ///< text without line ends
        Binary, ///< what follows \bin
    };

    Kind kind = Kind::End;
    QByteArrayView bytes;         ///< of a word its name; of a symbol the one character
    std::optional<int> parameter; ///< of a word; of \'hh the byte

    QLatin1StringView name() const { return QLatin1StringView(bytes.data(), bytes.size()); }
};

/// Cuts RTF into tokens. Every byte is looked at once; the tokens borrow them.
class RichTextTokenizer
{
public:
    explicit RichTextTokenizer(QByteArrayView rtf)
        : m_rtf(rtf)
    {}

    /// The next token; the end again and again once it is reached.
    RichTextToken next();

private:
    RichTextToken readControl();
    RichTextToken readWord();
    std::optional<int> readParameter();
    bool atEnd() const { return m_position >= m_rtf.size(); }
    char current() const { return m_rtf[m_position]; }

    QByteArrayView m_rtf;
    qsizetype m_position = 0;
};

} // namespace tarnwell::ui
