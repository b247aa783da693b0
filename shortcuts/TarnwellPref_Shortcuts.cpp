// The controller's half of the shortcut page: it reads the domain, lets the plain functions of this
// folder work on the values, writes back and refreshes the controls.

#include "pane/TarnwellPref.h"

#include "exclude/ExcludeRows.h"
#include "exclude/ExcludeTableModel.h"
#include "foundation/ForeignText.h"
#include "foundation/Logging.h"
#include "ports/Applications.h"
#include "ports/FileManager.h"
#include "ports/Timers.h"
#include "ports/Workspace.h"
#include "prefs/ApplicationIdentity.h"
#include "prefs/PreferenceKeys.h"
#include "prefs/RecordSorting.h"
#include "shortcuts/ApplicationPopup.h"
#include "shortcuts/LayoutKeyCommandTranslator.h"
#include "shortcuts/ShortcutBackups.h"
#include "shortcuts/ShortcutCells.h"
#include "shortcuts/ShortcutTableModel.h"
#include "ui/ForeignLabel.h"
#include "ui/StyledText.h"
#include "ui/StyledTextDelegate.h"

#include <QComboBox>
#include <QFontMetrics>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QTableView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

constexpr QSize popupIconSize(16, 16);
constexpr int shortcutColumnSpacing = 8;
constexpr qsizetype longestPopupTitle = 120;
constexpr int charactersOfAPopupTitle = 90; ///< as wide as so many usual ones

bool shows(const QComboBox &popup, const QList<shortcuts::PopupEntry> &entries)
{
    const auto showsEntry = [&popup, row = 0](const shortcuts::PopupEntry &entry) mutable {
        const int index = row++;
        return popup.itemText(index) == entry.title && popup.itemData(index) == entry.identifier &&
               popup.itemIcon(index).cacheKey() == entry.icon.cacheKey();
    };
    return !entries.isEmpty() && popup.count() == entries.size() &&
           std::all_of(entries.begin(), entries.end(), showsEntry);
}

} // namespace

void TarnwellPref::buildSCArray(const QString &settingsKey)
{
    appendRowsOf(settingsKey);
}

plist::Value TarnwellPref::appendRowsOf(const QString &settingsKey)
{
    const auto wrapper = preferences();
    wrapper->synchronize();
    const std::optional<plist::Dictionary> stored =
        wrapper->dictionaryForKey(prefs::keys::menuShortcuts);
    if (!stored)
        return {};
    plist::Value groups = stored->value(settingsKey);
    if (!groups.isArray())
        return groups;
    const shortcuts::ShortcutListResult built = shortcuts::buildShortcutRows(
        groups.toArray(), settingsKey, isInNotification(), *m_scTranslator);
    m_scArray.append(built.rows);
    if (isInNotification() || !built.groupsChanged || !canDrop({{settingsKey, groups}}, *stored))
        return groups;
    // Should the plug-in have stored more since, this is given up, and the next look does it.
    plist::Dictionary changed = *stored;
    changed.insert(settingsKey, plist::Value(built.groups));
    wrapper->setObject(plist::Value(changed), prefs::keys::menuShortcuts);
    wrapper->synchronize();
    return built.groups;
}

void TarnwellPref::rebuildPopup()
{
    const auto wrapper = preferences();
    wrapper->synchronize();
    m_scTranslator->useCurrentLayout();
    const plist::Dictionary stored =
        wrapper->dictionaryForKey(prefs::keys::menuShortcuts).value_or(plist::Dictionary());
    plist::Dictionary dropped;
    QList<shortcuts::PopupEntry> entries;
    for (const auto &application : stored) {
        const plist::Value groups = appendRowsOf(application.key);
        if (!m_scArray.hasRowsOf(application.key)) {
            TARNWELL_SYSTEM_LOG(u"No items configured for %1 (%2)"_s.arg(
                application.key, shortcuts::description(m_scArray)));
            dropped.insert(application.key, groups);
            continue;
        }
        const QString path = urlForAppID(application.key).toLocalFile();
        const QString name = shortcuts::applicationName(m_desktop.applications, path);
        if (name.isEmpty())
            continue;
        QIcon icon = m_desktop.workspace.iconForFile(path);
        if (icon.isNull())
            icon = m_desktop.workspace.iconForFileType(u"app"_s);
        entries.append(
            {shortcuts::popupTitle(name, m_desktop.fileManager, path), icon, application.key});
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const shortcuts::PopupEntry &a, const shortcuts::PopupEntry &b) {
                         return prefs::titleCompare(a.title, b.title) < 0;
                     });
    // The open list is as wide as its widest title.
    const QFontMetrics metrics = scPopup()->fontMetrics();
    for (shortcuts::PopupEntry &entry : entries)
        entry.title = metrics.elidedText(foundation::shownText(entry.title, longestPopupTitle),
                                         Qt::ElideMiddle,
                                         metrics.averageCharWidth() * charactersOfAPopupTitle);
    fillPopup(entries);
    if (entries.isEmpty())
        offerTutorial(*wrapper);

    if (!isInNotification() && !dropped.isEmpty())
        dropApplications(dropped);
}

