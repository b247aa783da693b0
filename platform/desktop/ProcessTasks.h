#pragma once

#include "ports/Tasks.h"

namespace tarnwell::desktop {

/// Runs helper programs as child processes. They get no input, and what they print goes nowhere.
class ProcessTasks final : public ports::Tasks
{
public:
    int runAndWait(const QString &program, const QStringList &arguments) override;
};

} // namespace tarnwell::desktop
