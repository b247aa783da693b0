#pragma once

#include "ports/PendingWrites.h"
#include "ports/Preferences.h"

#include <QList>
#include <QMap>
#include <QStringList>

namespace tarnwell::fakes {

/// What a test sees and steers of FakePreferences: the stored domains, as another process has them.
class FakePreferencesControl
{
public:
    struct Write
    {
        QString domain;
        QString key;
        plist::Value value; ///< null for a removal

        friend bool operator==(const Write &, const Write &) = default;
    };
    using Domain = plist::Dictionary;

    /// Stores a value as another process would: the pane sees it after its next synchronise.
    /// A null value removes the key.
    void setStoredValue(const QString &key, const plist::Value &value, const QString &domain)
    {
        m_stored[domain].insert(key, value);
    }
    void setStoredDomain(const QString &domain, const Domain &values) { m_stored[domain] = values; }

    plist::Value storedValue(const QString &key, const QString &domain) const
    {
        return m_stored.value(domain).value(key);
    }
    Domain storedDomain(const QString &domain) const { return m_stored.value(domain); }

    /// Makes every storing fail until told otherwise; the writes then stay pending.
    void setSynchronizeFails(bool fails) { m_synchronizeFails = fails; }

    /// Has another process write the stored domain in place until told otherwise: nobody can read
    /// it, and writes wait.
    void setBeingWritten(bool isBeingWritten) { m_isBeingWritten = isBeingWritten; }

    /// Is called before every synchronise: another process that is at work at the same time.
    void setMeanwhile(const std::function<void()> &meanwhile) { m_meanwhile = meanwhile; }

    /// Every setAppValue() and every appSynchronize() since the last clear, oldest first.
    const QList<Write> &writes() const { return m_writes; }
    const QStringList &synchronizedDomains() const { return m_synchronizedDomains; }
    void clearRecord()
    {
        m_writes.clear();
        m_synchronizedDomains.clear();
    }

private:
    friend class FakePreferences;

    QMap<QString, Domain> m_stored;
    QList<Write> m_writes;
    QStringList m_synchronizedDomains;
    bool m_synchronizeFails = false;
    bool m_isBeingWritten = false;
    std::function<void()> m_meanwhile;
};

/// Preferences in memory, with the same three states of a value as the real ones: stored, last
/// seen by this process, and pending.
class FakePreferences final : public ports::Preferences
{
public:
    FakePreferencesControl &control() { return m_control; }

    plist::Value copyAppValue(const QString &key, const QString &domain) const override
    {
        const auto pending = m_pending.value(domain).value(key);
        return pending ? *pending : seen(domain).value(key);
    }

    void setAppValue(const QString &key, const plist::Value &value, const QString &domain) override
    {
        m_control.m_writes.append({domain, key, value});
        m_pending[domain].note(key, value, seen(domain).value(key));
    }

    bool appSynchronize(const QString &domain) override { return synchronize(domain, false); }
    bool appStorePending(const QString &domain) override { return synchronize(domain, true); }

private:
    bool synchronize(const QString &domain, bool withAllWrites)
    {
        if (m_control.m_meanwhile)
            m_control.m_meanwhile();
        m_control.m_synchronizedDomains.append(domain);
        ports::PendingWrites &pending = m_pending[domain];
        FakePreferencesControl::Domain &stored = m_control.m_stored[domain];
        bool isGivenUp = false;
        bool isStored = false;
        QString problem;
        if (!m_control.m_isBeingWritten) {
            isGivenUp = pending.giveUpOvertaken(stored);
            if (!m_control.m_synchronizeFails && (withAllWrites || pending.hasNew()))
                stored = pending.appliedTo(stored);
            m_seen.insert(domain, stored);
            isStored = pending.areIn(stored);
            problem = isStored ? QString() : u"disk full"_qs;
        }
        if (isStored)
            pending.stored();
        else
            pending.failed();
        reportStoring(domain, {problem, pending.areLost(), {}, m_control.m_isBeingWritten});
        return isStored ? !isGivenUp : pending.isEmpty();
    }

    const FakePreferencesControl::Domain &seen(const QString &domain) const
    {
        auto it = m_seen.find(domain);
        if (it == m_seen.end())
            it = m_seen.insert(domain, m_control.storedDomain(domain));
        return *it;
    }

    FakePreferencesControl m_control;
    QMap<QString, ports::PendingWrites> m_pending;
    mutable QMap<QString, FakePreferencesControl::Domain> m_seen;
};

} // namespace tarnwell::fakes
