#pragma once

#include "foundation/StyledString.h"

#include <QFont>
#include <QPalette>
#include <QSizeF>
#include <QTextLayout>

#include <memory>
#include <vector>

class QPainter;
class QRectF;

namespace tarnwell::ui {

/// Where a model's item keeps its StyledString. Such an item answers Qt::DisplayRole with the plain
/// text, which screen readers and keyboard search take.
inline constexpr int styledTextRole = Qt::UserRole + 1;

/// The font of a style. `base` is the font of the view; the small fonts are as much smaller as the
/// desktop's own small font, or a tenth where the desktop has none.
QFont styledFont(foundation::FontStyle style, const QFont &base);

/// The colour of a text on the palette's base, or on its highlight when selected. Grey is a mix of
/// text and background, so it is legible on light and dark palettes alike.
QColor styledColor(foundation::TextColor color, const QPalette &palette, QPalette::ColorGroup group,
                   bool selected);

/// How a text is to be painted.
struct StyledTextStyle
{
    QFont font;
    QPalette palette;
    QPalette::ColorGroup group = QPalette::Active;
    bool selected = false;
    Qt::LayoutDirection direction = Qt::LeftToRight;
};

/// A styled text, broken at its line feeds and laid out for one width. A line that is too wide ends
/// in an ellipsis.
class StyledTextLayout
{
public:
    /// A negative width is as wide as the text.
    StyledTextLayout(const foundation::StyledString &text, const StyledTextStyle &style,
                     qreal width = -1);

    QSizeF size() const { return m_size; }
    /// The lines that are painted, joined by line feeds.
    QString shownText() const;
    void draw(QPainter *painter, const QRectF &rect, Qt::Alignment alignment) const;

private:
    std::vector<std::unique_ptr<QTextLayout>> m_lines;
    Qt::LayoutDirection m_direction;
    QColor m_color;
    QSizeF m_size;
};

} // namespace tarnwell::ui
