#include "ui/Announcement.h"

#include <QAccessible>
#include <QWidget>

namespace tarnwell::ui {

void announce(QWidget *widget)
{
    QAccessibleEvent alert(widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace tarnwell::ui
