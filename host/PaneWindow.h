#pragma once

#include "host/PaneLoader.h"

#include <QWidget>

#include <optional>

namespace tarnwell::host {

class ErrorPage;

/// The window of one pane. Selects the pane before every showing and unselects it when hidden; a
/// pane that fails at any step gives way to an error page.
class PaneWindow final : public QWidget
{
    Q_OBJECT

public:
    /// `titleSuffix` follows the pane's name in the title bar.
    explicit PaneWindow(const QString &titleSuffix = {}, QWidget *parent = nullptr);
    ~PaneWindow() override;

    /// Takes the pane, or the reason why there is none. Once, before the window is shown.
    void setPane(std::variant<LoadedPane, PaneFailure> pane);

    /// Puts an error page in the place of whatever shows.
    void fail(const PaneFailure &failure);

    /// Why the pane does not show; null while it does.
    const ErrorPage *errorPage() const { return m_errorPage; }
    QWidget *mainView() const { return m_view; }

    /// The program is about to end, whoever ends it: the pane stores what is left to store, and
    /// closing this window asks nothing.
    void prepareForEnd();
    /// The session may be about to end, or not after all: the pane stores what is left to store.
    void storeNow();

    /// Tells the pane that the user came back to the application. An activation that comes with
    /// the first showing brings nobody back, and is kept to itself.
    void becomeActive();

    void setVisible(bool visible) override;
    QSize sizeHint() const override;

Q_SIGNALS:
    /// The window was drawn on the screen for the first time.
    void appeared();

protected:
    /// Lets the pane decide, which may ask the user first.
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void unselect();
    void takeReplyToClosing(bool mayClose);

    QString m_titleSuffix;
    QString m_paneName;
    std::unique_ptr<ui::PreferencePane> m_pane;
    QWidget *m_view = nullptr;
    ErrorPage *m_errorPage = nullptr;
    bool m_selected = false;
    bool m_hasAppeared = false;
    bool m_isFirstShowing = true;
    bool m_isAsking = false; ///< whether it may be closed
    bool m_mayClose = false;
};

} // namespace tarnwell::host
