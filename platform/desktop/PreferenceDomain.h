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
                     std::chrono::milliseconds lockPatience);

    /// A pending write, else what was last seen in the file, which the first call reads.
    plist::Value value(const QString &key);
    void setValue(const QString &key, const plist::Value &value);

    enum class Writes { OnlyWithNewOnes, All };

    /// Takes up what is stored, and stores the pending writes: all of them, or none if there is no
    /// new one among them. False when writes are still pending or were given up.
    bool synchronize(Writes writes);

    /// How the last synchronise ended.
    ports::Preferences::StoreState state() const;

private:
    enum class Outcome { Stored, Overtaken, Failed };

    bool refresh();
    void noteDamage(const QString &error);
    bool isBeingWritten() const;
    bool hasBeenWrittenForLong() const;
    bool mustWaitForWriter();
    void giveUpOvertaken();
    bool isStored() const;
    bool store();
    Outcome tryToStore();
    Outcome storeIn(LockedFile &locked);
    Outcome replaceLinkTo(const QString &target);
    std::optional<LockedFile> lock(LockedFile::Links links);
    bool makeFolder(QString *error) const;
    Outcome setAside(LockedFile &locked);
    bool failed(const QString &reason);

    QString m_homeFolder;
    QString m_name;
    const ports::Clock &m_clock;
    std::chrono::milliseconds m_lockPatience;
    bool m_lockIsStuck = false;
    bool m_sweptTemporaries = false;
    bool m_read = false;
    bool m_isKnown = false; ///< what is stored was read once
    DomainFile m_file;
    DomainFile::Content m_content = DomainFile::Content::Missing;
    double m_damagedSince = 0.0;    ///< when a damaged file was read that is still the same
    double m_unreadableSince = 0.0; ///< when a damaged file was first read after another one
    QString m_damage;               ///< what is wrong with it, until it was logged
    plist::Dictionary m_values;
    ports::PendingWrites m_pending;
    bool m_isAnyGivenUp = false; ///< in this synchronise
    QString m_setAside;
    QString m_loggedFailure;
};

} // namespace tarnwell::desktop
