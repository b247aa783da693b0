#pragma once

#include "foundation/StyledString.h"

#include <QStyledItemDelegate>

class QTableView;

namespace tarnwell::ui {

/// Paints the StyledString that an item keeps under styledTextRole, beside its icon and check box
/// if it has them. Items without one are painted as usual.
class StyledTextDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Leaves this much free between the contents of two columns, in device-independent pixels.
    void setColumnSpacing(int spacing) { m_columnSpacing = spacing; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    int m_columnSpacing = 0;
};

/// Makes every row of a table as high as this text and the table's icons need. Cheaper than asking
/// each row, and right at every font and scale.
void setRowHeightFor(const foundation::StyledString &sample, QTableView *table);

} // namespace tarnwell::ui
