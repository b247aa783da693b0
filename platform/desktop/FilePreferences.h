#pragma once

#include "ports/Preferences.h"

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
/// a lock, and a kill at any instant leaves the file as it was before or after. A damaged file is
/// kept under another name. A domain without a name, or with a slash, a NUL or a leading dot in it,
/// reads as empty and cannot be stored.
class FilePreferences final : public ports::Preferences
{
public:
    /// About five seconds for a writer that holds the lock to finish.
    static constexpr int defaultLockAttempts = 5000;

    /// The clock names the damaged files and must live as long as the preferences.
    FilePreferences(const QString &homeFolder, const ports::Clock &clock,
                    int lockAttempts = defaultLockAttempts);
    ~FilePreferences() override;

    plist::Value copyAppValue(const QString &key, const QString &domain) const override;
    void setAppValue(const QString &key, const plist::Value &value, const QString &domain) override;
    bool appSynchronize(const QString &domain) override;

private:
    /// Null for a name that cannot be a domain's.
    PreferenceDomain *domainOfName(const QString &name) const;

    QString m_homeFolder;
    const ports::Clock &m_clock;
    int m_lockAttempts;
    mutable std::map<QString, std::unique_ptr<PreferenceDomain>> m_domains;
};

} // namespace tarnwell::desktop