void TarnwellPref::dropApplications(const plist::Dictionary &groupsByApplication)
{
    m_desktop.preferences.updateAppValue(
        prefs::keys::menuShortcuts, prefs::pluginDomain,
        [&](const plist::Value &stored) -> std::optional<plist::Value> {
            const plist::Dictionary &present = stored.toDictionary();
            plist::Dictionary remaining = present;
            plist::Dictionary dropped;
            for (const auto &application : groupsByApplication) {
                // The plug-in may have stored something to show meanwhile.
                if (present.value(application.key) != application.value)
                    continue;
                remaining.remove(application.key);
                dropped.insert(application.key, application.value);
            }
            if (dropped.isEmpty() || !canDrop(dropped, present))
                return std::nullopt;
            // Stored even when nothing remains: an empty dictionary tells the plug-in that every
            // application was looked at.
            return plist::Value(remaining);
        });
}

bool TarnwellPref::canDrop(const plist::Dictionary &dropped, const plist::Dictionary &present) const
{
    QString error;
    if (shortcutBackups().keepForDropping(dropped, present, &error))
        return true;
    TARNWELL_SYSTEM_LOG(u"Shortcuts that cannot be shown stay stored: %1"_s.arg(error));
    return false;
}

void TarnwellPref::doPopup(QObject *)
{
    const QString settingsKey = selectedSettingsKey();
    m_scArray.clear();
    if (settingsKey.isNull()) {
        appFormatField()->setText(u""_s);
    } else {
        m_scTranslator->useCurrentLayout();
        buildSCArray(settingsKey);
        const QString name = shortcuts::applicationName(m_desktop.applications,
                                                        urlForAppID(settingsKey).toLocalFile());
        if (!name.isEmpty())
            ui::showInLabel(appFormatField(), withTexts(storedAppFormatString(), {name}));
    }
    reloadShortcutTable();
    scRestoreButton()->setEnabled(scTable()->selectionModel()->hasSelection());
}

QUrl TarnwellPref::urlForAppID(const QString &identifier) const
{
    return prefs::UrlForAppID(m_desktop.applications, identifier);
}

QString TarnwellPref::selectedSettingsKey() const
{
    const QVariant represented = scPopup()->currentData();
    return represented.isValid() ? represented.toString() : QString();
}

int TarnwellPref::numberOfRowsInTableView(const QTableView *table) const
{
    if (table == ieListTable())
        return static_cast<int>(m_ieList.size());
    return table == scTable() ? m_scModel->rowCount() : 0;
}

std::optional<foundation::StyledString>
TarnwellPref::objectValueForTableColumn(const QTableView *table, int columnIdentifier,
                                        int row) const
{
    if (table == ieListTable() && columnIdentifier != exclude::iconColumn && row >= 0 &&
        row < m_ieList.size())
        return exclude::excludeCellValue(m_ieList.at(row).toDictionary(), m_desktop.fileManager);
    if (table != scTable() || row < 0 || row >= m_scModel->rowCount())
        return std::nullopt;
    return shortcuts::shortcutCellValue(m_scModel->shownRow(row), columnIdentifier);
}

void TarnwellPref::tableViewSelectionDidChange(const QTableView *table)
{
    if (table == ieListTable())
        updateExcludeButtons();
    if (table == scTable())
        scRestoreButton()->setEnabled(scTable()->selectionModel()->hasSelection());
}

