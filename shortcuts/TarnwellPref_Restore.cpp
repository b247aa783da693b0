// Giving an original shortcut back, and removing an application's shortcuts. Both ask first, and
// both keep what they replace.

#include "pane/TarnwellPref.h"

#include "foundation/ForeignText.h"
#include "ports/FileManager.h"
#include "ports/FileStore.h"
#include "ports/Sheets.h"
#include "prefs/PreferenceKeys.h"
#include "shortcuts/LayoutKeyCommandTranslator.h"
#include "shortcuts/RestoreShortcut.h"
#include "shortcuts/ShortcutBackups.h"

#include <QComboBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QTableView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

constexpr qsizetype longestReason = 300;

bool isSameItem(const shortcuts::ShortcutRow &a, const shortcuts::ShortcutRow &b)
{
    return a.key == b.key && a.settingsKey == b.settingsKey;
}

bool isSameItem(const std::optional<shortcuts::ShortcutRow> &a, const shortcuts::ShortcutRow *b)
{
    return a && b ? isSameItem(*a, *b) : !a && !b;
}

} // namespace

const shortcuts::ShortcutRow *TarnwellPref::findKey(const foundation::StyledString &key,
                                                    const plist::Value &withModifiers,
                                                    bool inOriginal) const
{
    return shortcuts::findKey(m_scArray.rows(), key, withModifiers, inOriginal);
}

void TarnwellPref::doRestoreOriginal(QObject *)
{
    showStatus({});
    const std::optional<shortcuts::ShortcutRow> row = selectedShortcut();
    if (!row)
        return;
    const shortcuts::ShortcutRow *conflict =
        findKey(row->originalTranslatedKey, row->originalModifiers, false);
    const QString title = row->title.toString();

    ports::Alert alert;
    alert.title = localized("Restore Original Shortcut");
    alert.defaultButton = localized("Restore");
    alert.alternateButton = localized("Cancel");
    if (conflict) {
        alert.style = ports::AlertStyle::Critical;
        alert.message = withTexts(
            localized("Are you sure you want to restore the original keyboard shortcut for "
                      "\"%@\"? Doing so will remove the shortcut from \"%@\" as it uses the same "
                      "shortcut key as the original shortcut for this item."),
            {title, conflict->title.toString()});
    } else {
        alert.style = ports::AlertStyle::Informational;
        alert.message = withTexts(localized("Are you sure you want to restore the original "
                                            "keyboard shortcut for \"%@\"?"),
                                  {title});
    }
    std::optional<shortcuts::ShortcutRow> context;
    if (conflict)
        context = *conflict;
    m_desktop.sheets.beginAlert(alert, scTable(), [this, row, context](int returnCode) {
        restoreSheetDidEnd(*row, returnCode, context);
    });
}

void TarnwellPref::restoreSheetDidEnd(const shortcuts::ShortcutRow &asked, int returnCode,
                                      const std::optional<shortcuts::ShortcutRow> &contextInfo)
{
    if (returnCode != 1)
        return;
    // The list may have been rebuilt while the question was up. Only the item that was asked about
    // is restored, as it stands now; and only the item that was named loses its shortcut to it.
    const std::optional<shortcuts::ShortcutRow> row = selectedShortcut();
    if (!row || !isSameItem(*row, asked)) {
        doPopup(scPopup());
        showStatus(
            withTexts(localized("\"%@\" was not restored: its shortcut was changed elsewhere "
                                "while the question was open."),
                      {asked.title.toString()}));
        return;
    }
    const shortcuts::ShortcutRow *conflict =
        findKey(row->originalTranslatedKey, row->originalModifiers, false);
    if (conflict && !isSameItem(contextInfo, conflict)) {
        doRestoreOriginal(nullptr);
        return;
    }
    const int place = scTable()->currentIndex().row();

    bool isGroupRemoved = false;
    bool isChanged = false;
    const bool isDone = changeShortcuts(
        [&](const plist::Dictionary &present) {
            const plist::Array groups = present.value(row->settingsKey).toArray();
            const shortcuts::RestoreResult result =
                shortcuts::restoreOriginal(groups, *row, conflict, *m_scTranslator);
            isGroupRemoved = result.groupRemoved;
            isChanged = result.changed;
            return result.changed ? shortcuts::withGroups(present, row->settingsKey, result.groups)
                                  : present;
        },
        [=, this] { restoreSheetDidEnd(asked, returnCode, contextInfo); });
    if (!isDone)
        return;
    if (isGroupRemoved)
        rebuildPopup();
    doPopup(scPopup());
    if (!isChanged) {
        showStatus(withTexts(localized("\"%@\" was not restored: its stored record does not match "
                                       "the item that is shown."),
                             {asked.title.toString()}));
    }
    continueAtRow(place);
}

