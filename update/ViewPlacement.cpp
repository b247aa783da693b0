#include "update/ViewPlacement.h"

#include <QLayout>
#include <QWidget>

#include <cmath>
#include <memory>

namespace tarnwell::update {

namespace {

/// The controls of a view in the order of tabs that they had in their own window.
QList<QWidget *> controlsOf(QWidget *view)
{
    QList<QWidget *> controls;
    for (QWidget *widget = view->nextInFocusChain(); widget && widget != view;
         widget = widget->nextInFocusChain()) {
        if (view->isAncestorOf(widget) && (widget->focusPolicy() & Qt::TabFocus))
            controls.append(widget);
    }
    return controls;
}

/// The control before a placeholder, from which tabs go on.
QWidget *controlBefore(QWidget *placeholder)
{
    QWidget *widget = placeholder->previousInFocusChain();
    while (widget && widget != placeholder && !(widget->focusPolicy() & Qt::TabFocus))
        widget = widget->previousInFocusChain();
    return widget == placeholder ? nullptr : widget;
}

} // namespace

QRect centredOver(const QRectF &frame, const QSizeF &size)
{
    const double left = frame.x() + frame.width() / 2 - size.width() / 2;
    const double top = frame.y() + frame.height() / 2 - size.height() / 2;
    const QPoint first(int(std::floor(left)), int(std::floor(top)));
    const QPoint end(int(std::ceil(left + size.width())), int(std::ceil(top + size.height())));
    return {first, QSize(end.x() - first.x(), end.y() - first.y())};
}

void putInPlaceOf(QWidget *placeholder, QWidget *view)
{
    QWidget *superview = placeholder->parentWidget();
    if (!superview)
        return;
    const QList<QWidget *> controls = controlsOf(view);
    QWidget *before = controlBefore(placeholder);
    view->adjustSize();
    const QSize size = view->size();
    view->setParent(superview);
    std::unique_ptr<QLayoutItem> replaced;
    if (QLayout *layout = superview->layout())
        replaced.reset(layout->replaceWidget(placeholder, view));
    if (!replaced)
        view->setGeometry(centredOver(placeholder->geometry(), size));
    placeholder->hide();
    view->show();
    for (QWidget *control : controls) {
        if (before)
            QWidget::setTabOrder(before, control);
        before = control;
    }
    view->update();
    superview->update();
}

} // namespace tarnwell::update
