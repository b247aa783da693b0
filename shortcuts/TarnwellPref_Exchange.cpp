// Bringing back what was replaced, and taking shortcuts to files and from them.

#include "pane/TarnwellPref.h"

#include "foundation/ForeignText.h"
#include "ports/Clock.h"
#include "ports/FileStore.h"
#include "ports/OpenPanel.h"
#include "ports/Sheets.h"
#include "prefs/PreferenceKeys.h"
#include "shortcuts/ShortcutBackups.h"

#include <QComboBox>
#include <QDateTime>
#include <QDialog>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QTableView>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

constexpr qint64 importSizeLimit = 64'000'000;
constexpr qsizetype longestReason = 300;

enum class Precision { Minutes, Seconds };

QString dateInWords(const plist::Date &date, Precision precision)
{
    const double seconds = date.absoluteTime + ports::Clock::absoluteTimeIntervalSince1970;
    const auto time = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(seconds * 1000));
    QString format = QLocale().dateTimeFormat(QLocale::ShortFormat);
    // Parted like the minutes. Some locales have seconds in every time.
    if (precision == Precision::Seconds && !format.contains("ss"_L1))
        format.replace(QRegularExpression(u"(\\W)mm"_s), u"\\1mm\\1ss"_s);
    return QLocale().toString(time, format);
}

/// As precise as it takes to tell the backups apart.
Precision precisionFor(const QList<shortcuts::ShortcutBackup> &backups)
{
    QSet<QString> minutes;
    for (const shortcuts::ShortcutBackup &backup : backups)
        minutes.insert(dateInWords(backup.date, Precision::Minutes));
    return minutes.size() < backups.size() ? Precision::Seconds : Precision::Minutes;
}

} // namespace

QString TarnwellPref::countInWords(const shortcuts::ShortcutCount &count)
{
    const QString items =
        count.items == 1 ? localized("1 shortcut") : localized("%1 shortcuts").arg(count.items);
    const QString applications = count.applications == 1
                                     ? localized("1 application")
                                     : localized("%1 applications").arg(count.applications);
    return localized("%1 of %2").arg(items, applications);
}

void TarnwellPref::doBringBack(QObject *)
{
    showStatus({});
    const QList<shortcuts::ShortcutBackup> backups = shortcutBackups().list();
    if (backups.isEmpty()) {
        showMessage(localized("Nothing to Bring Back"),
                    localized("Shortcuts are kept here whenever you restore or remove some."));
        return;
    }
    const Precision precision = precisionFor(backups);
    bringBackList()->clear();
    for (const shortcuts::ShortcutBackup &backup : backups) {
        auto *item =
            new QListWidgetItem(localized("%1: %2").arg(dateInWords(backup.date, precision),
                                                        countInWords(backup.count)),
                                bringBackList());
        item->setData(Qt::UserRole, backup.path);
    }
    bringBackList()->setCurrentRow(0);
    m_desktop.sheets.beginSheet(bringBackSheet(), scTable(), [this](int returnCode) {
        bringBackSheet()->hide();
        const QListWidgetItem *chosen = bringBackList()->currentItem();
        if (returnCode == 1 && chosen)
            askToBringBack(chosen->data(Qt::UserRole).toString());
    });
}

void TarnwellPref::askToBringBack(const QString &backup)
{
    QString error;
    const auto archive = shortcutBackups().read(backup, &error);
    if (!archive) {
        showMessage(localized("Nothing Was Changed"),
                    localized("These shortcuts cannot be read: %1")
                        .arg(foundation::shownText(error, longestReason)));
        return;
    }
    ports::Alert alert;
    alert.style = ports::AlertStyle::Critical;
    alert.title = localized("Bring Back Shortcuts");
    alert.message =
        localized("Do you want to replace all present shortcuts by those of %1 (%2)? The present "
                  "ones are kept, so that they can be brought back in turn.")
            .arg(dateInWords(archive->date, Precision::Seconds),
                 countInWords(shortcuts::countShortcuts(archive->shortcuts)));
    alert.defaultButton = localized("Bring Back");
    alert.alternateButton = localized("Cancel");
    m_desktop.sheets.beginAlert(alert, scTable(),
                                [this, kept = archive->shortcuts](int returnCode) {
                                    if (returnCode == 1)
                                        bringBack(kept);
                                });
}

