#include "tutorial/ShortcutStore.h"

#include "ports/NotificationCenter.h"
#include "ports/Preferences.h"
#include "prefs/PreferenceKeys.h"

#include <QFileInfo>
#include <QUuid>

namespace tarnwell::tutorial {

using namespace Qt::StringLiterals;

namespace {

constexpr auto refreshNotification = "com.varnit.tarnwell.refresh"_L1;

} // namespace

ShortcutStore::ShortcutStore(PreferencesMaker makePreferences,
                             ports::NotificationCenter &notifications, const QString &application,
                             SittingSetting sitting)
    : m_makePreferences(std::move(makePreferences))
    , m_preferences(m_makePreferences())
    , m_notifications(notifications)
    , m_application(application)
    , m_sitting(std::move(sitting))
{}

ShortcutStore::~ShortcutStore() = default;

bool ShortcutStore::begin()
{
    const QString now = sitting();
    const plist::Value stored = readMenuShortcuts();
    const plist::Value kept = withoutOtherSittings(stored, m_application, now);
    return kept == stored || write(kept);
}

QHash<QString, Shortcut> ShortcutStore::shortcuts(const QList<Item> &items)
{
    return effectiveShortcuts(readMenuShortcuts(), m_application, items);
}

std::optional<QStringList> ShortcutStore::assign(const QList<Item> &items, const QString &title,
                                                 const Shortcut &shortcut)
{
    const QString now = sitting();
    const Assignment assignment =
        tutorial::assign(readMenuShortcuts(), m_application, items, title, shortcut, now);
    if (!write(assignment.menuShortcuts))
        return std::nullopt;
    return assignment.displaced;
}

plist::Value ShortcutStore::readMenuShortcuts()
{
    m_preferences->appSynchronize(prefs::pluginDomain);
    return m_preferences->copyAppValue(prefs::keys::menuShortcuts, prefs::pluginDomain);
}

bool ShortcutStore::write(const plist::Value &menuShortcuts)
{
    m_preferences->setAppValue(prefs::keys::menuShortcuts, menuShortcuts, prefs::pluginDomain);
    if (!m_preferences->appSynchronize(prefs::pluginDomain)) {
        // The write would stay pending, and one day undo what somebody else stored by then.
        m_preferences = m_makePreferences();
        return false;
    }
    m_notifications.post({refreshNotification, {}, {}});
    return true;
}

QString ShortcutStore::sitting()
{
    const QString present = m_sitting(*m_preferences, {});
    return present.isEmpty()
               ? m_sitting(*m_preferences, QUuid::createUuid().toString(QUuid::WithoutBraces))
               : present;
}

FolderWatcher::FolderWatcher(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_folder(folder)
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        watchNearest();
        Q_EMIT changed();
    });
    watchNearest();
}

void FolderWatcher::watchNearest()
{
    QString folder = m_folder;
    while (!QFileInfo(folder).isDir() && folder.contains(u'/'))
        folder = folder.section(u'/', 0, -2);
    if (folder.isEmpty() || m_watcher.directories() == QStringList{folder})
        return;
    if (!m_watcher.directories().isEmpty())
        m_watcher.removePaths(m_watcher.directories());
    m_watcher.addPath(folder);
}

} // namespace tarnwell::tutorial
