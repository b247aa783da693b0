#pragma once

#include "ports/HostApplication.h"

#include <QList>

namespace tarnwell::fakes {

/// What a test gives the host, and what it sees that was done to it.
struct HostApplicationControl
{
    QIcon icon;           ///< the icon that the host shows now
    QList<QIcon> history; ///< every icon it was given since
};

class FakeHostApplication final : public ports::HostApplication
{
public:
    /// The control is the test's and lives longer.
    explicit FakeHostApplication(HostApplicationControl &control)
        : m_control(control)
    {}

    QIcon applicationIcon() const override { return m_control.icon; }

    void setApplicationIcon(const QIcon &icon) override
    {
        m_control.icon = icon;
        m_control.history.append(icon);
    }

private:
    HostApplicationControl &m_control;
};

} // namespace tarnwell::fakes
