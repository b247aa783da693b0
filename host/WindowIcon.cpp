#include "host/WindowIcon.h"

#include <QGuiApplication>

namespace tarnwell::host {

WindowIcon::WindowIcon(const QIcon &icon)
    : m_icon(icon)
{}

void WindowIcon::setApplicationIcon(const QIcon &icon)
{
    m_icon = icon;
    if (m_released)
        QGuiApplication::setWindowIcon(m_icon);
}

void WindowIcon::release()
{
    m_released = true;
    QGuiApplication::setWindowIcon(m_icon);
}

} // namespace tarnwell::host
