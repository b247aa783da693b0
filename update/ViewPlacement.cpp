#include "update/ViewPlacement.h"

#include <QLayout>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <memory>

namespace tarnwell::update {

namespace {

/// The controls in a window in the order of tabs, from a widget on and around.
QList<QWidget *> controlsFrom(QWidget *first)
{
    QList<QWidget *> controls;
    QWidget *widget = first;
    do {
        if (widget->focusPolicy() & Qt::TabFocus)
            controls.append(widget);
        widget = widget->nextInFocusChain();
    } while (widget && widget != first);
    return controls;
}

QList<QWidget *> controlsIn(QWidget *view)
{
    QList<QWidget *> controls = controlsFrom(view);
    controls.removeIf([view](const QWidget *control) { return !view->isAncestorOf(control); });
    return controls;
}

/// The control from which tabs are to come to what is put in a placeholder's place: the one before
/// the first control that is laid out behind it. The placeholder's own place among the tabs says
/// nothing, as it takes no focus.
QWidget *controlBefore(QWidget *placeholder)
{
    const QLayout *layout = placeholder->parentWidget()->layout();
    const int index = layout ? layout->indexOf(placeholder) : -1;
    if (index < 0)
        return nullptr;
    QList<QWidget *> behind;
    for (int i = index + 1; i < layout->count(); ++i) {
        if (QWidget *widget = layout->itemAt(i)->widget())
            behind.append(widget);
    }
    const QList<QWidget *> controls = controlsFrom(placeholder->window());
    const auto isBehind = [&behind](const QWidget *control) {
        return std::any_of(behind.begin(), behind.end(), [control](const QWidget *widget) {
            return widget == control || widget->isAncestorOf(control);
        });
    };
    const auto next = std::find_if(controls.begin(), controls.end(), isBehind);
    return next == controls.begin() || next == controls.end() ? nullptr : *std::prev(next);
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
    const QList<QWidget *> controls = controlsIn(view);
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
