#pragma once

#include "ports/Tasks.h"

#include <QList>

namespace tarnwell::fakes {

/// What a test sees and decides of FakeTasks.
struct FakeTasksControl
{
    QList<QStringList> commands; ///< each the program and its arguments
    int exitStatus = 0;
};

/// Tasks that are noted and not run.
class FakeTasks final : public ports::Tasks
{
public:
    FakeTasksControl &control() { return m_control; }

    int runAndWait(const QString &program, const QStringList &arguments) override
    {
        m_control.commands.append(QStringList{program} + arguments);
        return m_control.exitStatus;
    }

private:
    FakeTasksControl m_control;
};

} // namespace tarnwell::fakes
