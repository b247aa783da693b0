#pragma once

#include "foundation/plist/Value.h"
#include "tutorial/Shortcut.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// The stored shortcut records as whoever changes shortcuts inside an application writes and reads
/// them: values in, values out. A "MenuShortcuts" value is a dictionary, or null for none.
namespace tarnwell::tutorial {

/// A menu item as the application made it.
struct Item
{
    QString title;
    QStringList menus; ///< from the menu bar down to the menu that it is in
    Shortcut original;
};

struct Assignment
{
    plist::Value menuShortcuts; ///< the whole new value; null when no record is left
    QStringList displaced;      ///< titles of the items that had the shortcut until now
};

/// Gives an item of an application a shortcut, or none. An item that had it before is left without
/// one. An item that gets its original back needs no record. Whatever else is stored stays.
///
/// The sitting is noted in each record that is written.
Assignment assign(const plist::Value &menuShortcuts, const QString &application,
                  const QList<Item> &items, const QString &title, const Shortcut &shortcut,
                  const QString &sitting);

/// The shortcut that each item has now, by title. Two items never share one: a stored shortcut goes
/// before an original, and the item further up before the one below.
QHash<QString, Shortcut> effectiveShortcuts(const plist::Value &menuShortcuts,
                                            const QString &application, const QList<Item> &items);

/// The value without an application's records of other sittings; records that name no sitting
/// stay.
plist::Value withoutOtherSittings(const plist::Value &menuShortcuts, const QString &application,
                                  const QString &sitting);

} // namespace tarnwell::tutorial
