#include "ui/RichTextParser.h"

#include <algorithm>

namespace tarnwell::ui {

namespace {

constexpr double twipsInPoint = 20.0;
constexpr double longestLength = 2000.0;
constexpr int normalHalfPoints = int(normalPointSize) * 2;
constexpr int mostFonts = 1024;
constexpr qsizetype mostTabs = 64;
constexpr int mostSkipped = 16;
constexpr double singleLine = 240.0;

double points(int twips)
{
    return std::clamp(twips / twipsInPoint, -longestLength, longestLength);
}

double distance(int twips)
{
    return std::max(0.0, points(twips));
}

} // namespace

void RichTextParser::takeWord(RichTextWord word, std::optional<int> parameter)
{
    const bool isOptional = std::exchange(m_isOptional, false);
    if (word == RichTextWord::Unknown) {
        if (isOptional)
            setDestination(Destination::Skipped);
        return;
    }
    if (m_states.back().destination == Destination::Skipped)
        return;
    const int number = parameter.value_or(0);
    takeDestinationWord(word) || takeTableWord(word, number) || takeTextWord(word, number) ||
        takeStyleWord(word, parameter) || takeParagraphWord(word, number) ||
        takePictureWord(word, number);
}

void RichTextParser::setDestination(Destination destination)
{
    State &state = m_states.back();
    state.destination = destination;
    state.opensDestination = true;
}

bool RichTextParser::takeDestinationWord(RichTextWord word)
{
    switch (word) {
    case RichTextWord::Skipped:
        setDestination(Destination::Skipped);
        return true;
    case RichTextWord::Colortbl:
        m_colors.clear();
        m_definedColor.reset();
        setDestination(Destination::ColorTable);
        return true;
    case RichTextWord::Fonttbl:
        setDestination(Destination::FontTable);
        return true;
    case RichTextWord::Fldinst:
        m_instruction.clear();
        setDestination(Destination::FieldInstruction);
        return true;
    case RichTextWord::NextGraphic:
        m_instruction.clear();
        m_picture = {};
        setDestination(Destination::PictureName);
        return true;
    case RichTextWord::Pict:
        m_picture = {};
        m_pictureFormat = PictureFormat::Unknown;
        m_halfByte.reset();
        setDestination(Destination::Picture);
        return true;
    case RichTextWord::Field:
        m_states.back().style.link.clear();
        return true;
    case RichTextWord::Fldrslt:
    case RichTextWord::Shown:
        return true;
    default:
        return false;
    }
}

bool RichTextParser::takeTableWord(RichTextWord word, int parameter)
{
    const auto setComponent = [this, parameter](int shift) {
        const QRgb rgb = m_definedColor.value_or(qRgb(0, 0, 0)) & ~(QRgb{0xFF} << shift);
        m_definedColor = rgb | QRgb(std::clamp(parameter, 0, 255)) << shift;
        return true;
    };
    const bool inFonts = m_states.back().destination == Destination::FontTable;
    switch (word) {
    case RichTextWord::Ansi:
        m_documentCodePage = westernCodePage;
        return true;
    case RichTextWord::Ansicpg:
        m_documentCodePage = parameter == 0 ? westernCodePage : parameter;
        return true;
    case RichTextWord::Mac:
        m_documentCodePage = macRomanCodePage;
        return true;
    case RichTextWord::Pc:
        m_documentCodePage = 437;
        return true;
    case RichTextWord::Pca:
        m_documentCodePage = 850;
        return true;
    case RichTextWord::Red:
        return setComponent(16);
    case RichTextWord::Green:
        return setComponent(8);
    case RichTextWord::Blue:
        return setComponent(0);
    case RichTextWord::Fmodern:
        if (inFonts && m_fonts.contains(m_definedFont))
            m_fonts[m_definedFont].isMonospaced = true;
        return true;
    case RichTextWord::Fcharset:
        if (inFonts && m_fonts.contains(m_definedFont))
            m_fonts[m_definedFont].codePage = codePageOfCharacterSet(parameter);
        return true;
    case RichTextWord::F:
        if (!inFonts)
            return false;
        m_definedFont = parameter;
        if (m_fonts.size() < mostFonts)
            m_fonts.insert(parameter, {});
        return true;
    default:
        return false;
    }
}

bool RichTextParser::takeStyleWord(RichTextWord word, std::optional<int> parameter)
{
    State &state = m_states.back();
    RichTextStyle &style = state.style;
    const bool isOn = parameter != 0; // without a number, too
    const int number = parameter.value_or(0);
    switch (word) {
    case RichTextWord::B:
        style.bold = isOn;
        break;
    case RichTextWord::I:
        style.italic = isOn;
        break;
    case RichTextWord::Ul:
        style.underlined = isOn;
        break;
    case RichTextWord::Ulnone:
        style.underlined = false;
        break;
    case RichTextWord::Strike:
        style.struckOut = isOn;
        break;
    case RichTextWord::V:
        state.isHidden = isOn;
        break;
    case RichTextWord::Super:
        style.position =
            isOn ? RichTextStyle::Position::Superscript : RichTextStyle::Position::Normal;
        break;
    case RichTextWord::Sub:
        style.position =
            isOn ? RichTextStyle::Position::Subscript : RichTextStyle::Position::Normal;
        break;
    case RichTextWord::Nosupersub:
        style.position = RichTextStyle::Position::Normal;
        break;
    case RichTextWord::F:
        useFont(number);
        break;
    case RichTextWord::Fs:
        style.pointSize =
            std::clamp(parameter.value_or(normalHalfPoints), 2, normalHalfPoints * 10) / 2.0;
        break;
    case RichTextWord::Cf:
        style.foreground = color(number);
        break;
    case RichTextWord::Background:
        style.background = color(number);
        break;
    case RichTextWord::Plain: {
        const QString link = style.link;
        style = {};
        style.link = link;
        state.isHidden = false;
        useFont(0);
        break;
    }
    default:
        return false;
    }
    return true;
}

void RichTextParser::useFont(int number)
{
    State &state = m_states.back();
    state.font = number;
    state.style.monospaced = m_fonts.value(number).isMonospaced;
}

std::optional<QRgb> RichTextParser::color(int index) const
{
    return m_colors.value(index);
}

bool RichTextParser::takeParagraphWord(RichTextWord word, int parameter)
{
    State &state = m_states.back();
    RichTextParagraphStyle &style = state.paragraph;
    using Alignment = RichTextParagraphStyle::Alignment;
    switch (word) {
    case RichTextWord::Pard:
        style = {};
        state.nextTab = RichTextTab::Kind::Left;
        break;
    case RichTextWord::Ql:
        style.alignment = Alignment::Left;
        break;
    case RichTextWord::Qr:
        style.alignment = Alignment::Right;
        break;
    case RichTextWord::Qc:
        style.alignment = Alignment::Center;
        break;
    case RichTextWord::Qj:
        style.alignment = Alignment::Justified;
        break;
    case RichTextWord::Ltrpar:
        style.rightToLeft = false;
        break;
    case RichTextWord::Rtlpar:
        style.rightToLeft = true;
        break;
    case RichTextWord::Li:
        style.leftIndent = distance(parameter);
        break;
    case RichTextWord::Ri:
        style.rightIndent = distance(parameter);
        break;
    case RichTextWord::Fi:
        style.firstLineIndent = points(parameter);
        break;
    case RichTextWord::Sb:
        style.spaceBefore = distance(parameter);
        break;
    case RichTextWord::Sa:
        style.spaceAfter = distance(parameter);
        break;
    case RichTextWord::Sl:
        // Only together with \slmult is it a multiple; else it is a length that the font in use
        // here would not fit.
        style.lineHeight = std::clamp(std::abs(double(parameter)) / singleLine, 0.0, 4.0);
        break;
    case RichTextWord::Slmult:
        if (parameter != 1 || style.lineHeight < 0.8)
            style.lineHeight = 1;
        break;
    case RichTextWord::Tqr:
        state.nextTab = RichTextTab::Kind::Right;
        break;
    case RichTextWord::Tqc:
        state.nextTab = RichTextTab::Kind::Center;
        break;
    case RichTextWord::Tqdec:
        state.nextTab = RichTextTab::Kind::Decimal;
        break;
    case RichTextWord::Tx: {
        const auto kind = std::exchange(state.nextTab, RichTextTab::Kind::Left);
        if (style.tabs.size() < mostTabs)
            style.tabs.append({distance(parameter), kind});
        break;
    }
    default:
        return false;
    }
    return true;
}

bool RichTextParser::takeTextWord(RichTextWord word, int parameter)
{
    char16_t character = 0;
    switch (word) {
    case RichTextWord::U:
        takeUnicode(parameter);
        return true;
    case RichTextWord::Uc:
        m_states.back().unicodeSkip = std::clamp(parameter, 0, mostSkipped);
        return true;
    case RichTextWord::Par:
        if (m_states.back().destination == Destination::Body)
            endParagraph();
        return true;
    case RichTextWord::Line:
        character = 0x2028;
        break;
    case RichTextWord::Tab:
        character = u'\t';
        break;
    case RichTextWord::Bullet:
        character = 0x2022;
        break;
    case RichTextWord::Endash:
        character = 0x2013;
        break;
    case RichTextWord::Emdash:
        character = 0x2014;
        break;
    case RichTextWord::Enspace:
        character = 0x2002;
        break;
    case RichTextWord::Emspace:
        character = 0x2003;
        break;
    case RichTextWord::Lquote:
        character = 0x2018;
        break;
    case RichTextWord::Rquote:
        character = 0x2019;
        break;
    case RichTextWord::Ldblquote:
        character = 0x201C;
        break;
    case RichTextWord::Rdblquote:
        character = 0x201D;
        break;
    default:
        return false;
    }
    if (m_unicodeSkip > 0)
        --m_unicodeSkip;
    else
        appendText(QString(QChar(character)));
    return true;
}

void RichTextParser::takeUnicode(int unit)
{
    // Numbers above 32767 are written as negative ones by most writers and plainly by some.
    appendText(QString(QChar(static_cast<char16_t>(unit))));
    m_unicodeSkip = m_states.back().unicodeSkip;
}

bool RichTextParser::takePictureWord(RichTextWord word, int parameter)
{
    const auto destination = m_states.back().destination;
    if (destination != Destination::Picture && destination != Destination::PictureName)
        return false;
    switch (word) {
    case RichTextWord::Pngblip:
        m_pictureFormat = PictureFormat::Png;
        break;
    case RichTextWord::Jpegblip:
        m_pictureFormat = PictureFormat::Jpeg;
        break;
    case RichTextWord::Width:
    case RichTextWord::Picwgoal:
        m_picture.size.setWidth(distance(parameter));
        break;
    case RichTextWord::Height:
    case RichTextWord::Pichgoal:
        m_picture.size.setHeight(distance(parameter));
        break;
    default:
        return false;
    }
    return true;
}

} // namespace tarnwell::ui
