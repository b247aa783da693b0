#include "effects/OutlineView.h"

#include <QKeyEvent>
#include <QStyledItemDelegate>

namespace tarnwell::effects {

namespace {

/// Leaves room between the check boxes of neighbouring rows, which some styles paint without any.
class RoomyRows final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        constexpr int room = 6;
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, room);
    }
};

} // namespace

OutlineView::OutlineView(QWidget *parent)
    : QTreeView(parent)
{
    setItemDelegate(new RoomyRows(this));
}

void OutlineView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space && !event->modifiers() && currentIndex().isValid()) {
        for (int column = 0; column < model()->columnCount(); ++column) {
            const QModelIndex cell = currentIndex().siblingAtColumn(column);
            if (!cell.flags().testFlag(Qt::ItemIsUserCheckable))
                continue;
            const bool isOn = cell.data(Qt::CheckStateRole).toInt() == Qt::Checked;
            model()->setData(cell, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
            return;
        }
    }
    QTreeView::keyPressEvent(event);
}

} // namespace tarnwell::effects
