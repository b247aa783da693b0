#pragma once

#include "ports/Tasks.h"

namespace tarnwell::desktop {

/// Runs helper programs as child processes. They get no input, and what they print goes nowhere.
/// Ends are learnt from the kernel, without asking again and again.
class ProcessTasks final : public ports::Tasks
{
public:
    int runAndWait(const QString &program, const QStringList &arguments) override;
    [[nodiscard]] std::unique_ptr<ports::ProcessWatch> watch(qint64 processId,
                                                             std::function<void()> ended) override;
};

} // namespace tarnwell::desktop