void TarnwellPref::bringBack(const plist::Dictionary &kept)
{
    const bool isDone = changeShortcuts(
        [&kept](const plist::Dictionary &present) {
            return shortcuts::bringBackShortcuts(present, kept);
        },
        [this, kept] { bringBack(kept); });
    if (!isDone)
        return;
    rebuildPopupKeepingSelection();
    doPopup(scPopup());
}

void TarnwellPref::doExportShortcuts(QObject *)
{
    m_desktop.openPanel.chooseFileToSave(
        localized("Export Shortcuts"), localized("Tarnwell Shortcuts") + ".plist"_L1, scTable(),
        [this](const QString &path) {
            if (path.isEmpty())
                return;
            const auto wrapper = preferences();
            wrapper->synchronize();
            const plist::Dictionary stored =
                wrapper->dictionaryForKey(prefs::keys::menuShortcuts).value_or(plist::Dictionary());
            const QByteArray bytes =
                shortcuts::writeArchive({{m_desktop.clock.absoluteTime()}, stored});
            QString error;
            if (!m_desktop.fileStore.writeFile(path, bytes, &error))
                showMessage(localized("The Shortcuts Were Not Exported"),
                            localized("\"%1\" cannot be written: %2")
                                .arg(foundation::shownText(path),
                                     foundation::shownText(error, longestReason)));
        });
}

void TarnwellPref::doImportShortcuts(QObject *)
{
    showStatus({});
    m_desktop.openPanel.chooseFileToOpen(
        localized("Import Shortcuts"),
        {localized("Exported shortcuts (*.plist)"), localized("All files (*)")}, scTable(),
        [this](const QString &path) {
            if (!path.isEmpty())
                askToImport(path);
        });
}

void TarnwellPref::askToImport(const QString &path)
{
    QString error;
    std::optional<shortcuts::ShortcutArchive> archive;
    if (const auto bytes = m_desktop.fileStore.readFile(path, importSizeLimit, &error))
        archive = shortcuts::readArchive(*bytes, &error);
    shortcuts::ShortcutReview review;
    if (archive) {
        review = shortcuts::reviewShortcuts(archive->shortcuts);
        error = review.damage;
    }
    if (!archive || !error.isEmpty()) {
        showMessage(
            localized("Nothing Was Imported"),
            localized("\"%1\" cannot be imported. %2")
                .arg(foundation::shownText(path), foundation::shownText(error, longestReason)));
        return;
    }

    const auto wrapper = preferences();
    wrapper->synchronize();
    const auto stored = wrapper->dictionaryForKey(prefs::keys::menuShortcuts);
    const shortcuts::ShortcutImport import =
        shortcuts::importShortcuts(stored.value_or(plist::Dictionary()), archive->shortcuts);
    if (import.added + import.replaced == 0) {
        showMessage(localized("Nothing to Import"),
                    localized("You have every complete shortcut of \"%1\" already.")
                        .arg(foundation::shownText(path)));
        return;
    }
    ports::Alert alert;
    alert.style = ports::AlertStyle::Critical;
    alert.title = localized("Import Shortcuts");
    alert.message = localized("The file holds %1. Importing it adds %2, replaces %3 and leaves %4 "
                              "as they are. Do you want to import it?")
                        .arg(countInWords(shortcuts::countShortcuts(archive->shortcuts)),
                             QString::number(import.added), QString::number(import.replaced),
                             QString::number(import.unchanged));
    if (review.incomplete > 0)
        alert.message +=
            u"\n\n"_s + localized("Left out as incomplete: %1. The first one: %2")
                            .arg(QString::number(review.incomplete),
                                 foundation::shownText(review.firstIncomplete, longestReason));
    alert.defaultButton = localized("Import");
    alert.alternateButton = localized("Cancel");
    m_desktop.sheets.beginAlert(alert, scTable(),
                                [this, imported = archive->shortcuts](int returnCode) {
                                    if (returnCode == 1)
                                        importShortcuts(imported);
                                });
}

void TarnwellPref::importShortcuts(const plist::Dictionary &imported)
{
    // Merged again: the plug-in may have stored more while the question was up.
    const bool isDone = changeShortcuts(
        [&imported](const plist::Dictionary &present) {
            return shortcuts::importShortcuts(present, imported).shortcuts;
        },
        [this, imported] { importShortcuts(imported); });
    if (!isDone)
        return;
    rebuildPopupKeepingSelection();
    doPopup(scPopup());
}

} // namespace tarnwell::pane
