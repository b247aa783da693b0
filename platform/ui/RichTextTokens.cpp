#include "ui/RichTextTokens.h"

#include <algorithm>

namespace tarnwell::ui {

namespace {

constexpr qint64 largestParameter = 0x7FFFFFFF;

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLineEnd(char c)
{
    return c == '\r' || c == '\n';
}

std::optional<int> hexDigit(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return std::nullopt;
}

} // namespace

RichTextToken RichTextTokenizer::next()
{
    while (!atEnd() && isLineEnd(current()))
        ++m_position;
    if (atEnd())
        return {};
    switch (current()) {
    case '{':
        ++m_position;
        return {RichTextToken::Kind::GroupStart, {}, {}};
    case '}':
        ++m_position;
        return {RichTextToken::Kind::GroupEnd, {}, {}};
    case '\\':
        ++m_position;
        return readControl();
    default:
        break;
    }
    const qsizetype start = m_position;
    while (!atEnd() && !isLineEnd(current()) && current() != '{' && current() != '}' &&
           current() != '\\')
        ++m_position;
    return {RichTextToken::Kind::Bytes, m_rtf.sliced(start, m_position - start), {}};
}

RichTextToken RichTextTokenizer::readControl()
{
    if (atEnd())
        return {};
    if (isLetter(current()))
        return readWord();
    const QByteArrayView symbol = m_rtf.sliced(m_position++, 1);
    if (symbol[0] != '\'')
        return {RichTextToken::Kind::Symbol, symbol, {}};
    // A writer that was cut short leaves one digit or none; they count as far as they go.
    int byte = 0;
    for (int digits = 0; digits < 2 && !atEnd(); ++digits, ++m_position) {
        const std::optional<int> digit = hexDigit(current());
        if (!digit)
            break;
        byte = byte * 16 + *digit;
    }
    return {RichTextToken::Kind::Byte, {}, byte};
}

RichTextToken RichTextTokenizer::readWord()
{
    const qsizetype start = m_position;
    while (!atEnd() && isLetter(current()))
        ++m_position;
    RichTextToken token{RichTextToken::Kind::Word, m_rtf.sliced(start, m_position - start), {}};
    token.parameter = readParameter();
    // One blank belongs to the word.
    if (!atEnd() && current() == ' ')
        ++m_position;
    if (token.name() == QLatin1StringView("bin")) {
        const auto size = std::min<qsizetype>(std::max(0, token.parameter.value_or(0)),
                                              m_rtf.size() - m_position);
        token = {RichTextToken::Kind::Binary, m_rtf.sliced(m_position, size), {}};
        m_position += size;
    }
    return token;
}

std::optional<int> RichTextTokenizer::readParameter()
{
    const qsizetype start = m_position;
    const bool isNegative = !atEnd() && current() == '-';
    if (isNegative)
        ++m_position;
    if (atEnd() || !isDigit(current())) {
        m_position = start; // a hyphen that is text
        return std::nullopt;
    }
    qint64 number = 0;
    for (; !atEnd() && isDigit(current()); ++m_position)
        number = std::min(number * 10 + (current() - '0'), largestParameter);
    return static_cast<int>(isNegative ? -number : number);
}

} // namespace tarnwell::ui
