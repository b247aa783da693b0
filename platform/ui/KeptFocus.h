#pragma once

#include <QPointer>
#include <QWidget>

namespace tarnwell::ui {

/// The keyboard focus of a control that is disabled for a while. It goes on to the next control
/// then, and does not come back by itself: whoever works by the keyboard would press something
/// else the next time.
class KeptFocus
{
public:
    void disable(QWidget *control)
    {
        m_owner = control->window()->focusWidget() == control ? control : nullptr;
        control->setEnabled(false);
        m_heir = control->window()->focusWidget();
    }

    /// Gives the focus back, unless the user took it elsewhere meanwhile.
    void enable(QWidget *control)
    {
        control->setEnabled(true);
        if (m_owner == control && control->window()->focusWidget() == m_heir)
            control->setFocus();
        m_owner = nullptr;
    }

private:
    QPointer<QWidget> m_owner; ///< null when the control had no focus
    QPointer<QWidget> m_heir;  ///< where the focus went
};

} // namespace tarnwell::ui
