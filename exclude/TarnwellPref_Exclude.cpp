// The controller's half of the exclude page: the store and the rows are this folder's plain
// functions, the table and the buttons are refreshed here.

#include "pane/TarnwellPref.h"

#include "exclude/ExcludeListDownload.h"
#include "exclude/ExcludeListExchange.h"
#include "exclude/ExcludeRecord.h"
#include "exclude/ExcludeRows.h"
#include "exclude/ExcludeStore.h"
#include "exclude/ExcludeTableModel.h"
#include "ports/FileManager.h"
#include "ports/HttpFetcher.h"
#include "ports/OpenPanel.h"
#include "ports/Timers.h"
#include "ports/Workspace.h"
#include "prefs/ApplicationIdentity.h"
#include "prefs/PreferenceKeys.h"
#include "ui/FirstPaint.h"
#include "ui/StyledText.h"
#include "ui/StyledTextDelegate.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTableView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

constexpr int iconColumnMargin = 8; ///< at either side of an icon

/// The bundle that a chosen item belongs to: itself, or the folder around it. A program needs no
/// bundle around it.
std::optional<foundation::Bundle> bundleOfItem(const ports::FileManager &fileManager,
                                               const QString &path)
{
    if (auto bundle = foundation::Bundle::open(path))
        return bundle;
    const QFileInfo item(path);
    if (auto bundle = foundation::Bundle::open(item.path()))
        return bundle;
    const bool isProgram = item.isFile() && fileManager.isOwnerExecutable(path);
    return isProgram ? foundation::Bundle::ofPlainFolder(item.path()) : std::nullopt;
}

exclude::DownloadServices downloadServices(const ports::Desktop &desktop)
{
    return {desktop.preferences, desktop.clock, desktop.fileManager, desktop.tasks};
}

QUrl listAddress()
{
    return QUrl(QStringLiteral(TARNWELL_WEB_SERVER "/goto/excludelist/tarnwell/"));
}

bool isFocused(const QWidget *widget)
{
    return widget->window()->focusWidget() == widget;
}

/// Greys a button out. The focus goes where no key does harm, and not to the next button, which
/// whoever presses this one again and again would press then.
void setEnabledOrFocus(QWidget *instead, QPushButton *button, bool enabled)
{
    if (!enabled && isFocused(button))
        instead->setFocus();
    button->setEnabled(enabled);
}

} // namespace

void TarnwellPref::setUpExcludeTable()
{
    QTableView *table = ieListTable();
    const QString image = m_bundle.resourcePath(u"HardcodedApp"_s, u"tiff"_s);
    m_ieModel = new exclude::ExcludeTableModel(
        table->property("identifiers").toStringList(), table->property("headings").toStringList(),
        m_desktop.fileManager, m_desktop.workspace,

        image.isEmpty() ? QIcon() : m_desktop.workspace.iconFromImageFile(image), table);
    static_assert(exclude::ExcludeTableModel::StyledStringRole == ui::styledTextRole);
    table->setModel(m_ieModel);
    table->setItemDelegate(new ui::StyledTextDelegate(table));
    ui::setRowHeightFor(exclude::excludeCellValue({{exclude::record::displayName, u"Ag"_s},
                                                   {exclude::record::comment, u"Ag"_s}},
                                                  m_desktop.fileManager),
                        table);

    QHeaderView *header = table->horizontalHeader();
    header->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    header->setMinimumSectionSize(table->iconSize().width() + 2 * iconColumnMargin);
    header->setSectionResizeMode(0, QHeaderView::Fixed);
    header->resizeSection(0, header->minimumSectionSize());
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { tableViewSelectionDidChange(ieListTable()); });
    connect(new QShortcut(Qt::Key_Delete, table, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, ieRemoveButton(), &QPushButton::click);
}

int TarnwellPref::selectedExcludeRow() const
{
    const QItemSelectionModel *selection = ieListTable()->selectionModel();
    return selection->hasSelection() ? selection->selectedIndexes().constFirst().row() : -1;
}

void TarnwellPref::selectExcludeRow(int row)
{
    // In the column with the text, which is what a screen reader then says.
    const QModelIndex index = m_ieModel->index(row, m_ieModel->columnCount() - 1);
    ieListTable()->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                QItemSelectionModel::Rows);
}

void TarnwellPref::updateExcludeButtons()
{
    const int row = selectedExcludeRow();
    setEnabledOrFocus(ieListTable(), ieRemoveButton(),
                      row >= 0 && !exclude::isPredefined(m_ieList.at(row).toDictionary()));
}

void TarnwellPref::refreshIEList()
{
    const plist::Array stored = exclude::CopyExcludeList(m_desktop.preferences, prefs::pluginDomain)
                                    .value_or(plist::Array());
    if (exclude::excludeRows(stored, ieHideCheckbox()->isChecked(), m_desktop.fileManager) !=
        m_ieList)
        buildIEList();
}

