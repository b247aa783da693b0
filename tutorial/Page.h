#pragma once

#include <QPlainTextEdit>

#include <optional>

namespace tarnwell::tutorial {

/// The page that the menu items do their harmless work on. It takes no keys for itself that a menu
/// item could have.
class Page : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit Page(QWidget *parent = nullptr);

    /// Does what the menu item of this name does; false when it is none of the page's.
    bool perform(const QString &name);

protected:
    bool event(QEvent *event) override;

private:
    bool performOnText(const QString &name);
    bool performOnLook(const QString &name);
    void replaceText(const QString &text);
    void insertText(const QString &text);

    bool m_isColoured = false;
};

} // namespace tarnwell::tutorial
