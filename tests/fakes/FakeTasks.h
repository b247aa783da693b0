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
        struct Watch final : ports::ProcessWatch
        {
            ~Watch() override { forget(); }
            std::function<void()> forget;
        };
        m_control.watched[processId] = std::move(ended);
        auto watch = std::make_unique<Watch>();
        watch->forget = [this, processId] { m_control.watched.erase(processId); };
        return watch;
    }

private:
    FakeTasksControl m_control;
};

} // namespace tarnwell::fakes
