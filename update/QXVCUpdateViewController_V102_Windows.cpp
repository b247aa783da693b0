// The windows: the view as a sheet behind a button, and the privacy statement.

#include "update/QXVCUpdateViewController_V102.h"

#include "foundation/Logging.h"
#include "ports/Sheets.h"
#include "ui/RichTextView.h"
#include "update/StatusText.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QTextBrowser>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace tarnwell::update {

namespace {

QWidget *windowOf(QObject *sender)
{
    const auto *widget = qobject_cast<QWidget *>(sender);
    return widget ? widget->window() : nullptr;
}

/// Whether a window was shown on another one.
bool isSheet(const QWidget *window)
{
    return window->windowModality() == Qt::WindowModal;
}

} // namespace

void QXVCUpdateViewController_V102::showUpdateSheet(QObject *sender)
{
    if (QWidget *window = windowOf(sender))
        beginSheet(updaterView()->window(), window);
}

void QXVCUpdateViewController_V102::sheetDidEnd(QWidget *sheet, int)
{
    sheet->hide();
}

void QXVCUpdateViewController_V102::beginSheet(QWidget *sheet, QWidget *onWindowOf)
{
    sheet->setWindowModality(Qt::WindowModal);
    m_services.desktop.sheets.beginSheet(
        sheet, onWindowOf, [this, sheet](int returnCode) { sheetDidEnd(sheet, returnCode); });
}

void QXVCUpdateViewController_V102::privacyPolicy(QObject *sender)
{
    QWidget *window = windowOf(sender);
    const QString path = m_services.ownBundle.resourcePath(u"SUPrivacyStatement"_s, u"rtfd"_s);
    if (path.isEmpty()) {
        TARNWELL_SYSTEM_LOG(u"Cannot find path for SUPrivacyStatement.rtfd"_s);
        QApplication::beep();
        return;
    }
    loadPrivacyStatement(path);
    if (!window || isSheet(window))
        runModally(privacyWindow(), window);
    else
        beginSheet(privacyWindow(), window);
}

void QXVCUpdateViewController_V102::loadPrivacyStatement(const QString &path)
{
    QTextBrowser *view = privacyText();
    if (!ui::showRichTextPackage(path, *view))
        view->setPlainText(formatted(localized("Cannot load %@"), {path}));
}

/// The window holds up the whole application until it is closed; nothing waits for it here.
void QXVCUpdateViewController_V102::runModally(QWidget *window, QWidget *over)
{
    if (window->isVisible())
        return;
    window->setWindowModality(Qt::ApplicationModal);
    window->winId();
    window->windowHandle()->setTransientParent(over ? over->windowHandle() : nullptr);
    window->show();
}

void QXVCUpdateViewController_V102::windowWillClose()
{
    if (privacyWindow()->windowModality() == Qt::ApplicationModal)
        privacyWindow()->setWindowModality(Qt::NonModal);
}

void QXVCUpdateViewController_V102::dismissPrivacy(QObject *sender)
{
    QWidget *window = windowOf(sender);
    if (!window)
        return;
    if (isSheet(window))
        m_services.desktop.sheets.endSheet(window, 0);
    else
        windowWillClose();
    window->hide();
}

bool QXVCUpdateViewController_V102::eventFilter(QObject *watched, QEvent *event)
{
    // Escape and the window's close button end in a hide, too.
    if (watched == privacyWindow() && event->type() == QEvent::Hide && !event->spontaneous() &&
        !isSheet(privacyWindow()))
        windowWillClose();
    return QObject::eventFilter(watched, event);
}

} // namespace tarnwell::update
