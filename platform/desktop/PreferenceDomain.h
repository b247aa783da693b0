#pragma once

#include "desktop/DomainFile.h"
#include "ports/PendingWrites.h"
#include "ports/Preferences.h"

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

    /// How the last synchronise ended.
    ports::Preferences::StoreState state() const;

private:
    bool refresh();
    bool isStored() const;
    bool store(bool *isGivenUp);
    bool makeFolder(QString *error) const;
    bool setAside(LockedFile &locked, QString *error);
    bool failed(const QString &reason);

    QString m_homeFolder;
    QString m_name;
    const ports::Clock &m_clock;
    int m_lockAttempts;
    bool m_lockIsStuck = false;
    bool m_sweptTemporaries = false;
    bool m_read = false;
    bool m_isKnown = false; ///< what is stored was read once
    DomainFile m_file;
    DomainFile::Content m_content = DomainFile::Content::Missing;
    plist::Dictionary m_values;
    ports::PendingWrites m_pending;
    QString m_setAside;
    QString m_loggedFailure;
};

} // namespace tarnwell::desktop
