#pragma once

#include "ports/HostApplication.h"

namespace tarnwell::fakes {

/// A host that shows the icon it was given last, none at first.
class FakeHostApplication final : public ports::HostApplication
{
public:
    QIcon applicationIcon() const override { return m_icon; }
    void setApplicationIcon(const QIcon &icon) override { m_icon = icon; }

private:
    QIcon m_icon;
};

} // namespace tarnwell::fakes
