#include "ui/RichTextParser.h"

namespace tarnwell::ui {

namespace {

constexpr qsizetype mostParagraphs = 100'000;
constexpr qsizetype mostRuns = 200'000;
constexpr int mostPictures = 64;
constexpr qsizetype mostColors = 4096;
constexpr qsizetype longestName = 4096;

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
    // A maker of fonts of every kind.
    if (name.contains(QLatin1StringView("monotype"), Qt::CaseInsensitive))
        return false;
    for (const char *part :
         {"mono", "monaco", "courier", "menlo", "consol", "typewriter", "fixed"}) {
        if (name.contains(QLatin1StringView(part), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

/// The text with halves of surrogate pairs replaced.
QString withoutLoneSurrogates(QString text)
{
    if (text.isValidUtf16())
        return text;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (text.at(i).isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

void RichTextParser::appendText(const QString &text)
{
    switch (m_states.back().destination) {
    case Destination::Body:
        appendBodyText(text);
        break;
    case Destination::ColorTable:
    case Destination::FontTable:
        appendTableText(text);
        break;
    case Destination::FieldInstruction:
    case Destination::PictureName:
        if (m_instruction.size() + text.size() <= longestName)
            m_instruction += text;
        break;
    case Destination::Picture:
    case Destination::Skipped:
        break;
    }
}

void RichTextParser::appendBodyText(const QString &text)
{
    const State &state = m_states.back();
    if (state.isHidden)
        return;
    QString shown;
    shown.reserve(text.size());
    for (const QChar c : text) {
        if (c == u'\u2029')
            shown += QChar::LineSeparator;
        else if (isText(c.unicode()))
            shown += c;
    }
    if (shown.isEmpty())
        return;
    m_paragraph.style = state.paragraph;
    if (!m_paragraph.runs.isEmpty() && !m_paragraph.runs.last().picture &&
        m_paragraph.runs.last().style == state.style) {
        m_paragraph.runs.last().text += shown;
        return;
    }
    ++m_runCount;
    m_paragraph.runs.append({shown, state.style, {}});
}

void RichTextParser::appendTableText(const QString &text)
{
    const bool isFont = m_states.back().destination == Destination::FontTable;
    for (const QChar c : text) {
        if (!isFont) {
            if (c == u';' && m_colors.size() < mostColors)
                m_colors.append(std::exchange(m_definedColor, {}));
            continue;
        }
        const auto font = m_fonts.find(m_definedFont);
        if (font == m_fonts.end())
            return;
        if (c != u';') {
            if (font->name.size() < longestName)
                font->name += c;
        } else if (isMonospacedFamily(font->name)) {
            font->isMonospaced = true;
        }
    }
}

void RichTextParser::appendPicture()
{
    const State &outer = m_states.back();
    if (outer.destination != Destination::Body || outer.isHidden || m_pictureCount >= mostPictures)
        return;
    ++m_pictureCount;
    ++m_runCount;
    m_paragraph.style = outer.paragraph;
    m_paragraph.runs.append({{}, outer.style, m_picture});
}

void RichTextParser::endParagraph()
{
    m_paragraph.style = m_states.back().paragraph;
    for (RichTextRun &run : m_paragraph.runs)
        run.text = withoutLoneSurrogates(run.text);
    m_result.paragraphs.append(std::exchange(m_paragraph, {}));
}

void RichTextParser::finish()
{
    if (m_paragraph.runs.isEmpty())
        return;
    const RichTextParagraphStyle style = m_paragraph.style;
    endParagraph();
    m_result.paragraphs.last().style = style;
}

bool RichTextParser::isFull() const
{
    return m_result.paragraphs.size() >= mostParagraphs || m_runCount >= mostRuns;
}

} // namespace tarnwell::ui
