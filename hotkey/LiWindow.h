#pragma once

#include "hotkey/HotKey.h"
#include "hotkey/KeyEvent.h"
#include "ports/WindowServer.h"

#include <QDialog>

#include <memory>
#include <optional>

class QKeyEvent;

namespace tarnwell::hotkey {

class LiTextField;

/// What the hot-key sheet asks of the pane.
class HotKeyPane
{
public:
    virtual ~HotKeyPane() = default;

    /// The field that shows what is recorded; may be null.
    virtual LiTextField *hotKeyField() const = 0;
    virtual const ports::KeyboardLayouts &keyboardLayouts() const = 0;
    virtual ports::WindowServer &windowServer() const = 0;
};

/// The sheet that records a hot key.
///
/// While it is up it is offered every key before the control with the focus, so that nothing else
/// is set off by a key that it takes. Where the display system allows it, that goes for keys of the
/// desktop, too.
class LiWindow : public QDialog
{
    Q_OBJECT

public:
    explicit LiWindow(QWidget *parent = nullptr);

    /// Takes a key for the hot key: shows it in the pane's field and remembers it. False, and
    /// nothing changes, for a key that can't be the hot key.
    bool performKeyEquivalent(const KeyEvent &event);

    /// Shares the pane: it stays until another one is set.
    void setPrefpane(const std::shared_ptr<HotKeyPane> &prefPane);
    /// Borrows the pane: whoever calls this sees to it that it stays.
    void setPrefPane(HotKeyPane *prefPane);
    HotKeyPane *prefPane() const { return m_prefPane.get(); }

    /// The key press accepted last; it survives closing the sheet.
    std::optional<KeyEvent> hotKeyEvent() const { return m_hkEvent; }
    void setHotKeyEvent(const std::optional<KeyEvent> &event) { m_hkEvent = event; }

Q_SIGNALS:
    /// A key was taken; hotKeyEvent() is the key, and the field shows it.
    void keyAccepted();
    void keyRefused(tarnwell::hotkey::Verdict why);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    bool takesKey(QObject *focus, QKeyEvent &press);
    void inhibitShortcuts();
    void growToContents();

    std::shared_ptr<HotKeyPane> m_prefPane; ///< without an owner when it is borrowed
    std::optional<KeyEvent> m_hkEvent;
    std::unique_ptr<ports::ShortcutInhibition> m_inhibition; ///< while the window is active
};

} // namespace tarnwell::hotkey
