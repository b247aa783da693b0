#include "ui/RichTextParser.h"

#include <algorithm>

namespace tarnwell::ui {

namespace {

constexpr std::size_t deepestGroup = 256;
constexpr qsizetype largestPicture = 8 << 20;

std::optional<int> hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return std::nullopt;
}

} // namespace

RichText parseRichText(QByteArrayView rtf)
{
    return RichTextParser().parse(rtf);
}

QString RichTextParagraph::text() const
{
    QString result;
    for (const RichTextRun &run : runs)
        result += run.text;
    return result;
}

RichText RichTextParser::parse(QByteArrayView rtf)
{
    // Something else than RTF would show as a wall of bytes.
    if (!rtf.startsWith("{\\rtf"))
        return {};
    RichTextTokenizer tokenizer(rtf);
    while (!isFull() && takeToken(tokenizer.next())) {
    }
    finish();
    return std::move(m_result);
}

bool RichTextParser::takeToken(const RichTextToken &token)
{
    using Kind = RichTextToken::Kind;
    if (token.kind != Kind::Bytes && token.kind != Kind::Byte)
        flushBytes();
    if (token.kind == Kind::End)
        return false;
    if (token.kind == Kind::GroupStart) {
        openGroup();
        return true;
    }
    if (token.kind == Kind::GroupEnd) {
        closeGroup();
        return true;
    }
    if (m_ignoredGroups > 0)
        return true;
    // A word after the characters that \u is to be skipped with counts as one of them, but a
    // writer that forgot them would lose its formatting so: words are obeyed.
    switch (token.kind) {
    case Kind::Word:
        takeWord(richTextWord(token.name()), token.parameter);
        break;
    case Kind::Symbol:
        takeSymbol(token.bytes[0]);
        break;
    case Kind::Byte:
        if (m_unicodeSkip > 0)
            --m_unicodeSkip;
        else if (m_states.back().destination != Destination::Picture)
            m_bytes.append(static_cast<char>(token.parameter.value_or(0)));
        break;
    case Kind::Bytes:
        takeBytes(token.bytes);
        break;
    case Kind::Binary:
        if (m_states.back().destination == Destination::Picture &&
            m_picture.data.size() + token.bytes.size() <= largestPicture)
            m_picture.data.append(token.bytes);
        break;
    default:
        break;
    }
    return true;
}

void RichTextParser::openGroup()
{
    m_unicodeSkip = 0;
    m_isOptional = false;
    if (m_ignoredGroups > 0 || m_states.size() >= deepestGroup) {
        ++m_ignoredGroups;
        return;
    }
    State state = m_states.back();
    state.opensDestination = false;
    m_states.push_back(std::move(state));
}

void RichTextParser::closeGroup()
{
    m_unicodeSkip = 0;
    m_isOptional = false;
    if (m_ignoredGroups > 0) {
        --m_ignoredGroups;
        return;
    }
    if (m_states.size() <= 1)
        return; // one more than were opened
    const State closed = std::move(m_states.back());
    m_states.pop_back();
    if (!closed.opensDestination)
        return;
    State &outer = m_states.back();
    switch (closed.destination) {
    case Destination::FieldInstruction: {
        // What the field shows lies beside its instruction, so the link is the group's around both.
        const QString instruction = std::exchange(m_instruction, {}).trimmed();
        const auto keyword = QLatin1StringView("HYPERLINK");
        if (!instruction.startsWith(keyword, Qt::CaseInsensitive))
            break;
        QString address = instruction.sliced(keyword.size()).trimmed();
        if (address.startsWith(u'"'))
            address = address.section(u'"', 1, 1);
        else
            address = address.section(u' ', 0, 0);
        outer.style.link = address.trimmed();
        break;
    }
    case Destination::PictureName:
        m_picture.name = std::exchange(m_instruction, {}).trimmed();
        if (!m_picture.name.isEmpty())
            appendPicture();
        m_picture = {};
        // The character beside the name stands in for the picture where none can be shown.
        if (m_states.size() > 2)
            outer.destination = Destination::Skipped;
        break;
    case Destination::Picture:
        if (m_pictureFormat != PictureFormat::Unknown && !m_picture.data.isEmpty())
            appendPicture();
        m_picture = {};
        break;
    default:
        break;
    }
}

void RichTextParser::takeSymbol(char symbol)
{
    if (symbol == '*') {
        m_isOptional = true;
        return;
    }
    if (m_unicodeSkip > 0) {
        --m_unicodeSkip;
        return;
    }
    switch (symbol) {
    case '\\':
    case '{':
    case '}':
        appendText(QString(QLatin1Char(symbol)));
        break;
    case '\r':
    case '\n':
        takeWord(RichTextWord::Par, {});
        break;
    case '\t':
        appendText(QString(u'\t'));
        break;
    case '~':
        appendText(QString(QChar(0x00A0)));
        break;
    case '-':
        appendText(QString(QChar(0x00AD)));
        break;
    case '_':
        appendText(QString(QChar(0x2011)));
        break;
    default:
        break;
    }
}

void RichTextParser::takeBytes(QByteArrayView bytes)
{
    const auto skipped = std::min<qsizetype>(m_unicodeSkip, bytes.size());
    m_unicodeSkip -= int(skipped);
    bytes = bytes.sliced(skipped);
    switch (m_states.back().destination) {
    case Destination::Skipped:
        break;
    case Destination::Picture:
        takePictureDigits(bytes);
        break;
    default:
        m_bytes.append(bytes);
        break;
    }
}

void RichTextParser::takePictureDigits(QByteArrayView bytes)
{
    for (const char c : bytes) {
        const std::optional<int> digit = hexDigit(c);
        if (!digit || m_picture.data.size() >= largestPicture)
            continue;
        if (m_halfByte)
            m_picture.data.append(static_cast<char>(*std::exchange(m_halfByte, {}) << 4 | *digit));
        else
            m_halfByte = digit;
    }
}

void RichTextParser::flushBytes()
{
    if (m_bytes.isEmpty())
        return;
    const QByteArray bytes = std::exchange(m_bytes, {});
    if (m_states.back().destination != Destination::Skipped)
        appendText(m_decoder.decode(bytes, codePage()));
}

int RichTextParser::codePage() const
{
    const State &state = m_states.back();
    const int font = state.destination == Destination::FontTable ? m_definedFont : state.font;
    const int codePage = m_fonts.value(font).codePage;
    return codePage != 0 ? codePage : m_documentCodePage;
}

} // namespace tarnwell::ui
