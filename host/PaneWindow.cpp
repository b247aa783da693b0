#include "host/PaneWindow.h"

#include "foundation/ForeignText.h"
#include "host/ErrorPage.h"

#include <QCloseEvent>
#include <QPointer>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>

namespace tarnwell::host {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize usualSize(720, 520);

} // namespace

PaneWindow::PaneWindow(const QString &titleSuffix, QWidget *parent)
    : QWidget(parent)
    , m_titleSuffix(titleSuffix)
    , m_paneName(u"Settings"_s)
{
    setObjectName("paneWindow"_L1);
    auto *windowLayout = new QVBoxLayout(this);
    windowLayout->setContentsMargins(0, 0, 0, 0);
    setWindowTitle(m_paneName + m_titleSuffix);
    for (const auto standardKey : {QKeySequence::Close, QKeySequence::Quit}) {
        for (const QKeySequence &keys : QKeySequence::keyBindings(standardKey))
            new QShortcut(keys, this, this, &QWidget::close);
    }
    // A desktop that gives the window the focus at all does so while it appears.
    connect(
        this, &PaneWindow::appeared, this, [this] { m_isFirstShowing = false; },
        Qt::QueuedConnection);
}

PaneWindow::~PaneWindow()
{
    unselect();
    // The pane lets go of its widgets before they are destroyed with this window.
    m_pane.reset();
}

void PaneWindow::setPane(std::variant<LoadedPane, PaneFailure> pane)
{
    if (const auto *failure = std::get_if<PaneFailure>(&pane)) {
        fail(*failure);
        return;
    }
    auto &loaded = std::get<LoadedPane>(pane);
    m_paneName = foundation::shownText(loaded.name);
    m_pane = std::move(loaded.pane);
    m_view = loaded.view.release();
    layout()->addWidget(m_view);
    setWindowTitle(m_paneName + m_titleSuffix);
}

void PaneWindow::fail(const PaneFailure &failure)
{
    if (m_errorPage)
        return;
    m_selected = false;
    // A pane that has failed once may fail again while it goes away.
    storeNow();
    runGuarded([this] { m_pane.reset(); });
    delete m_view;
    m_view = nullptr;
    m_errorPage = new ErrorPage(u"The settings of %1 cannot be shown"_s.arg(m_paneName), failure);
    layout()->addWidget(m_errorPage);
    m_errorPage->setFocus();
}

void PaneWindow::becomeActive()
{
    if (!m_pane || !m_selected || m_isFirstShowing)
        return;
    if (const auto failure = runGuarded([this] { m_pane->hostDidBecomeActive(); }))
        fail(*failure);
}

void PaneWindow::prepareForEnd()
{
    m_mayClose = true;
    storeNow();
}

void PaneWindow::storeNow()
{
    if (m_pane)
        runGuarded([this] { m_pane->willEnd(); });
}

void PaneWindow::closeEvent(QCloseEvent *event)
{
    if (m_pane && !m_mayClose && !m_isAsking) {
        m_isAsking = true;
        const auto failure = runGuarded([this] {
            m_pane->askToClose([self = QPointer(this)](bool mayClose) {
                if (self)
                    self->takeReplyToClosing(mayClose);
            });
        });
        if (failure)
            fail(*failure);
    }
    event->setAccepted(!m_pane || m_mayClose);
}

void PaneWindow::takeReplyToClosing(bool mayClose)
{
    m_isAsking = false;
    m_mayClose = mayClose;
    // The event that closes is still at work if the pane replied at once, and then needs no help.
    if (mayClose)
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (isVisible())
                    close();
            },
            Qt::QueuedConnection);
}

void PaneWindow::setVisible(bool visible)
{
    if (visible && m_pane && !m_selected) {
        m_selected = true;
        m_mayClose = false;
        if (const auto failure = runGuarded([this] { m_pane->willSelect(); }))
            fail(*failure);
    }
    if (visible && !m_hasAppeared) {
        winId();
        windowHandle()->installEventFilter(this);
    }
    QWidget::setVisible(visible);
    if (!visible)
        unselect();
}

QSize PaneWindow::sizeHint() const
{
    return QWidget::sizeHint().expandedTo(usualSize);
}

bool PaneWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == windowHandle() && event->type() == QEvent::Expose && !m_hasAppeared &&
        windowHandle()->isExposed()) {
        m_hasAppeared = true;
        // Behind the painting that this very event brings.
        QMetaObject::invokeMethod(this, &PaneWindow::appeared, Qt::QueuedConnection);
    }
    return QWidget::eventFilter(watched, event);
}

void PaneWindow::unselect()
{
    if (!m_selected || !m_pane)
        return;
    m_selected = false;
    if (const auto failure = runGuarded([this] { m_pane->willUnselect(); }))
        fail(*failure);
}

} // namespace tarnwell::host
