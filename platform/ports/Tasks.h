#pragma once

#include <QString>
#include <QStringList>

namespace tarnwell::ports {

/// Short-lived helper programs.
class Tasks
{
public:
    virtual ~Tasks() = default;

    /// Runs a program and waits until it exits. Returns its exit status; -1 when it did not start
    /// or was killed.
    virtual int runAndWait(const QString &program, const QStringList &arguments) = 0;
};

} // namespace tarnwell::ports
