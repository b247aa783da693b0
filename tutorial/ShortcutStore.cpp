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
    m_preferences->appSynchronize(prefs::pluginDomain);
    const QString now = sitting();
    return update([&](const plist::Value &present) -> std::optional<plist::Value> {
        const plist::Value kept = withoutOtherSittings(present, m_application, now);
        return kept == present ? std::nullopt : std::optional(kept);
    });
}

QHash<QString, Shortcut> ShortcutStore::shortcuts(const QList<Item> &items)
{
    return effectiveShortcuts(readMenuShortcuts(), m_application, items);
}

std::optional<QStringList> ShortcutStore::assign(const QList<Item> &items, const QString &title,
                                                 const Shortcut &shortcut)
{
    const QString now = sitting();
    QStringList displaced;
    const bool isStored = update([&](const plist::Value &present) {
        const Assignment assignment =
            tutorial::assign(present, m_application, items, title, shortcut, now);
        displaced = assignment.displaced;
        return assignment.menuShortcuts;
    });
    return isStored ? std::optional(displaced) : std::nullopt;
}

plist::Value ShortcutStore::readMenuShortcuts()
{
    m_preferences->appSynchronize(prefs::pluginDomain);
    return m_preferences->copyAppValue(prefs::keys::menuShortcuts, prefs::pluginDomain);
}

bool ShortcutStore::update(const ports::Preferences::Change &change)
{
    bool isChanged = false;
    const bool isStored = m_preferences->updateAppValue(
        prefs::keys::menuShortcuts, prefs::pluginDomain, [&](const plist::Value &present) {
            std::optional<plist::Value> changed = change(present);
            isChanged = changed.has_value();
            return changed;
        });
    if (!isChanged)
        return true;
    if (!isStored) {
        // The user is told that it was not stored, so it must not be stored one day after all.
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
