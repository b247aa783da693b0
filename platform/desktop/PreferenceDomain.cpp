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

constexpr int attemptsWhileStuck = 50;

bool isSame(const plist::Value &a, const plist::Value &b)
{
    // Equality takes 1 for 1.0; a file that holds the one does not hold the other.
    return a.type() == b.type() && a == b;
}

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
    if (const auto pending = m_pending.constFind(key); pending != m_pending.cend())
        return *pending;
    if (!m_read)
        refresh();
    return m_values.value(key);
}

void PreferenceDomain::setValue(const QString &key, const plist::Value &value)
{
    m_pending.insert(key, value);
}

bool PreferenceDomain::synchronize()
{
    if (!refresh())
        return false;
    if (!isStored() && !store())
        return false;
    m_pending.clear();
    m_loggedFailure.clear();
    return true;
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
    if (content == DomainFile::Content::Damaged) {
        TARNWELL_SYSTEM_LOG(u"The preferences in %1 are damaged: %2"_s.arg(m_file.path(), error));
    }
    return true;
}

bool PreferenceDomain::isStored() const
{
    if (m_content == DomainFile::Content::Damaged)
        return m_pending.isEmpty();
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it) {
        if (!isSame(m_values.value(it.key()), it.value()))
            return false;
    }
    return true;
}

bool PreferenceDomain::store()
{
    QString error;
    if (!makeFolder(&error))
        return failed(error);
    std::optional<LockedFile> locked = LockedFile::acquire(
        m_file.path(), m_lockIsStuck ? qMin(attemptsWhileStuck, m_lockAttempts) : m_lockAttempts,
        &error);
    // The user waited once for a stopped process; the next action need not wait as long.
    m_lockIsStuck = !locked;
    if (!locked)
        return failed(error);

    if (!refresh())
        return false;
    if (isStored())
        return true;
    if (m_content == DomainFile::Content::Damaged && !setAside(*locked, &error))
        return failed(error);
    if (!m_sweptTemporaries) {
        locked->removeAbandonedTemporaries();
        m_sweptTemporaries = true;
    }
    const plist::Dictionary values = merged();
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
    TARNWELL_SYSTEM_LOG(u"The damaged preferences %1 are kept as %2."_s.arg(m_file.path(), name));
    return true;
}

plist::Dictionary PreferenceDomain::merged() const
{
    // What was seen before a file got damaged is better than nothing.
    plist::Dictionary values = m_values;
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it)
        values.insert(it.key(), *it);
    return values;
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
