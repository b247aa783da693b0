#pragma once

#include "hotkey/KeyEvent.h"

#include <QDialog>
#include <QPointer>

#include <optional>

namespace tarnwell::hotkey {

/// The sheet that records a hot key.
class LiWindow : public QDialog
{
    Q_OBJECT

public:
    explicit LiWindow(QWidget *parent = nullptr);

    /// The pane whose field shows what is recorded. Borrowed; forgotten when it goes away.
    void setPrefpane(QObject *prefPane) { m_prefPane = prefPane; }
    QObject *prefPane() const { return m_prefPane; }

    /// The key press accepted last; it survives closing the sheet.
    std::optional<KeyEvent> hotKeyEvent() const { return m_hkEvent; }
    void setHotKeyEvent(const std::optional<KeyEvent> &event) { m_hkEvent = event; }

private:
    QPointer<QObject> m_prefPane;
    std::optional<KeyEvent> m_hkEvent;
};

} // namespace tarnwell::hotkey
