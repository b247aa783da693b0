#pragma once

#include "ports/SystemFacts.h"

#include <QMap>

namespace tarnwell::fakes {

/// What a test sets of FakeSystemFacts: an ordinary user on a current system, unless changed.
struct FakeSystemFactsControl
{
    quint32 realUserId = 1000;
    quint32 effectiveUserId = 1000;
    QString mainBundlePath = QStringLiteral("/Applications/Settings.app");
    QMap<quint32, qint32> gestalt{
        {ports::fourCharacterCode("sysv"), 0x1068},
        {ports::fourCharacterCode("sys1"), 12},
        {ports::fourCharacterCode("sys2"), 5},
        {ports::fourCharacterCode("sys3"), 0},
    };
};

/// Facts that a test makes up.
class FakeSystemFacts final : public ports::SystemFacts
{
public:
    FakeSystemFactsControl &control() { return m_control; }

    quint32 realUserId() const override { return m_control.realUserId; }
    quint32 effectiveUserId() const override { return m_control.effectiveUserId; }
    QString mainBundlePath() const override { return m_control.mainBundlePath; }

    std::optional<qint32> gestalt(quint32 selector) const override
    {
        const auto it = m_control.gestalt.constFind(selector);
        return it == m_control.gestalt.cend() ? std::nullopt : std::optional(*it);
    }

private:
    FakeSystemFactsControl m_control;
};

} // namespace tarnwell::fakes
