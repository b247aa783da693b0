#pragma once

#include <QWidget>

class QPushButton;

namespace tarnwell::host {

struct PaneFailure;

/// What the window shows in place of a pane that cannot be shown.
class ErrorPage final : public QWidget
{
    Q_OBJECT

public:
    ErrorPage(const QString &title, const PaneFailure &failure, QWidget *parent = nullptr);

    /// Title, message and details, as the button copies them.
    QString text() const { return m_text; }

private:
    QString m_text;
};

} // namespace tarnwell::host
