#pragma once

#include "ports/Preferences.h"

#include <chrono>
#include <map>
#include <memory>

namespace tarnwell::ports {
class Clock;
}

namespace tarnwell::desktop {

class PreferenceDomain;

/// Preferences in property-list files: a domain is <home>/Library/Preferences/<domain>.plist.
///
/// Any number of processes may share a domain: a synchronise changes the pending keys alone, under
/// a lock, and a kill at any instant leaves the file as it was before or after. A file that
/// somebody writes in place is waited for, from one synchronise to the next. One that stays damaged
/// is kept under another name, or where it is if a link led to it, which is then replaced. A domain
/// without a name, or with a slash, a NUL or a leading dot in it, reads as empty and cannot be
/// stored.
class FilePreferences final : public ports::Preferences
{
public:
    /// How long a synchronise waits for the lock: a window may not answer for longer.
    static constexpr std::chrono::milliseconds defaultLockPatience{250};

    /// The clock must live as long as the preferences.
    FilePreferences(const QString &homeFolder, const ports::Clock &clock,
                    std::chrono::milliseconds lockPatience = defaultLockPatience);
    ~FilePreferences() override;

    plist::Value copyAppValue(const QString &key, const QString &domain) const override;
    void setAppValue(const QString &key, const plist::Value &value, const QString &domain) override;
    bool appSynchronize(const QString &domain) override;
    bool appStorePending(const QString &domain) override;

private:
    bool synchronize(const QString &domain, bool withAllWrites);
    /// Null for a name that cannot be a domain's.
    PreferenceDomain *domainOfName(const QString &name) const;

    QString m_homeFolder;
    const ports::Clock &m_clock;
    std::chrono::milliseconds m_lockPatience;
    mutable std::map<QString, std::unique_ptr<PreferenceDomain>> m_domains;
};

} // namespace tarnwell::desktop
