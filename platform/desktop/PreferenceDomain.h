#pragma once

#include "desktop/DomainFile.h"
#include "foundation/plist/Value.h"

#include <QHash>

namespace tarnwell::ports {
class Clock;
}

namespace tarnwell::desktop {

/// One domain as this process has it: what it last saw in the file, and the writes to come.
class PreferenceDomain
{
public:
    PreferenceDomain(const QString &homeFolder, const QString &name, const ports::Clock &clock,
                     int lockAttempts);

    /// A pending write, else what was last seen in the file, which the first call reads.
    plist::Value value(const QString &key);
    void setValue(const QString &key, const plist::Value &value);
    bool synchronize();

    /// Why writes are still pending after a synchronise; empty when none are.
    QString problem() const { return m_pending.isEmpty() ? QString() : m_loggedFailure; }

private:
    bool refresh();
    bool isStored() const;
    bool store();
    bool makeFolder(QString *error) const;
    bool setAside(LockedFile &locked, QString *error);
    plist::Dictionary merged() const;
    bool failed(const QString &reason);

    QString m_homeFolder;
    QString m_name;
    const ports::Clock &m_clock;
    int m_lockAttempts;
    bool m_lockIsStuck = false;
    bool m_sweptTemporaries = false;
    bool m_read = false;
    DomainFile m_file;
    DomainFile::Content m_content = DomainFile::Content::Missing;
    plist::Dictionary m_values;
    QHash<QString, plist::Value> m_pending;
    QString m_loggedFailure;
};

} // namespace tarnwell::desktop