void TarnwellPref::doRemoveApp(QObject *)
{
    showStatus({});
    const QString settingsKey = selectedSettingsKey();
    if (settingsKey.isNull())
        return;
    ports::Alert alert;
    alert.style = ports::AlertStyle::Critical;
    alert.title = localized("Remove All Shortcuts");
    alert.message = withTexts(localized("Are you sure you want to remove all customized shortcuts "
                                        "for \"%@\"? This action cannot be undone."),
                              {scPopup()->currentText()});
    alert.defaultButton = localized("Proceed");
    alert.alternateButton = localized("Cancel");
    m_desktop.sheets.beginAlert(alert, scTable(), [this, settingsKey](int returnCode) {
        removeSheetDidEnd(settingsKey, returnCode);
    });
}

void TarnwellPref::removeSheetDidEnd(const QString &askedSettingsKey, int returnCode)
{
    if (returnCode != 1)
        return;
    // Another application may be chosen by now, because this one went while the question was up.
    const bool isStillShown = selectedSettingsKey() == askedSettingsKey;
    if (isStillShown) {
        const bool isDone = changeShortcuts(
            [&](const plist::Dictionary &present) {
                return shortcuts::withGroups(present, askedSettingsKey, {});
            },
            [=, this] { removeSheetDidEnd(askedSettingsKey, returnCode); });
        if (!isDone)
            return;
    }
    rebuildPopup();
    doPopup(scPopup());
    if (!isStillShown) {
        showStatus(localized("Nothing was removed: the shortcuts were changed elsewhere while the "
                             "question was open."));
    }
    // Greyed out, the button would pass the focus on to one that the same key works.
    if (!scRemoveAppButton()->isEnabled())
        scPopup()->setFocus();
}

bool TarnwellPref::changeShortcuts(
    const std::function<plist::Dictionary(const plist::Dictionary &present)> &change,
    const std::function<void()> &again)
{
    QString error;
    m_desktop.preferences.updateAppValue(
        prefs::keys::menuShortcuts, prefs::pluginDomain,
        [&](const plist::Value &stored) -> std::optional<plist::Value> {
            const plist::Dictionary &present = stored.toDictionary();
            const plist::Dictionary changed = change(present);
            const bool isKept = changed == present || present.isEmpty() || m_goesWithoutBackup ||
                                shortcutBackups().keep(present, &error);
            if (changed == present || !isKept)
                return std::nullopt;
            return changed.isEmpty() ? plist::Value() : plist::Value(changed);
        });
    if (error.isEmpty())
        return true;
    askToGoOnWithoutBackup(error, again);
    return false;
}

void TarnwellPref::askToGoOnWithoutBackup(const QString &error, const std::function<void()> &again)
{
    ports::Alert alert;
    alert.style = ports::AlertStyle::Critical;
    alert.title = localized("Nothing Was Changed");
    alert.message =
        localized("The present shortcuts could not be kept for bringing them back: %1\n\n"
                  "Do you want to go on without? What is changed now cannot be brought "
                  "back then.")
            .arg(foundation::shownText(error, longestReason));
    alert.defaultButton = localized("Go On");
    alert.alternateButton = localized("Cancel");
    m_desktop.sheets.beginAlert(alert, scTable(), [this, again](int returnCode) {
        if (returnCode != 1)
            return;
        m_goesWithoutBackup = true;
        const auto needsOneAgain = qScopeGuard([this] { m_goesWithoutBackup = false; });
        again();
    });
}

shortcuts::ShortcutBackups TarnwellPref::shortcutBackups() const
{
    return {
        m_desktop.fileStore, m_desktop.clock,
        m_desktop.fileManager.resolve(u"~/Library/Application Support/Varnit/Tarnwell/Backups"_s)};
}

} // namespace tarnwell::pane
