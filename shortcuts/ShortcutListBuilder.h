#pragma once

#include "foundation/plist/Value.h"
#include "shortcuts/ShortcutRow.h"

#include <QList>

#include <functional>
#include <optional>

namespace tarnwell::shortcuts {

/// How key commands become text. Handed in, so that building rows needs no keyboard.
class KeyCommandTranslator
{
public:
    virtual ~KeyCommandTranslator() = default;

    /// The text to display for a stored key command; "None", greyed, where it names no key.
    virtual foundation::StyledString display(const plist::Dictionary &keyCommand) = 0;

    /// The fingerprint of a key code and command character, for logs and comparisons.
    virtual std::optional<QString> fingerprint(const plist::Value &keyCode,
                                               const plist::Value &commandKey) = 0;
};

/// What one application's stored menu groups come to.
struct ShortcutListResult
{
    QList<ShortcutRow> rows;    ///< the changed shortcuts, in the order in which titles were met
    plist::Array groups;        ///< the stored groups without their incomplete items
    bool groupsChanged = false; ///< whether something incomplete was dropped
};

/// Merges an application's stored menu groups into rows and drops incomplete items.
///
/// While the plug-in's refresh is being handled (isInNotification) its records may be half written:
/// an item that lacks its original shortcut is then shown, and the groups come back as they were.
/// Values of another type than the format has are left alone and shown as nothing.
ShortcutListResult buildShortcutRows(const plist::Array &groups, const QString &settingsKey,
                                     bool isInNotification, KeyCommandTranslator &translator);

} // namespace tarnwell::shortcuts
