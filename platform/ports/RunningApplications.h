#pragma once

#include "ports/Applications.h"

#include <QList>
#include <QSet>
#include <QString>

namespace tarnwell::ports {

/// The programs that this user has running.
class RunningApplications
{
public:
    virtual ~RunningApplications() = default;

    /// The paths of those of these applications that run now.
    virtual QSet<QString> running(const QList<InstalledApplication> &applications) const = 0;
};

} // namespace tarnwell::ports
