#include "effects/OutlineView.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QStyledItemDelegate>

#include <utility>

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

void OutlineView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    m_spoken = current.data(Qt::AccessibleTextRole).toString();
    QTreeView::currentChanged(current, previous);
}

void OutlineView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                              const QList<int> &roles)
{
    QTreeView::dataChanged(topLeft, bottomRight, roles);
    const QString spoken = currentIndex().data(Qt::AccessibleTextRole).toString();
    if (std::exchange(m_spoken, spoken) == spoken || !QAccessible::isActive())
        return;
    const QAccessibleInterface *view = QAccessible::queryAccessibleInterface(this);
    if (QAccessibleInterface *const cell = view ? view->focusChild() : nullptr) {
        QAccessibleEvent event(cell, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace tarnwell::effects
