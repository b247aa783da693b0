#include "host/Application.h"

#include <QEvent>

#include <exception>

namespace tarnwell::host {

void Application::setExceptionHandler(std::function<void(const QByteArray &)> handler)
{
    m_handler = std::move(handler);
}

void Application::setQuitHandler(std::function<void()> handler)
{
    m_quitHandler = std::move(handler);
}

bool Application::event(QEvent *event)
{
    if (event->type() == QEvent::Quit && m_quitHandler)
        m_quitHandler();
    return QApplication::event(event);
}

bool Application::notify(QObject *receiver, QEvent *event)
{
    // Below this frame are event loops written in C, which an exception must not cross.
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception &exception) {
        handle(exception.what());
    } catch (...) {
        handle("an unknown exception");
    }
    return true;
}

void Application::handle(const QByteArray &what)
{
    qCritical("An event handler threw: %s", what.constData());
    // The objects that were at work may still be on the stack above, so nothing is destroyed here.
    QMetaObject::invokeMethod(
        this,
        [this, what] {
            if (m_handler)
                m_handler(what);
        },
        Qt::QueuedConnection);
}

} // namespace tarnwell::host
