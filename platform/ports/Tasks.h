#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace tarnwell::ports {

/// Somebody who waits for the end of a process. Destroying it ends the waiting.
class ProcessWatch
{
public:
    virtual ~ProcessWatch() = default;
};

/// Other programs: short-lived helpers, and the end of those that were started.
class Tasks
{
public:
    virtual ~Tasks() = default;

    /// Runs a program and waits until it exits. Returns its exit status; -1 when it did not start
    /// or was killed.
    virtual int runAndWait(const QString &program, const QStringList &arguments) = 0;

    /// Calls back once, from the run loop, when a process has ended, whoever started it; of one
    /// that ended before this call, soon after it. Null when the system cannot tell.
    [[nodiscard]] virtual std::unique_ptr<ProcessWatch> watch(qint64 processId,
                                                              std::function<void()> ended) = 0;
};

} // namespace tarnwell::ports
