#pragma once

#include "ports/Tasks.h"

#include <QList>

#include <map>

namespace tarnwell::fakes {

/// What a test sees and decides of FakeTasks.
struct FakeTasksControl
{
    QList<QStringList> commands; ///< each the program and its arguments
    int exitStatus = 0;
    std::map<qint64, std::function<void()>> watched; ///< what to call when a process ends
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

    [[nodiscard]] std::unique_ptr<ports::ProcessWatch> watch(qint64 processId,
                                                             std::function<void()> ended) override
    {
        m_control.watched[processId] = std::move(ended);
        return std::make_unique<Watch>(m_control, processId);
    }

private:
    class Watch final : public ports::ProcessWatch
    {
    public:
        Watch(FakeTasksControl &control, qint64 processId)
            : m_control(control)
            , m_processId(processId)
        {}
        ~Watch() override { m_control.watched.erase(m_processId); }
        Q_DISABLE_COPY_MOVE(Watch)

    private:
        FakeTasksControl &m_control;
        qint64 m_processId;
    };

    FakeTasksControl m_control;
};

} // namespace tarnwell::fakes
