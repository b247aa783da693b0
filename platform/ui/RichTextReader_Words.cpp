// The control words that mean something here.

#include "ui/RichTextReader.h"

#include <algorithm>
#include <iterator>

namespace tarnwell::ui {

namespace {

using Number = std::optional<int>;

constexpr double twipsInPoint = 20.0;
constexpr double twipsOfSingleLine = 240.0;
constexpr double longestLength = 2000.0;
constexpr int normalHalfPoints = int(normalPointSize) * 2;
constexpr int mostSubstitutes = 16;
constexpr qsizetype mostFonts = 1024;

double points(Number twips)
{
    return std::clamp(twips.value_or(0) / twipsInPoint, -longestLength, longestLength);
}

double distance(Number twips)
{
    return std::max(0.0, points(twips));
}

/// A word without a number switches on, too.
bool isOn(Number number)
{
    return number != 0;
}

} // namespace

const RichTextReader::Word *RichTextReader::wordOfName(QLatin1StringView name)
{
    using Reader = RichTextReader;
    constexpr auto skip = [](Reader &r, Number) { r.setDestination(Destination::Skipped); };
    constexpr auto paragraph = [](Reader &r, Number) {
        if (r.state().destination == Destination::Body)
            r.endParagraph();
    };
    // Sorted by name.
    static constexpr Word words[] = {
        // clang-format off
        {"NeXTGraphic", [](Reader &r, Number) { r.m_name.clear(); r.m_pictureSize = {}; r.setDestination(Destination::PictureName); }},
        {"b", [](Reader &r, Number n) { r.state().style.bold = isOn(n); }},
        {"blue", [](Reader &r, Number n) { r.setColorComponent(0, n.value_or(0)); }},
        {"bullet", [](Reader &r, Number) { r.appendCharacter(u'\u2022'); }},
        {"cell", [](Reader &r, Number) { r.appendCharacter(u'\t'); }},
        {"cf", [](Reader &r, Number n) { r.state().style.foreground = r.m_colors.value(n.value_or(0)); }},
        {"colortbl", [](Reader &r, Number) { r.m_colors.clear(); r.setDestination(Destination::ColorTable); }},
        {"comment", skip},
        {"emdash", [](Reader &r, Number) { r.appendCharacter(u'\u2014'); }},
        {"emspace", [](Reader &r, Number) { r.appendCharacter(u'\u2003'); }},
        {"endash", [](Reader &r, Number) { r.appendCharacter(u'\u2013'); }},
        {"enspace", [](Reader &r, Number) { r.appendCharacter(u'\u2002'); }},
        {"f", [](Reader &r, Number n) { r.useFont(n.value_or(0)); }},
        {"fi", [](Reader &r, Number n) { r.state().paragraph.firstLineIndent = points(n); }},
        {"field", [](Reader &r, Number) { r.state().style.link.clear(); }},
        {"fldinst", [](Reader &r, Number) { r.m_name.clear(); r.setDestination(Destination::FieldInstruction); }},
        {"fmodern", [](Reader &r, Number) { r.setMonospaced(); }},
        {"fonttbl", [](Reader &r, Number) { r.setDestination(Destination::FontTable); }},
        {"footer", skip},
        {"footerf", skip},
        {"footerl", skip},
        {"footerr", skip},
        {"footnote", skip},
        {"fs", [](Reader &r, Number n) { r.state().style.pointSize = std::clamp(n.value_or(normalHalfPoints), 2, normalHalfPoints * 10) / 2.0; }},
        {"green", [](Reader &r, Number n) { r.setColorComponent(8, n.value_or(0)); }},
        {"header", skip},
        {"headerf", skip},
        {"headerl", skip},
        {"headerr", skip},
        {"height", [](Reader &r, Number n) { r.m_pictureSize.setHeight(distance(n)); }},
        {"i", [](Reader &r, Number n) { r.state().style.italic = isOn(n); }},
        {"info", skip},
        {"ldblquote", [](Reader &r, Number) { r.appendCharacter(u'\u201C'); }},
        {"li", [](Reader &r, Number n) { r.state().paragraph.leftIndent = distance(n); }},
        {"line", [](Reader &r, Number) { r.appendCharacter(u'\u2028'); }},
        {"listoverridetable", skip},
        {"listtable", skip},
        {"lquote", [](Reader &r, Number) { r.appendCharacter(u'\u2018'); }},
        {"nestcell", [](Reader &r, Number) { r.appendCharacter(u'\t'); }},
        {"nestrow", paragraph},
        {"nonshppict", skip},
        {"objdata", skip},
        {"page", paragraph},
        {"par", paragraph},
        {"pard", [](Reader &r, Number) { r.state().paragraph = {}; }},
        {"pict", skip},
        {"plain", [](Reader &r, Number) {
            const QString link = r.state().style.link;
            r.state().style = {};
            r.state().style.link = link;
            r.state().isHidden = false;
            r.useFont(0);
        }},
        {"qc", [](Reader &r, Number) { r.state().paragraph.alignment = Qt::AlignHCenter; }},
        {"qj", [](Reader &r, Number) { r.state().paragraph.alignment = Qt::AlignJustify; }},
        {"ql", [](Reader &r, Number) { r.state().paragraph.alignment = Qt::AlignLeft | Qt::AlignAbsolute; }},
        {"qr", [](Reader &r, Number) { r.state().paragraph.alignment = Qt::AlignRight | Qt::AlignAbsolute; }},
        {"rdblquote", [](Reader &r, Number) { r.appendCharacter(u'\u201D'); }},
        {"red", [](Reader &r, Number n) { r.setColorComponent(16, n.value_or(0)); }},
        {"ri", [](Reader &r, Number n) { r.state().paragraph.rightIndent = distance(n); }},
        {"row", paragraph},
        {"rquote", [](Reader &r, Number) { r.appendCharacter(u'\u2019'); }},
        {"sa", [](Reader &r, Number n) { r.state().paragraph.spaceAfter = distance(n); }},
        {"sb", [](Reader &r, Number n) { r.state().paragraph.spaceBefore = distance(n); }},
        {"sect", paragraph},
        // Only with \slmult1 a multiple; else a length, which would not fit the font in use here.
        {"sl", [](Reader &r, Number n) { r.state().paragraph.lineHeight = std::clamp(n.value_or(0) / twipsOfSingleLine, 0.0, 4.0); }},
        {"slmult", [](Reader &r, Number n) {
            double &height = r.state().paragraph.lineHeight;
            if (n != 1 || height < 0.8)
                height = 1;
        }},
        {"stylesheet", skip},
        {"tab", [](Reader &r, Number) { r.appendCharacter(u'\t'); }},
        {"u", [](Reader &r, Number n) {
            // Above 32767 most writers count on from -32768, and some don't.
            r.m_substitutes = 0;
            r.appendCharacter(static_cast<char16_t>(n.value_or(0)));
            r.m_substitutes = r.state().substitutes;
        }},
        {"uc", [](Reader &r, Number n) { r.state().substitutes = std::clamp(n.value_or(1), 0, mostSubstitutes); }},
        {"ul", [](Reader &r, Number n) { r.state().style.underlined = isOn(n); }},
        {"ulnone", [](Reader &r, Number) { r.state().style.underlined = false; }},
        {"v", [](Reader &r, Number n) { r.state().isHidden = isOn(n); }},
        {"width", [](Reader &r, Number n) { r.m_pictureSize.setWidth(distance(n)); }},
        // clang-format on
    };
    const auto *word = std::ranges::lower_bound(
        words, name, {}, [](const Word &row) { return QLatin1StringView(row.name); });
    return word != std::end(words) && QLatin1StringView(word->name) == name ? word : nullptr;
}

void RichTextReader::setDestination(Destination destination)
{
    state().destination = destination;
    state().opensDestination = true;
}

void RichTextReader::setColorComponent(int shift, int value)
{
    const QRgb others = m_definedColor.value_or(qRgb(0, 0, 0)) & ~(QRgb{0xFF} << shift);
    m_definedColor = others | QRgb(std::clamp(value, 0, 255)) << shift;
}

void RichTextReader::setMonospaced()
{
    if (m_isMonospaced.size() < mostFonts)
        m_isMonospaced.insert(m_definedFont, true);
}

void RichTextReader::useFont(int number)
{
    if (state().destination == Destination::FontTable) {
        m_definedFont = number;
        m_fontName.clear();
    } else {
        state().style.monospaced = m_isMonospaced.value(number);
    }
}

} // namespace tarnwell::ui