void TarnwellPref::buildIEList()
{
    const int row = selectedExcludeRow();
    const plist::Value selected = row >= 0 ? m_ieList.at(row) : plist::Value();
    const int scrolled = ieListTable()->verticalScrollBar()->value();

    const plist::Array stored = exclude::CopyExcludeList(m_desktop.preferences, prefs::pluginDomain)
                                    .value_or(plist::Array());
    m_ieList = exclude::excludeRows(stored, ieHideCheckbox()->isChecked(), m_desktop.fileManager);
    m_ieModel->setRecords(m_ieList);

    // The application stays selected, not its place in the list.
    if (const int now = selected.isNull() ? -1 : m_ieModel->indexOf(selected); now >= 0) {
        ieListTable()->verticalScrollBar()->setValue(scrolled);
        selectExcludeRow(now);
    }
    setEnabledOrFocus(ieListTable(), ieRemoveButton(), selectedExcludeRow() >= 0);
    ieExportButton()->setEnabled(exclude::hasRecordsToExport(stored));
}

void TarnwellPref::ieAddApp(QObject *)
{
    ports::ApplicationPanel panel;
    panel.title = localized("Choose an Application");
    panel.prompt = localized("Add");
    panel.folder = m_desktop.fileManager.resolve(u"/Applications"_s);
    panel.types = QStringList{u"app"_s};
    panel.allowsMultipleSelection = true;
    panel.treatsFilePackagesAsDirectories = false;
    panel.canChooseDirectories = false;
    panel.canChooseFiles = true;
    m_desktop.openPanel.chooseApplications(
        panel, m_mainView,
        [this](int returnCode, const QStringList &paths) { ieOpenPanelDidEnd(paths, returnCode); });
}

void TarnwellPref::ieOpenPanelDidEnd(const QStringList &panelPaths, int returnCode)
{
    if (returnCode != ports::OpenPanel::okButton || panelPaths.isEmpty())
        return;
    QString last;
    for (const QString &path : panelPaths) {
        const auto bundle = bundleOfItem(m_desktop.fileManager, path);
        if (!bundle)
            continue;
        exclude::AddBundleToExcludeList(identityContext(), m_desktop.preferences,
                                        prefs::pluginDomain, *bundle, path, std::nullopt, false);
        last = prefs::GetApplicationID(identityContext(), *bundle, path).string();
        buildIEList();
    }
    // Whoever added an application sees where it went.
    for (int row = 0; row < m_ieList.size() && !last.isEmpty(); ++row) {
        if (m_ieList.at(row).toDictionary().value(exclude::record::identifier) ==
            plist::Value(last)) {
            selectExcludeRow(row);
            break;
        }
    }
}

void TarnwellPref::ieRemoveApp(QObject *)
{
    const int row = selectedExcludeRow();
    if (row < 0 || row >= m_ieList.size())
        return;
    const bool wasFocused = isFocused(ieRemoveButton());
    exclude::RemoveRecordFromExcludeList(m_desktop.preferences, prefs::pluginDomain,
                                         m_ieList.at(row).toDictionary());
    buildIEList();
    // The next one takes its place, for those who remove one after the other by the keyboard.
    if (selectedExcludeRow() < 0 && !m_ieList.isEmpty())
        selectExcludeRow(std::min(row, static_cast<int>(m_ieList.size()) - 1));
    if (wasFocused && ieRemoveButton()->isEnabled())
        ieRemoveButton()->setFocus();
}

void TarnwellPref::ieHideCheckbox(QObject *sender)
{
    const auto *checkbox = qobject_cast<QCheckBox *>(sender);
    const auto wrapper = preferences();
    wrapper->setBool(checkbox && checkbox->isChecked(),
                     prefs::keys::hidePredefinedExcludeListItems);
    wrapper->synchronize();
    buildIEList();
}

void TarnwellPref::ieInternetCheckbox(QObject *sender)
{
    const auto *checkbox = qobject_cast<QCheckBox *>(sender);
    const auto wrapper = preferences();
    wrapper->setBool(!checkbox || !checkbox->isChecked(), prefs::keys::excludeListNoInternetSync);
    wrapper->synchronize();
}

void TarnwellPref::ieCheckInternet()
{
    const exclude::DownloadServices services = downloadServices(m_desktop);
    if (exclude::isDownloadDue(services, prefs::pluginDomain))
        exclude::storeDownload(services, prefs::pluginDomain,
                               m_desktop.httpFetcher.fetchList(listAddress()));
}

void TarnwellPref::checkInternetInBackground()
{
    if (!exclude::beginDailyCheck(m_desktop.fileStore, m_desktop.fileManager, m_desktop.clock) ||
        !exclude::isDownloadDue(downloadServices(m_desktop), prefs::pluginDomain))
        return;
    m_ieFetch = m_desktop.httpFetcher.startFetchingList(
        listAddress(), [this](const std::optional<QByteArray> &list) {
            exclude::storeDownload(downloadServices(m_desktop), prefs::pluginDomain, list);
        });
}

void TarnwellPref::scheduleInternetCheck()
{
    // Nothing of it may delay what the user waits for, so the pane is painted first.
    m_ieFirstPaint = std::make_unique<ui::FirstPaint>(m_mainView, [this] {
        m_ieInternetTimer =
            m_desktop.timers.scheduleOnce(0.0, [this] { checkInternetInBackground(); });
    });
}

void TarnwellPref::cancelInternetCheck()
{
    m_ieFirstPaint.reset();
    m_ieInternetTimer.reset();
    m_ieFetch.reset();
}

} // namespace tarnwell::pane
