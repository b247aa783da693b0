#pragma once

#include <QIcon>

namespace tarnwell::ports {

/// The application that shows the pane.
class HostApplication
{
public:
    virtual ~HostApplication() = default;

    virtual QIcon applicationIcon() const = 0;
    virtual void setApplicationIcon(const QIcon &icon) = 0;
};

} // namespace tarnwell::ports
