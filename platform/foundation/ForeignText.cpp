#include "foundation/ForeignText.h"

#include <QChar>
#include <QStringList>

namespace tarnwell::foundation {

using namespace Qt::StringLiterals;

namespace {

/// Whether a character draws nothing of its own, breaks the line or steers the text around it.
bool isUnfit(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Other_Format:
        // Persian and Indian words and composed emoji need the joiners, which turn nothing around.
        return character != 0x200C && character != 0x200D;
    default:
        // The fillers of Korean are letters that draw nothing.
        return character == 0x115F || character == 0x1160 || character == 0x3164 ||
               character == 0xFFA0;
    }
}

QString codePoint(char32_t character)
{
    return QString::number(uint(character), 16).toUpper().rightJustified(4, u'0');
}

QString shownMark(char32_t character)
{
    if (character < 0x20)
        return QString(QChar(0x2400 + char16_t(character)));
    if (character == 0x7F)
        return QString(QChar(0x2421));
    return u"[U+%1]"_s.arg(codePoint(character));
}

QString loggedMark(char32_t character)
{
    switch (character) {
    case U'\n':
        return u"\\n"_s;
    case U'\r':
        return u"\\r"_s;
    case U'\t':
        return u"\\t"_s;
    default:
        return u"\\u{%1}"_s.arg(codePoint(character));
    }
}

/// Replaces each unfit character by a mark. The text itself when there is none.
QString withMarks(const QString &text, QString (*mark)(char32_t))
{
    QString result;
    qsizetype done = 0;
    for (qsizetype start = 0, end = 0; start < text.size(); start = end) {
        char32_t character = text.at(start).unicode();
        end = start + 1;
        if (text.at(start).isHighSurrogate() && end < text.size() && text.at(end).isLowSurrogate())
            character = QChar::surrogateToUcs4(text.at(start), text.at(end++));
        if (!isUnfit(character))
            continue;
        result += QStringView(text).sliced(done, start - done);
        result += mark(character);
        done = end;
    }
    return done == 0 ? text : result + text.sliced(done);
}

/// The first and the last characters of a text with something between them, never half a
/// surrogate pair.
QString cutInTheMiddle(const QString &text, qsizetype maximumLength, const QString &between)
{
    const qsizetype kept = qMax(maximumLength - between.size(), 0);
    qsizetype head = (kept + 1) / 2;
    qsizetype tail = kept / 2;
    if (head > 0 && text.at(head - 1).isHighSurrogate())
        --head;
    if (tail > 0 && text.at(text.size() - tail).isLowSurrogate())
        --tail;
    return text.first(head) + between + text.last(tail);
}

/// The first characters of a text, never half a surrogate pair.
QString beginning(const QString &text, qsizetype length)
{
    const bool endsInHalf =
        length > 0 && length < text.size() && text.at(length - 1).isHighSurrogate();
    return text.first(endsInHalf ? length - 1 : qMin(length, text.size()));
}

} // namespace

QString shownText(const QString &text, qsizetype maximumLength)
{
    // A mark is at least as long as what it stands for, so no more of a long text can show.
    const QString ends = text.size() > 2 * maximumLength + 2
                             ? cutInTheMiddle(text, 2 * maximumLength + 1, u"…"_s)
                             : text;
    const QString marked = withMarks(ends, shownMark);
    return marked.size() > maximumLength ? cutInTheMiddle(marked, maximumLength, u"…"_s) : marked;
}

QString shownLines(const QString &text, qsizetype maximumLength, qsizetype maximumLines)
{
    QString shown = beginning(text, maximumLength + 1);
    shown.replace("\r\n"_L1, "\n"_L1).replace(u'\t', u' ');
    for (const char16_t lineBreak : {u'\r', u'\v', u'\f', u'\u0085', u'\u2028', u'\u2029'})
        shown.replace(lineBreak, u'\n');
    QStringList lines = shown.split(u'\n');
    bool isCut = lines.size() > maximumLines || text.size() > maximumLength + 1;
    lines.resize(qMin(lines.size(), maximumLines));
    for (QString &line : lines)
        line = withMarks(line, shownMark);
    shown = lines.join(u'\n');
    isCut = isCut || shown.size() > maximumLength;
    return isCut ? beginning(shown, maximumLength - 1) + u'…' : shown;
}

QString loggedText(const QString &text, qsizetype maximumLength)
{
    const QString marked =
        text.size() > maximumLength
            ? withMarks(
                  cutInTheMiddle(text, maximumLength, u"… (%1 characters) …"_s.arg(text.size())),
                  loggedMark)
            : withMarks(text, loggedMark);
    return marked.size() > maximumLength ? cutInTheMiddle(marked, maximumLength, u"…"_s) : marked;
}

} // namespace tarnwell::foundation
