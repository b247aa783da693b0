#include "desktop/PreferenceDomain.h"

#include "foundation/Logging.h"
#include "ports/Clock.h"

#include <QDateTime>
#include <QFile>

#include <sys/stat.h>

#include <cerrno>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr int attemptsWhileStuck = 1;

} // namespace

PreferenceDomain::PreferenceDomain(const QString &homeFolder, const QString &name,
                                   const ports::Clock &clock, int lockAttempts)
    : m_homeFolder(homeFolder)
    , m_name(name)
    , m_clock(clock)
    , m_lockAttempts(lockAttempts)
    , m_file(homeFolder + u"/Library/Preferences/"_s + name + u".plist"_s)
{}

plist::Value PreferenceDomain::value(const QString &key)
{
    if (const auto pending = m_pending.value(key))
        return *pending;
    if (!m_read)
        refresh();
    return m_values.value(key);
}

void PreferenceDomain::setValue(const QString &key, const plist::Value &value)
{
    if (!m_read)
        refresh();
    m_pending.note(key, value, m_isKnown ? std::optional(m_values.value(key)) : std::nullopt);
}

bool PreferenceDomain::synchronize()
{
    bool isGivenUp = false;
    if (!refresh() || (!isStored() && !store(&isGivenUp))) {
        m_pending.failed();
        return false;
    }
    m_pending.stored();
    m_loggedFailure.clear();
    return !isGivenUp;
}

ports::Preferences::StoreState PreferenceDomain::state() const
{
    return {m_pending.isEmpty() ? QString() : m_loggedFailure, m_pending.areLost(), m_setAside};
}

/// Takes up the file if it is another one than last time.
bool PreferenceDomain::refresh()
{
    m_read = true;
    QString error;
    const std::optional<bool> changed = m_file.hasChanged(&error);
    if (!changed)
        return failed(error);
    if (!*changed)
        return true;
    const DomainFile::Content content = m_file.read(&m_values, &error);
    if (content == DomainFile::Content::Unavailable)
        return failed(error);
    m_content = content;
    m_isKnown = m_isKnown || content != DomainFile::Content::Damaged;
    if (content == DomainFile::Content::Damaged) {
        TARNWELL_SYSTEM_LOG(u"The preferences in %1 are damaged: %2"_s.arg(m_file.path(), error));
    }
    return true;
}

bool PreferenceDomain::isStored() const
{
    if (m_content == DomainFile::Content::Damaged)
        return m_pending.isEmpty();
    return m_pending.areIn(m_values);
}

bool PreferenceDomain::store(bool *isGivenUp)
{
    QString error;
    if (!makeFolder(&error))
        return failed(error);
    std::optional<LockedFile> locked = LockedFile::acquire(
        m_file.path(), m_lockIsStuck ? qMin(attemptsWhileStuck, m_lockAttempts) : m_lockAttempts,
        &error);
    // The user waited once for a stopped process; the next actions need not.
    m_lockIsStuck = !locked;
    if (!locked)
        return failed(error);

    if (!refresh())
        return false;
    *isGivenUp = m_pending.giveUpOvertaken(m_values);
    if (*isGivenUp) {
        TARNWELL_SYSTEM_LOG(u"A change in %1 was given up: another process stored the same setting "
                            "meanwhile."_s.arg(m_file.path()));
    }
    if (isStored())
        return true;
    if (m_content == DomainFile::Content::Damaged && !setAside(*locked, &error))
        return failed(error);
    if (!m_sweptTemporaries) {
        locked->removeAbandonedTemporaries();
        m_sweptTemporaries = true;
    }
    // Of a file that got damaged, what was seen before is better than nothing.
    const plist::Dictionary values = m_pending.appliedTo(m_values);
    if (!m_file.replace(*locked, values, &error))
        return failed(error);
    m_values = values;
    m_content = DomainFile::Content::Readable;
    return true;
}

bool PreferenceDomain::makeFolder(QString *error) const
{
    // The home folder itself is not ours to make.
    for (const QString &part : {u"/Library"_s, u"/Library/Preferences"_s}) {
        if (::mkdir(QFile::encodeName(m_homeFolder + part).constData(), 0700) != 0 &&
            errno != EEXIST) {
            *error = systemError(u"make the folder"_s, errno);
            return false;
        }
    }
    return true;
}

bool PreferenceDomain::setAside(LockedFile &locked, QString *error)
{
    const qint64 seconds =
        qint64(m_clock.absoluteTime() + ports::Clock::absoluteTimeIntervalSince1970);
    const QString time =
        QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
    const QString name = locked.setAside(u".damaged-"_s + time, error);
    if (name.isEmpty())
        return false;
    m_content = DomainFile::Content::Missing;
    m_setAside = name;
    TARNWELL_SYSTEM_LOG(u"The damaged preferences %1 are kept as %2."_s.arg(m_file.path(), name));
    return true;
}

/// Says a failure once, not at every action that meets it again. Always false.
bool PreferenceDomain::failed(const QString &reason)
{
    if (m_loggedFailure != reason) {
        m_loggedFailure = reason;
        TARNWELL_SYSTEM_LOG(
            u"The preferences in %1 are not up to date: %2"_s.arg(m_file.path(), reason));
    }
    return false;
}

} // namespace tarnwell::desktop
