#include "ui/StyledTextDelegate.h"

#include "ui/StyledText.h"

#include <QApplication>
#include <QHeaderView>
#include <QPainter>
#include <QTableView>

#include <algorithm>

namespace tarnwell::ui {

using foundation::StyledString;

namespace {

StyledTextStyle styleOf(const QStyleOptionViewItem &option)
{
    StyledTextStyle style;
    style.font = option.font;
    style.palette = option.palette;
    style.direction = option.direction;
    style.selected = option.state & QStyle::State_Selected;
    if (!(option.state & QStyle::State_Enabled))
        style.group = QPalette::Disabled;
    else if (!(option.state & QStyle::State_Active))
        style.group = QPalette::Inactive;
    return style;
}

QStyle *styleFor(const QWidget *widget)
{
    return widget ? widget->style() : QApplication::style();
}

/// What the style leaves free at either side of an item's text.
int textMargin(const QWidget *widget)
{
    return styleFor(widget)->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, widget) + 1;
}

int verticalMargin(const QWidget *widget)
{
    return styleFor(widget)->pixelMetric(QStyle::PM_FocusFrameVMargin, nullptr, widget) + 1;
}

} // namespace

void StyledTextDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const
{
    const QVariant styled = index.data(styledTextRole);
    if (!styled.canConvert<StyledString>()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    QStyle *style = styleFor(item.widget);
    const int margin = textMargin(item.widget) + m_columnSpacing / 2;
    const QRect textRect = style->subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget)
                               .adjusted(margin, 0, -margin, 0);
    item.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    const StyledTextLayout layout(styled.value<StyledString>(), styleOf(item), textRect.width());
    layout.draw(painter, textRect, item.displayAlignment);
}

QSize StyledTextDelegate::sizeHint(const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    const QVariant styled = index.data(styledTextRole);
    if (!styled.canConvert<StyledString>())
        return QStyledItemDelegate::sizeHint(option, index);
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    // The style measures everything but the text, which it would measure in one font.
    item.text.clear();
    item.features &= ~QStyleOptionViewItem::HasDisplay;
    const QSize rest = styleFor(item.widget)
                           ->sizeFromContents(QStyle::CT_ItemViewItem, &item, QSize(), item.widget);
    const QSize text =
        StyledTextLayout(styled.value<StyledString>(), styleOf(item)).size().toSize() +
        QSize(2 * textMargin(item.widget) + m_columnSpacing + 1, 2 * verticalMargin(item.widget));
    return {rest.width() + text.width(), std::max(rest.height(), text.height())};
}

void setRowHeightFor(const StyledString &sample, QTableView *table)
{
    StyledTextStyle style;
    style.font = table->font();
    const int text = qCeil(StyledTextLayout(sample, style).size().height());
    const int icon = table->iconSize().isValid() ? table->iconSize().height() : 0;
    const int height = std::max(text, icon) + 2 * verticalMargin(table);
    table->verticalHeader()->setMinimumSectionSize(height);
    table->verticalHeader()->setDefaultSectionSize(height);
}

} // namespace tarnwell::ui
