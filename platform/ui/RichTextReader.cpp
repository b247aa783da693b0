#include "ui/RichTextReader.h"

#include <algorithm>

namespace tarnwell::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t deepestGroup = 256;
constexpr qsizetype mostParagraphs = 100'000;
constexpr qsizetype mostRuns = 200'000;
constexpr int mostPictures = 64;
constexpr qsizetype mostColors = 4096;
constexpr qsizetype longestName = 4096;

/// The characters of Windows' western code page that are not those of Latin 1.
constexpr char16_t westernExtras[] = u"\u20AC\uFFFD\u201A\u0192\u201E\u2026\u2020\u2021"
                                     u"\u02C6\u2030\u0160\u2039\u0152\uFFFD\u017D\uFFFD"
                                     u"\uFFFD\u2018\u2019\u201C\u201D\u2022\u2013\u2014"
                                     u"\u02DC\u2122\u0161\u203A\u0153\uFFFD\u017E\u0178";

char16_t westernCharacter(uchar byte)
{
    return byte >= 0x80 && byte < 0xA0 ? westernExtras[byte - 0x80] : byte;
}

/// Characters that text may hold: no control characters, and none of those that a text document
/// keeps its own structure with.
bool isText(char16_t unit)
{
    return (unit >= 0x20 && unit != 0x7F && !(unit >= 0x80 && unit < 0xA0) && unit != 0x2029 &&
            !(unit >= 0xFDD0 && unit <= 0xFDEF) && unit < 0xFFF9) ||
           unit == u'\t' || unit == QChar::ReplacementCharacter;
}

