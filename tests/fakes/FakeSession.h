#pragma once

#include "ports/Session.h"

namespace tarnwell::fakes {

/// What a test sets of FakeSession.
struct FakeSessionControl
{
    std::optional<double> loginTime;
    qint64 processId = 4711;
    std::optional<double> processStartTime = 1600000000.0;
    int processStartError = 0;
};

/// A session that a test makes up: nobody knows when it began, unless told.
class FakeSession final : public ports::Session
{
public:
    FakeSessionControl &control() { return m_control; }

    std::optional<double> loginTime() const override { return m_control.loginTime; }
    qint64 processId() const override { return m_control.processId; }
    std::optional<double> processStartTime(int *error) const override
    {
        *error = m_control.processStartError;
        return *error == 0 ? m_control.processStartTime : std::nullopt;
    }

private:
    FakeSessionControl m_control;
};

} // namespace tarnwell::fakes
