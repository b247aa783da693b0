#pragma once

#include "ports/Sheets.h"

#include <QList>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <deque>
#include <utility>

namespace tarnwell::fakes {

/// What a test sees of the sheets, and how it answers in the user's place.
///
/// Nothing is answered by itself. answer() ends the alert that the user would see; a sheet that the
/// product ended hears of it in turn(), as it would from the event loop.
class SheetsControl
{
public:
    struct ShownAlert
    {
        ports::Alert alert;
        QPointer<QWidget> onWindowOf;
    };

    /// Every alert that was ever begun, answered or not.
    const QList<ShownAlert> &alerts() const { return m_alerts; }

    bool hasOpenAlert() const { return !m_openAlerts.empty(); }
    bool isOpen(const QWidget *sheet) const { return find(sheet) != m_sheets.end(); }

    /// Answers the oldest open alert. False when there is none.
    bool answer(int returnCode)
    {
        if (m_openAlerts.empty())
            return false;
        auto didEnd = std::move(m_openAlerts.front());
        m_openAlerts.pop_front();
        if (didEnd)
            didEnd(returnCode);
        return true;
    }

    /// Ends a sheet as Escape or the window's close button do.
    void dismiss(QWidget *sheet)
    {
        end(sheet, 0);
        turn();
    }

    /// Tells the sheets that were ended that they were. Returns how many.
    int turn()
    {
        auto ended = std::exchange(m_ended, {});
        for (auto &[didEnd, returnCode] : ended) {
            if (didEnd)
                didEnd(returnCode);
        }
        return int(ended.size());
    }

private:
    friend class FakeSheets;

    struct OpenSheet
    {
        QPointer<QWidget> sheet;
        ports::Sheets::DidEnd didEnd;
    };

    std::deque<OpenSheet>::const_iterator find(const QWidget *sheet) const
    {
        return std::find_if(m_sheets.begin(), m_sheets.end(),
                            [sheet](const OpenSheet &open) { return open.sheet == sheet; });
    }

    void end(QWidget *sheet, int returnCode)
    {
        const auto found = find(sheet);
        if (found == m_sheets.end())
            return;
        m_ended.emplace_back(found->didEnd, returnCode);
        m_sheets.erase(found);
    }

    QList<ShownAlert> m_alerts;
    std::deque<ports::Sheets::DidEnd> m_openAlerts;
    std::deque<OpenSheet> m_sheets;
    std::deque<std::pair<ports::Sheets::DidEnd, int>> m_ended;
};

class FakeSheets final : public ports::Sheets
{
public:
    /// The control is the test's and lives longer.
    explicit FakeSheets(SheetsControl &control)
        : m_control(control)
    {}

    void beginAlert(const ports::Alert &alert, QWidget *onWindowOf, DidEnd didEnd) override
    {
        m_control.m_alerts.append({alert, onWindowOf});
        m_control.m_openAlerts.push_back(std::move(didEnd));
    }

    void beginSheet(QWidget *sheet, QWidget *, DidEnd didEnd) override
    {
        if (m_control.isOpen(sheet))
            return;
        m_control.m_sheets.push_back({sheet, std::move(didEnd)});
        sheet->show();
    }

    void endSheet(QWidget *sheet, int returnCode) override { m_control.end(sheet, returnCode); }

private:
    SheetsControl &m_control;
};

} // namespace tarnwell::fakes
