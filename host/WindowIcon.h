#pragma once

#include "ports/HostApplication.h"

namespace tarnwell::host {

/// The application's icon as the pane sees it. What the pane sets is shown by every window, but
/// only from the moment release() is called: drawing it can wait until the window is up.
class WindowIcon final : public ports::HostApplication
{
public:
    explicit WindowIcon(const QIcon &icon);

    QIcon applicationIcon() const override { return m_icon; }
    void setApplicationIcon(const QIcon &icon) override;

    void release();

private:
    QIcon m_icon;
    bool m_released = false;
};

} // namespace tarnwell::host
