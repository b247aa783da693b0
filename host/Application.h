#pragma once

#include <QApplication>

#include <functional>

namespace tarnwell::host {

/// An application that survives an exception which a pane lets out of an event handler.
class Application final : public QApplication
{
    Q_OBJECT

public:
    using QApplication::QApplication;

    /// Called, from the event loop, with what the exception says.
    void setExceptionHandler(std::function<void(const QByteArray &what)> handler);

    /// Called before the windows are closed because the program was told to quit.
    void setQuitHandler(std::function<void()> handler);

    bool notify(QObject *receiver, QEvent *event) override;

protected:
    bool event(QEvent *event) override;

private:
    void handle(const QByteArray &what);

    std::function<void(const QByteArray &)> m_handler;
    std::function<void()> m_quitHandler;
};

} // namespace tarnwell::host
