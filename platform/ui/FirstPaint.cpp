#include "ui/FirstPaint.h"

#include <QEvent>
#include <QWidget>

#include <utility>

namespace tarnwell::ui {

FirstPaint::FirstPaint(QWidget *widget, std::function<void()> painted)
    : m_painted(std::move(painted))
{
    widget->installEventFilter(this);
}

bool FirstPaint::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && m_painted) {
        watched->removeEventFilter(this);
        std::exchange(m_painted, nullptr)();
    }
    return false;
}

} // namespace tarnwell::ui
