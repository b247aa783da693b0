#pragma once

#include "ports/GlobalShortcuts.h"

#include <QList>

#include <utility>

namespace tarnwell::fakes {

class FakeGlobalShortcuts;

/// What a test sees of the questions, and how it answers them: nothing is answered by itself.
class GlobalShortcutsControl
{
public:
    QList<ports::KeyCombination> questions;

    /// Answers the last question. False when it has its answer.
    bool answer(const std::optional<ports::GlobalShortcutHolder> &holder)
    {
        const auto waiting = std::exchange(m_waiting, {});
        if (waiting)
            waiting(holder);
        return bool(waiting);
    }

private:
    friend class FakeGlobalShortcuts;
    ports::GlobalShortcuts::Answer m_waiting;
};

class FakeGlobalShortcuts final : public ports::GlobalShortcuts
{
public:
    GlobalShortcutsControl &control() { return m_control; }

    void findHolder(const ports::KeyCombination &combination, Answer answer) override
    {
        m_control.questions.append(combination);
        m_control.m_waiting = std::move(answer);
    }

private:
    GlobalShortcutsControl m_control;
};

} // namespace tarnwell::fakes
