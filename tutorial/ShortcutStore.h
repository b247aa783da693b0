#pragma once

#include "ports/Preferences.h"
#include "tutorial/Records.h"

#include <QFileSystemWatcher>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace tarnwell::ports {
class NotificationCenter;
}

namespace tarnwell::tutorial {

/// The tutorial's records in the domain that the settings pane shows.
///
/// A sitting begins when the tutorial starts without settings of its own: whoever wants it to start
/// afresh removes those, and the shortcuts that earlier sittings left go with them.
class ShortcutStore
{
public:
    using PreferencesMaker = std::function<std::unique_ptr<ports::Preferences>()>;

    /// Answers the sitting that is noted in this application's settings, or notes another one if
    /// that is not empty.
    using SittingSetting =
        std::function<QString(ports::Preferences &preferences, const QString &newSitting)>;

    /// The notifications outlive the store. The application's identifier keys its records.
    ShortcutStore(PreferencesMaker makePreferences, ports::NotificationCenter &notifications,
                  const QString &application, SittingSetting sitting);
    ~ShortcutStore();

    /// Begins a sitting if none goes on. False when the domain could not be stored.
    bool begin();

    /// What is stored now.
    QHash<QString, Shortcut> shortcuts(const QList<Item> &items);

    /// Stores a shortcut and tells everybody to look. Answers the titles of the items that lost it,
    /// or nothing when the domain could not be stored.
    std::optional<QStringList> assign(const QList<Item> &items, const QString &title,
                                      const Shortcut &shortcut);

private:
    plist::Value readMenuShortcuts();
    bool update(const ports::Preferences::Change &change);
    QString sitting();

    PreferencesMaker m_makePreferences;
    std::unique_ptr<ports::Preferences> m_preferences;
    ports::NotificationCenter &m_notifications;
    QString m_application;
    SittingSetting m_sitting;
};

/// Says when something happened to the files of a folder, also when the folder itself is made only
/// later.
class FolderWatcher : public QObject
{
    Q_OBJECT

public:
    explicit FolderWatcher(const QString &folder, QObject *parent = nullptr);

Q_SIGNALS:
    void changed();

private:
    void watchNearest();

    QString m_folder;
    QFileSystemWatcher m_watcher;
};

} // namespace tarnwell::tutorial
