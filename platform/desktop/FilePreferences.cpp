#include "desktop/FilePreferences.h"

#include "desktop/PreferenceDomain.h"

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

FilePreferences::FilePreferences(const QString &homeFolder, const ports::Clock &clock,
                                 int lockAttempts)
    : m_homeFolder(homeFolder)
    , m_clock(clock)
    , m_lockAttempts(lockAttempts)
{}

FilePreferences::~FilePreferences() = default;

PreferenceDomain *FilePreferences::domainOfName(const QString &name) const
{
    // A leading dot would meet the names of lock files and temporary files.
    if (name.isEmpty() || name.startsWith(u'.') || name.contains(u'/') || name.contains(QChar()))
        return nullptr;
    std::unique_ptr<PreferenceDomain> &domain = m_domains[name];
    if (!domain)
        domain = std::make_unique<PreferenceDomain>(m_homeFolder, name, m_clock, m_lockAttempts);
    return domain.get();
}

plist::Value FilePreferences::copyAppValue(const QString &key, const QString &domain) const
{
    PreferenceDomain *const found = domainOfName(domain);
    return found ? found->value(key) : plist::Value();
}

void FilePreferences::setAppValue(const QString &key, const plist::Value &value,
                                  const QString &domain)
{
    if (PreferenceDomain *const found = domainOfName(domain))
        found->setValue(key, value);
}

bool FilePreferences::appSynchronize(const QString &domain)
{
    PreferenceDomain *const found = domainOfName(domain);
    const bool isStored = found && found->synchronize();
    if (found)
        reportStoring(domain, found->state());
    return isStored;
}

} // namespace tarnwell::desktop
