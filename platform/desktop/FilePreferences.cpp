#include "desktop/FilePreferences.h"

#include "desktop/PreferenceDomain.h"

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

FilePreferences::FilePreferences(const QString &homeFolder, const ports::Clock &clock,
                                 std::chrono::milliseconds lockPatience)
    : m_homeFolder(homeFolder)
    , m_clock(clock)
    , m_lockPatience(lockPatience)
{}

FilePreferences::~FilePreferences() = default;

PreferenceDomain *FilePreferences::domainOfName(const QString &name) const
{
    // A leading dot would meet the names of lock files and temporary files.
    if (name.isEmpty() || name.startsWith(u'.') || name.contains(u'/') || name.contains(QChar()))
        return nullptr;
    std::unique_ptr<PreferenceDomain> &domain = m_domains[name];
    if (!domain)
        domain = std::make_unique<PreferenceDomain>(m_homeFolder, name, m_clock, m_lockPatience);
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
    return synchronize(domain, false);
}

bool FilePreferences::appStorePending(const QString &domain)
{
    return synchronize(domain, true);
}

bool FilePreferences::synchronize(const QString &domain, bool withAllWrites)
{
    using Writes = PreferenceDomain::Writes;
    PreferenceDomain *const found = domainOfName(domain);
    const bool isStored =
        found && found->synchronize(withAllWrites ? Writes::All : Writes::OnlyWithNewOnes);
    if (found)
        reportStoring(domain, found->state());
    return isStored;
}

} // namespace tarnwell::desktop