void TarnwellPref::setUpShortcutTable()
{
    QTableView *table = scTable();
    m_scModel =
        new shortcuts::ShortcutTableModel(table->property("identifiers").toStringList(),
                                          table->property("headings").toStringList(), table);
    table->setModel(m_scModel);
    m_scTranslator = std::make_unique<shortcuts::LayoutKeyCommandTranslator>(
        m_desktop.keyboardLayouts, localized("None"));
    static_assert(shortcuts::ShortcutTableModel::StyledStringRole == ui::styledTextRole);
    auto *delegate = new ui::StyledTextDelegate(table);
    delegate->setColumnSpacing(shortcutColumnSpacing);
    table->setItemDelegate(delegate);
    ui::setRowHeightFor(smallFontFor(u"\u21E7\u2303\u2325\u2318Ag"_s, true, false), table);

    // The item takes what room there is; the other columns show their longest usual texts.
    QHeaderView *header = table->horizontalHeader();
    header->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    header->setStretchLastSection(false);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int column = 1; column < m_scModel->columnCount(); ++column)
        table->setColumnWidth(column, std::max(header->sectionSizeHint(column),
                                               table->fontMetrics().averageCharWidth() * 18));
    setUpShortcutFilter();
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { tableViewSelectionDidChange(scTable()); });
}

std::optional<shortcuts::ShortcutRow> TarnwellPref::selectedShortcut() const
{
    const QModelIndexList selected = scTable()->selectionModel()->selectedRows();
    if (selected.isEmpty())
        return std::nullopt;
    return m_scModel->shownRow(selected.first().row());
}

void TarnwellPref::reloadShortcutTable()
{
    changeShownShortcuts([this] { m_scModel->setRows(m_scArray.rows()); });
}

void TarnwellPref::changeShownShortcuts(const std::function<void()> &change)
{
    QTableView *table = scTable();
    const std::optional<shortcuts::ShortcutRow> before = selectedShortcut();
    const int column = table->selectionModel()->currentIndex().column();
    const QPoint scrolled(table->horizontalScrollBar()->value(),
                          table->verticalScrollBar()->value());
    change();
    if (!before || table->selectionModel()->hasSelection())
        return;
    // The item stays selected, not its place: what the buttons act on must not change by itself.
    const int row = m_scModel->indexOf(*before);
    if (row >= 0) {
        const QModelIndex index = m_scModel->index(row, std::max(column, 0));
        table->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                            QItemSelectionModel::Rows);
        table->horizontalScrollBar()->setValue(scrolled.x());
        table->verticalScrollBar()->setValue(scrolled.y());
    }
    // A table that was reset has no selection, but does not say so.
    tableViewSelectionDidChange(table);
}

void TarnwellPref::continueAtRow(int row)
{
    QTableView *table = scTable();
    if (table->selectionModel()->hasSelection())
        return;
    // Not selected: the next press of the button must not restore what nobody chose.
    table->selectionModel()->setCurrentIndex(
        m_scModel->index(std::min(row, m_scModel->rowCount() - 1), 0),
        QItemSelectionModel::NoUpdate);
    table->setFocus();
}

void TarnwellPref::offerTutorial(const prefs::CFPreferencesWrapper_Tarnwell &wrapper)
{
    constexpr double secondsBeforeTheOffer = 3.0;
    if (askedAboutTutorial() || wrapper.boolForKey(prefs::keys::disabled))
        return;
    setAskedAboutTutorial(true);
    m_tutorialTimer =
        m_desktop.timers.scheduleOnce(secondsBeforeTheOffer, [this] { showTutorialSheet(); });
}

void TarnwellPref::fillPopup(const QList<shortcuts::PopupEntry> &entries)
{
    // Filling a pop-up is no choice of the user's, so nobody hears of it.
    const QSignalBlocker blocker(scPopup());
    // A list that is open right now would lose its place.
    if (shows(*scPopup(), entries)) {
        scPopup()->setCurrentIndex(0);
        return;
    }
    QList<QStandardItem *> items;
    items.reserve(entries.size() + 1);
    for (const shortcuts::PopupEntry &entry : entries) {
        auto *item = new QStandardItem(entry.icon, entry.title);
        item->setData(entry.identifier, Qt::UserRole);
        items.append(item);
    }
    if (entries.isEmpty())
        items.append(new QStandardItem(localized("No Applications Configured")));

    scPopup()->setIconSize(popupIconSize);
    auto *model = qobject_cast<QStandardItemModel *>(scPopup()->model());
    model->clear();
    model->invisibleRootItem()->appendRows(items);
    scPopup()->setCurrentIndex(0);
    scRemoveAppButton()->setEnabled(!entries.isEmpty());
}

} // namespace tarnwell::pane
