#include "desktop/PreferenceDomain.h"

#include "foundation/Logging.h"
#include "ports/Clock.h"

#include <QDateTime>
#include <QFile>

#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

/// How long a file that holds nothing readable may be one that somebody is writing in place.
constexpr double timeToWrite = 0.5;

/// How often a write is begun again because somebody without the lock was faster.
constexpr int maximumTries = 5;

} // namespace

PreferenceDomain::PreferenceDomain(const QString &homeFolder, const QString &name,
                                   const ports::Clock &clock,
                                   std::chrono::milliseconds lockPatience)
    : m_homeFolder(homeFolder)
    , m_name(name)
    , m_clock(clock)
    , m_lockPatience(lockPatience)
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

bool PreferenceDomain::synchronize(Writes writes)
{
    m_isAnyGivenUp = false;
    bool isDone = refresh();
    if (isDone && !isStored())
        isDone = (writes == Writes::All || m_pending.hasNew()) && store();
    if (!isDone) {
        m_pending.failed();
        return false;
    }
    m_pending.stored();
    m_loggedFailure.clear();
    return !m_isAnyGivenUp;
}

ports::Preferences::StoreState PreferenceDomain::state() const
{
    return {m_pending.isEmpty() ? QString() : m_loggedFailure, m_pending.areLost(), m_setAside,
            isBeingWritten() && !hasBeenWrittenForLong()};
}

/// Takes up the file if it is another one than last time.
bool PreferenceDomain::refresh()
{
    m_read = true;
    QString error;
    const std::optional<bool> changed = m_file.hasChanged(&error);
    if (!changed)
        return failed(error);
    if (*changed) {
        const DomainFile::Content content = m_file.read(&m_values, &error);
        if (content == DomainFile::Content::Unavailable)
            return failed(error);
        if (content == DomainFile::Content::Damaged)
            noteDamage(error);
        m_content = content;
        m_isKnown = m_isKnown || content != DomainFile::Content::Damaged;
    }
    if (m_content == DomainFile::Content::Damaged) {
        if (!isBeingWritten() && !m_damage.isEmpty())
            TARNWELL_SYSTEM_LOG(u"The preferences in %1 are damaged: %2"_s.arg(
                m_file.path(), std::exchange(m_damage, {})));
        return true;
    }
    giveUpOvertaken();
    return true;
}

void PreferenceDomain::noteDamage(const QString &error)
{
    m_damagedSince = m_clock.steadyTime();
    if (m_content != DomainFile::Content::Damaged)
        m_unreadableSince = m_damagedSince;
    m_damage = error;
}

/// Whether the file may be readable in a moment: it is empty or cut while somebody writes it in
/// place, and until it has stayed as it is for a while nobody can tell that from a damaged one.
bool PreferenceDomain::isBeingWritten() const
{
    return m_content == DomainFile::Content::Damaged &&
           m_clock.steadyTime() - m_damagedSince < timeToWrite;
}

bool PreferenceDomain::hasBeenWrittenForLong() const
{
    return m_clock.steadyTime() - m_unreadableSince >= timeToWrite;
}

bool PreferenceDomain::mustWaitForWriter()
{
    if (!isBeingWritten())
        return false;
    if (hasBeenWrittenForLong())
        failed(u"Another process is writing the file, and does not come to an end."_s);
    return true;
}

void PreferenceDomain::giveUpOvertaken()
{
    if (!m_pending.giveUpOvertaken(m_values))
        return;
    m_isAnyGivenUp = true;
    TARNWELL_SYSTEM_LOG(u"A change in %1 was given up: another process stored the same setting "
                        "meanwhile."_s.arg(m_file.path()));
}

bool PreferenceDomain::isStored() const
{
    if (m_content == DomainFile::Content::Damaged)
        return m_pending.isEmpty();
    return m_pending.areIn(m_values);
}

bool PreferenceDomain::store()
{
    for (int i = 0; i < maximumTries; ++i) {
        const Outcome outcome = tryToStore();
        if (outcome != Outcome::Overtaken)
            return outcome == Outcome::Stored;
    }
    return failed(u"Another process stores again and again."_s);
}

PreferenceDomain::Outcome PreferenceDomain::tryToStore()
{
    if (mustWaitForWriter())
        return Outcome::Failed;
    if (QString error; !makeFolder(&error)) {
        failed(error);
        return Outcome::Failed;
    }
    std::optional<LockedFile> locked = lock(LockedFile::Links::Follow);
    if (!locked || !refresh())
        return Outcome::Failed;
    if (isStored())
        return Outcome::Stored;
    if (m_content != DomainFile::Content::Damaged)
        return storeIn(*locked);
    if (mustWaitForWriter())
        return Outcome::Failed;
    if (locked->isBehindLink()) {
        const QString target = locked->target();
        locked.reset();
        return replaceLinkTo(target);
    }
    const Outcome outcome = setAside(*locked);
    return outcome == Outcome::Stored ? storeIn(*locked) : outcome;
}

/// Puts a file in the place of a link to a damaged one. What it leads to may be anything, and
/// belongs to whoever put it there; the link itself is ours.
PreferenceDomain::Outcome PreferenceDomain::replaceLinkTo(const QString &target)
{
    std::optional<LockedFile> locked = lock(LockedFile::Links::Replace);
    const Outcome outcome = locked ? storeIn(*locked) : Outcome::Failed;
    if (outcome == Outcome::Stored) {
        m_setAside = target;
        TARNWELL_SYSTEM_LOG(u"The damaged preferences stay as %1. %2 was a link to them, and is a "
                            "file now."_s.arg(target, m_file.path()));
    }
    return outcome;
}

PreferenceDomain::Outcome PreferenceDomain::storeIn(LockedFile &locked)
{
    if (!m_sweptTemporaries) {
        locked.removeAbandonedTemporaries();
        m_sweptTemporaries = true;
    }
    // Of a file that got damaged, what was seen before is better than nothing.
    const plist::Dictionary values = m_pending.appliedTo(m_values);
    QString error;
    switch (m_file.replace(locked, values, &error)) {
    case DomainFile::Replaced::Overtaken:
        return Outcome::Overtaken;
    case DomainFile::Replaced::Failed:
        failed(error);
        return Outcome::Failed;
    case DomainFile::Replaced::Done:
        break;
    }
    m_values = values;
    m_content = DomainFile::Content::Readable;
    return Outcome::Stored;
}

std::optional<LockedFile> PreferenceDomain::lock(LockedFile::Links links)
{
    using namespace std::chrono_literals;
    QString error;
    std::optional<LockedFile> locked =
        LockedFile::acquire(m_file.path(), m_lockIsStuck ? 0ms : m_lockPatience, links, &error);
    // The user waited once for a stopped process; the next actions need not.
    m_lockIsStuck = !locked;
    if (!locked)
        failed(error);
    return locked;
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

PreferenceDomain::Outcome PreferenceDomain::setAside(LockedFile &locked)
{
    const qint64 seconds =
        qint64(m_clock.absoluteTime() + ports::Clock::absoluteTimeIntervalSince1970);
    const QString time =
        QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
    QString error;
    const QString kept = m_file.setAside(locked, u".damaged-"_s + time, &error);
    if (kept.isEmpty()) {
        if (error.isEmpty())
            return Outcome::Overtaken;
        failed(error);
        return Outcome::Failed;
    }
    m_content = DomainFile::Content::Missing;
    m_setAside = kept;
    TARNWELL_SYSTEM_LOG(u"The damaged preferences %1 are kept as %2."_s.arg(m_file.path(), kept));
    return Outcome::Stored;
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