bool isMonospacedFamily(const QString &name)
{
    // The blank keeps Monotype's fonts out, which are of every kind.
    for (const auto &part : {"mono "_L1, "monaco"_L1, "courier"_L1, "menlo"_L1, "consol"_L1}) {
        if ((name + u' ').contains(part, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

void replaceLoneSurrogates(QString &text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (text.at(i).isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
}

} // namespace

RichText parseRichText(QByteArrayView rtf)
{
    return RichTextReader().read(rtf);
}

QString RichTextParagraph::text() const
{
    QString result;
    for (const RichTextRun &run : runs)
        result += run.text;
    return result;
}

RichText RichTextReader::read(QByteArrayView rtf)
{
    // Something else than RTF would show as a wall of bytes.
    if (!rtf.startsWith("{\\rtf"))
        return {};
    RichTextTokenizer tokenizer(rtf);
    while (m_result.paragraphs.size() < mostParagraphs && m_runCount < mostRuns &&
           takeToken(tokenizer.next())) {
    }
    if (!m_paragraph.runs.isEmpty()) {
        state().paragraph = m_paragraph.style;
        endParagraph();
    }
    return std::move(m_result);
}

bool RichTextReader::takeToken(const RichTextToken &token)
{
    using Kind = RichTextToken::Kind;
    const bool isIgnored = m_ignoredGroups > 0;
    switch (token.kind) {
    case Kind::End:
        return false;
    case Kind::GroupStart:
        openGroup();
        break;
    case Kind::GroupEnd:
        closeGroup();
        break;
    case Kind::Word:
        if (!isIgnored)
            takeWord(token);
        break;
    case Kind::Symbol:
        if (!isIgnored)
            takeSymbol(token.bytes[0]);
        break;
    case Kind::Byte:
        if (!isIgnored)
            appendCharacter(westernCharacter(static_cast<uchar>(token.parameter.value_or(0))));
        break;
    case Kind::Bytes:
        if (!isIgnored)
            takeBytes(token.bytes);
        break;
    case Kind::Binary:
        break;
    }
    return true;
}

void RichTextReader::openGroup()
{
    m_substitutes = 0;
    m_isOptional = false;
    if (m_ignoredGroups > 0 || m_states.size() >= deepestGroup) {
        ++m_ignoredGroups;
        return;
    }
    State inner = state();
    inner.opensDestination = false;
    m_states.push_back(std::move(inner));
}

void RichTextReader::closeGroup()
{
    m_substitutes = 0;
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
    if (closed.destination == Destination::FieldInstruction)
        endLink();
    if (closed.destination == Destination::PictureName)
        appendPicture();
}

/// What the field shows lies beside its instruction, so the link is the group's around both.
void RichTextReader::endLink()
{
    const QString instruction = std::exchange(m_name, {}).trimmed();
    const auto keyword = "HYPERLINK"_L1;
    if (!instruction.startsWith(keyword, Qt::CaseInsensitive))
        return;
    const QString address = instruction.sliced(keyword.size()).trimmed();
    state().style.link = address.startsWith(u'"') ? address.section(u'"', 1, 1).trimmed()
                                                  : address.section(u' ', 0, 0);
}

void RichTextReader::takeWord(const RichTextToken &token)
{
    const bool isOptional = std::exchange(m_isOptional, false);
    const Word *word = wordOfName(token.name());
    if (!word && isOptional)
        setDestination(Destination::Skipped);
    // A word among the substitutes of a \u counts as one of them, but a writer that forgot them
    // would lose its formatting so: words are obeyed.
    if (word && state().destination != Destination::Skipped)
        word->take(*this, token.parameter);
}

void RichTextReader::takeSymbol(char symbol)
{
    switch (symbol) {
    case '*':
        m_isOptional = true;
        break;
    case '\\':
    case '{':
    case '}':
    case '\t':
        appendCharacter(static_cast<uchar>(symbol));
        break;
    case '\r':
    case '\n':
        if (state().destination == Destination::Body)
            endParagraph();
        break;
    case '~':
        appendCharacter(0x00A0);
        break;
    case '-':
        appendCharacter(0x00AD);
        break;
    case '_':
        appendCharacter(0x2011);
        break;
    default:
        break;
    }
}

void RichTextReader::takeBytes(QByteArrayView bytes)
{
    const auto skipped = std::min<qsizetype>(m_substitutes, bytes.size());
    m_substitutes -= int(skipped);
    QString text;
    text.reserve(bytes.size() - skipped);
    for (const char byte : bytes.sliced(skipped))
        text += QChar(westernCharacter(static_cast<uchar>(byte)));
    appendText(text);
}

void RichTextReader::appendCharacter(char16_t character)
{
    if (m_substitutes > 0)
        --m_substitutes;
    else
        appendText(QStringView(&character, 1));
}

void RichTextReader::appendText(QStringView text)
{
    switch (state().destination) {
    case Destination::Body:
        appendBodyText(text);
        break;
    case Destination::ColorTable:
        for (const QChar c : text) {
            if (c == u';' && m_colors.size() < mostColors)
                m_colors.append(std::exchange(m_definedColor, {}));
        }
        break;
    case Destination::FontTable:
        for (const QChar c : text) {
            if (c != u';' && m_fontName.size() < longestName)
                m_fontName += c;
            else if (isMonospacedFamily(std::exchange(m_fontName, {})))
                setMonospaced();
        }
        break;
    case Destination::FieldInstruction:
    case Destination::PictureName:
        if (m_name.size() + text.size() <= longestName)
            m_name += text;
        break;
    case Destination::Skipped:
        break;
    }
}

void RichTextReader::appendBodyText(QStringView text)
{
    QString shown;
    for (const QChar c : text) {
        if (isText(c.unicode()))
            shown += c;
    }
    if (shown.isEmpty() || state().isHidden)
        return;
    m_paragraph.style = state().paragraph;
    if (!m_paragraph.runs.isEmpty() && !m_paragraph.runs.last().picture &&
        m_paragraph.runs.last().style == state().style) {
        m_paragraph.runs.last().text += shown;
        return;
    }
    ++m_runCount;
    m_paragraph.runs.append({shown, state().style, {}});
}

void RichTextReader::appendPicture()
{
    const QString name = std::exchange(m_name, {}).trimmed();
    if (state().destination == Destination::Body && !state().isHidden && !name.isEmpty() &&
        m_pictureCount < mostPictures) {
        ++m_pictureCount;
        ++m_runCount;
        m_paragraph.style = state().paragraph;
        m_paragraph.runs.append({{}, state().style, RichTextPicture{name, m_pictureSize}});
    }
    // The character beside the name stands in for the picture where none can be shown.
    if (m_states.size() > 2)
        state().destination = Destination::Skipped;
}

void RichTextReader::endParagraph()
{
    m_paragraph.style = state().paragraph;
    for (RichTextRun &run : m_paragraph.runs)
        replaceLoneSurrogates(run.text);
    m_result.paragraphs.append(std::exchange(m_paragraph, {}));
}

} // namespace tarnwell::ui
