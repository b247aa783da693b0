// Taking the user's own part of the exclude list to a file and from one.

#include "pane/TarnwellPref.h"

#include "exclude/ExcludeListExchange.h"
#include "exclude/ExcludeStore.h"
#include "foundation/ForeignText.h"
#include "ports/FileStore.h"
#include "ports/OpenPanel.h"
#include "ports/Sheets.h"
#include "prefs/PreferenceKeys.h"

#include <QTableView>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

constexpr qint64 importSizeLimit = 16LL * 1024 * 1024;
constexpr qsizetype longestReason = 300;

} // namespace

void TarnwellPref::doExportExcludeList(QObject *)
{
    m_desktop.openPanel.chooseFileToSave(
        localized("Export Exclude List"), localized("Tarnwell Exclude List") + ".plist"_L1,
        m_mainView, [this](const QString &path) {
            if (path.isEmpty())
                return;
            const auto stored =
                exclude::CopyExcludeList(m_desktop.preferences, prefs::pluginDomain);
            const QByteArray bytes = exclude::exportedList(stored.value_or(plist::Array()));
            // The list may have emptied meanwhile, and the file may hold one that is worth more.
            if (bytes.isEmpty()) {
                showMessage(localized("The Exclude List Was Not Exported"),
                            localized("No application of yours is on it any more. Nothing was "
                                      "written to \"%1\".")
                                .arg(foundation::shownText(path)));
                return;
            }
            QString error;
            if (!m_desktop.fileStore.writeFile(path, bytes, &error))
                showMessage(localized("The Exclude List Was Not Exported"),
                            localized("\"%1\" cannot be written: %2")
                                .arg(foundation::shownText(path),
                                     foundation::shownText(error, longestReason)));
        });
}

void TarnwellPref::doImportExcludeList(QObject *)
{
    m_desktop.openPanel.chooseFileToOpen(
        localized("Import Exclude List"),
        {localized("Exported exclude lists (*.plist)"), localized("All files (*)")}, m_mainView,
        [this](const QString &path) {
            if (!path.isEmpty())
                askToImportExcludeList(path);
        });
}

void TarnwellPref::askToImportExcludeList(const QString &path)
{
    QString error;
    std::optional<plist::Array> imported;
    if (const auto bytes = m_desktop.fileStore.readFile(path, importSizeLimit, &error))
        imported = exclude::readExportedList(*bytes, &error);
    if (!imported) {
        showMessage(
            localized("Nothing Was Imported"),
            localized("\"%1\" cannot be imported. %2")
                .arg(foundation::shownText(path), foundation::shownText(error, longestReason)));
        return;
    }
    const auto stored = exclude::CopyExcludeList(m_desktop.preferences, prefs::pluginDomain);
    const exclude::ImportPlan asked =
        exclude::planImport(*imported, stored.value_or(plist::Array()));
    if (asked.added.isEmpty()) {
        showMessage(localized("Nothing to Import"), exclude::description(asked));
        return;
    }
    ports::Alert alert;
    alert.title = localized("Import Exclude List");
    alert.message = exclude::description(asked);
    alert.defaultButton = localized("Import");
    alert.alternateButton = localized("Cancel");
    m_desktop.sheets.beginAlert(alert, m_mainView, [this, records = *imported](int returnCode) {
        if (returnCode != 1)
            return;
        exclude::importRecords(m_desktop.preferences, prefs::pluginDomain, records);
        buildIEList();
    });
}

} // namespace tarnwell::pane
