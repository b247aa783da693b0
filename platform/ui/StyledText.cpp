#include "ui/StyledText.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tarnwell::ui {

using foundation::FontStyle;
using foundation::StyledString;
using foundation::TextColor;

namespace {

constexpr qreal smallToNormal = 0.9;
constexpr qreal greyShareOfText = 0.65;
constexpr qreal unboundedWidth = 1.0e6;

/// The height of a font relative to another one, whichever unit the two were made with.
qreal relativeHeight(const QFont &font, const QFont &other)
{
    return QFontMetricsF(font).height() / std::max(1.0, QFontMetricsF(other).height());
}

QFont scaled(QFont font, qreal factor)
{
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(std::max(1, qRound(font.pixelSize() * factor)));
    return font;
}

QColor mixed(const QColor &text, const QColor &background, qreal shareOfText)
{
    const auto mix = [shareOfText](float a, float b) {
        return float(a * shareOfText + b * (1.0 - shareOfText));
    };
    return QColor::fromRgbF(mix(text.redF(), background.redF()),
                            mix(text.greenF(), background.greenF()),
                            mix(text.blueF(), background.blueF()));
}

/// The text as one StyledString a line.
std::vector<StyledString> lines(const StyledString &text)
{
    std::vector<StyledString> result(1);
    for (const auto &run : text.runs()) {
        const auto parts = run.text.split(u'\n');
        for (qsizetype i = 0; i < parts.size(); ++i) {
            if (i > 0)
                result.emplace_back();
            // Also an empty part counts: it gives its empty line a height.
            if (!parts.at(i).isEmpty() || i > 0)
                result.back().append(parts.at(i), run.attributes);
        }
    }
    return result;
}

std::unique_ptr<QTextLayout> layOut(const StyledString &line, const StyledTextStyle &style)
{
    const auto fontOfFirst =
        line.runs().isEmpty() ? FontStyle::Inherited : line.runs().first().attributes.font;
    auto layout = std::make_unique<QTextLayout>(line.text(), styledFont(fontOfFirst, style.font));
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(style.direction);
    layout->setTextOption(option);

    QList<QTextLayout::FormatRange> formats;
    int start = 0;
    for (const auto &run : line.runs()) {
        QTextLayout::FormatRange range;
        range.start = start;
        range.length = int(run.text.size());
        range.format.setFont(styledFont(run.attributes.font, style.font));
        range.format.setForeground(
            styledColor(run.attributes.color, style.palette, style.group, style.selected));
        formats.append(range);
        start += range.length;
    }
    layout->setFormats(formats);
    layout->beginLayout();
    layout->createLine().setLineWidth(unboundedWidth);
    layout->endLayout();
    return layout;
}

/// The beginning of a line, and an ellipsis in the style of the character that it stands for.
StyledString elided(const StyledString &line, qsizetype keep)
{
    StyledString result;
    for (const auto &run : line.runs()) {
        const auto part = run.text.left(keep);
        result.append(part, run.attributes);
        keep -= part.size();
        if (part.size() < run.text.size()) {
            result.append(QString(QChar(0x2026)), run.attributes);
            break;
        }
    }
    return result;
}

std::unique_ptr<QTextLayout> layOutWithin(const StyledString &line, const StyledTextStyle &style,
                                          qreal width)
{
    auto layout = layOut(line, style);
    if (width < 0 || layout->lineAt(0).naturalTextWidth() <= width)
        return layout;
    // In a right-to-left line the cut cannot be found from the left edge, so the longest beginning
    // that fits is searched for; the steps stay few because the range halves.
    qsizetype fits = 0;
    qsizetype tooLong = line.length();
    auto best = layOut(elided(line, 0), style);
    while (fits + 1 < tooLong) {
        const auto middle = (fits + tooLong) / 2;
        const auto position = layout->isValidCursorPosition(int(middle))
                                  ? middle
                                  : layout->previousCursorPosition(int(middle));
        if (position <= fits) {
            fits = middle;
            continue;
        }
        auto attempt = layOut(elided(line, position), style);
        if (attempt->lineAt(0).naturalTextWidth() <= width) {
            fits = middle;
            best = std::move(attempt);
        } else {
            tooLong = position;
        }
    }
    return best;
}

/// How the desktop's small text relates to its normal one. Asking the desktop means a search in
/// all fonts, and every run of every cell needs the answer: it is kept while the normal font stays.
qreal desktopSmallToNormal()
{
    struct Answer
    {
        QString normalFont;
        qreal ratio;
    };
    static std::optional<Answer> answer;
    const QString normalFont = QGuiApplication::font().key();
    if (!answer || answer->normalFont != normalFont)
        answer = {normalFont,
                  relativeHeight(QFontDatabase::systemFont(QFontDatabase::SmallestReadableFont),
                                 QFontDatabase::systemFont(QFontDatabase::GeneralFont))};
    return answer->ratio;
}

} // namespace

QFont styledFont(FontStyle style, const QFont &base)
{
    if (style == FontStyle::Inherited)
        return base;
    const qreal desktopRatio = desktopSmallToNormal();
    QFont font = scaled(base, desktopRatio < 1.0 ? desktopRatio : smallToNormal);
    if (style == FontStyle::SmallBoldSystem)
        font.setBold(true);
    return font;
}

QColor styledColor(TextColor color, const QPalette &palette, QPalette::ColorGroup group,
                   bool selected)
{
    const auto text = palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    const auto background = palette.color(group, selected ? QPalette::Highlight : QPalette::Base);
    switch (color) {
    case TextColor::Inherited:
        break;
    case TextColor::Gray:
        return mixed(text, background, greyShareOfText);
    case TextColor::DisabledControl:
        return selected ? mixed(text, background, greyShareOfText)
                        : palette.color(QPalette::Disabled, QPalette::Text);
    }
    return text;
}

StyledTextLayout::StyledTextLayout(const StyledString &text, const StyledTextStyle &style,
                                   qreal width)
    : m_direction(style.direction)
    , m_color(styledColor(TextColor::Inherited, style.palette, style.group, style.selected))
{
    for (const auto &line : lines(text)) {
        m_lines.push_back(layOutWithin(line, style, width));
        const QTextLine textLine = m_lines.back()->lineAt(0);
        m_size.setWidth(std::max(m_size.width(), textLine.naturalTextWidth()));
        m_size.setHeight(m_size.height() + textLine.height());
    }
}

QString StyledTextLayout::shownText() const
{
    QStringList texts;
    for (const auto &line : m_lines)
        texts.append(line->text());
    return texts.join(u'\n');
}

void StyledTextLayout::draw(QPainter *painter, const QRectF &rect, Qt::Alignment alignment) const
{
    const auto visual = QStyle::visualAlignment(m_direction, alignment);
    qreal y = rect.top();
    if (visual & Qt::AlignVCenter)
        y += (rect.height() - m_size.height()) / 2;
    else if (visual & Qt::AlignBottom)
        y += rect.height() - m_size.height();

    painter->save();
    painter->setClipRect(rect, Qt::IntersectClip);
    painter->setPen(m_color);
    for (const auto &line : m_lines) {
        QTextLine textLine = line->lineAt(0);
        const auto free = rect.width() - textLine.naturalTextWidth();
        qreal x = rect.left();
        if (visual & Qt::AlignRight)
            x += free;
        else if (visual & Qt::AlignHCenter)
            x += free / 2;
        // A right-to-left line is set against the right end of the width it was laid out for.
        textLine.draw(painter, QPointF(x - textLine.naturalTextRect().left(), std::round(y)));
        y += textLine.height();
    }
    painter->restore();
}

} // namespace tarnwell::ui
