#include "desktop/CapturedLog.h"
#include "shortcuts/ShortcutArchive.h"
#include "shortcuts/ShortcutTableModel.h"
#include "support/PaneFixture.h"
#include "support/ShortcutRecords.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

class Restore : public PaneFixture
{
protected:
    void SetUp() override
    {
        home.addApplication(u"/Applications/Scribe.app"_s, u"com.example.scribe"_s, u"Scribe"_s);
        home.addApplication(u"/Applications/Abacus.app"_s, u"com.example.abacus"_s, u"Abacus"_s);
    }

    static plist::Value items(const plist::Array &stored)
    {
        return plist::Array{plist::Value(group(u"File"_s, stored))};
    }
    static plist::Value changed(const QString &title, int original = 0x00, int now = 0x0B)
    {
        return plist::Value(changedItem(title, original, now));
    }

    void storeShortcuts(const plist::Dictionary &records)
    {
        store(u"MenuShortcuts"_s, plist::Value(records));
    }
    plist::Dictionary storedShortcuts() { return stored(u"MenuShortcuts"_s).toDictionary(); }

    void select(const QString &item)
    {
        const QAbstractItemModel *model = pane->scTable()->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            if (model->index(row, 0).data().toString() == item)
                return pane->scTable()->selectRow(row);
        }
        FAIL() << "no row " << item.toStdString();
    }
    QStringList shownItems()
    {
        QStringList titles;
        const QAbstractItemModel *model = pane->scTable()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            titles.append(model->index(row, 0).data().toString());
        return titles;
    }
    ports::Alert lastAlert() { return sheetsControl.alerts().last().alert; }
    QStringList backups() { return fileStore.filesInFolder(backupFolder); }

    const QString backupFolder =
        u"/home/tester/Library/Application Support/Varnit/Tarnwell/Backups"_s;
};

TEST_F(Restore, AsksKeepsAndRestores)
{
    const plist::Dictionary before{
        {u"com.example.scribe"_s, items({changed(u"Save"_s), changed(u"Open"_s)})}};
    storeShortcuts(before);
    showPane();
    select(u"Save"_s);
    pane->scRestoreButton()->click();
    EXPECT_EQ(lastAlert().style, ports::AlertStyle::Informational);
    EXPECT_EQ(lastAlert().title, u"Restore Original Shortcut"_s);
    EXPECT_EQ(lastAlert().message,
              u"Are you sure you want to restore the original keyboard shortcut for \"Save\"?"_s);
    preferences.control().clearRecord();
    sheetsControl.answer(0);
    EXPECT_TRUE(preferences.control().writes().isEmpty());
    EXPECT_TRUE(backups().isEmpty());

    pane->scRestoreButton()->click();
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(),
              (plist::Dictionary{{u"com.example.scribe"_s, items({changed(u"Open"_s)})}}));
    EXPECT_EQ(shownItems(), QStringList{u"Open"_s});
    ASSERT_EQ(backups().size(), 1);
    QString error;
    EXPECT_EQ(shortcuts::readArchive(fileStoreControl.files.begin()->second, &error)->shortcuts,
              before);
    EXPECT_TRUE(distributedCenter.control().posted().isEmpty());
    EXPECT_EQ(view->focusWidget(), pane->scTable()) << "the button that had it is disabled";
    EXPECT_EQ(pane->scTable()->currentIndex().row(), 0);
    EXPECT_FALSE(pane->scRestoreButton()->isEnabled()) << "nothing is selected by itself";
}

TEST_F(Restore, NamesTheItemThatLosesTheShortcut)
{
    storeShortcuts({{u"com.example.scribe"_s,
                     items({changed(u"Save %@"_s), changed(u"Open"_s, 0x05, 0x00)})}});
    showPane();
    select(u"Save %@"_s);
    pane->scRestoreButton()->click();
    EXPECT_EQ(lastAlert().style, ports::AlertStyle::Critical);
    EXPECT_TRUE(lastAlert().message.contains(u"for \"Save %@\"? Doing so will remove the shortcut "
                                             "from \"Open\" as it uses"_s));
    sheetsControl.answer(1);
    const plist::Array left = storedShortcuts().value(u"com.example.scribe").toArray();
    const plist::Dictionary open =
        left.at(0).toDictionary().value(u"Keys").toArray().at(0).toDictionary();
    EXPECT_EQ(open.value(u"NewKeyCommands").toDictionary().value(u"kc"), plist::Value(-1));
    EXPECT_EQ(open.value(u"NewKeyCommands").toDictionary().value(u"mod"), plist::Value(0));
}

TEST_F(Restore, TouchesOnlyWhatWasAskedAbout)
{
    storeShortcuts({{u"com.example.scribe"_s, items({changed(u"Save"_s), changed(u"Open"_s)})}});
    showPane();
    select(u"Save"_s);
    pane->scRestoreButton()->click();

    // Meanwhile the item goes, and another one stands in its place.
    const plist::Dictionary meanwhile{
        {u"com.example.scribe"_s, items({changed(u"Open"_s), changed(u"Print"_s)})}};
    storeShortcuts(meanwhile);
    postRefresh();
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(), meanwhile);
    EXPECT_TRUE(pane->statusLine()->text().startsWith(u"\"Save\" was not restored"_s));
    EXPECT_TRUE(pane->statusLine()->isVisibleTo(view.get()));

    // Meanwhile somebody else takes the shortcut: that is a question of its own.
    select(u"Open"_s);
    pane->scRestoreButton()->click();
    EXPECT_FALSE(pane->statusLine()->isVisibleTo(view.get()));
    storeShortcuts(
        {{u"com.example.scribe"_s, items({changed(u"Open"_s), changed(u"Print"_s, 0x09, 0x00)})}});
    postRefresh();
    sheetsControl.answer(1);
    EXPECT_TRUE(lastAlert().message.contains(u"\"Print\""_s));
    EXPECT_EQ(lastAlert().style, ports::AlertStyle::Critical);
    sheetsControl.answer(1);
    EXPECT_FALSE(shownItems().contains(u"Open"_s));

    // Meanwhile the one that was named takes other modifiers: it keeps its shortcut.
    storeShortcuts(
        {{u"com.example.scribe"_s, items({changed(u"Open"_s), changed(u"Print"_s, 0x09, 0x00)})}});
    postRefresh();
    select(u"Open"_s);
    pane->scRestoreButton()->click();
    plist::Dictionary print = changedItem(u"Print"_s, 0x09, 0x00);
    print.insert(u"NewKeyCommands"_s, plist::Value(command(0x00, 0x1100, u"Print"_s)));
    storeShortcuts({{u"com.example.scribe"_s, items({changed(u"Open"_s), plist::Value(print)})}});
    postRefresh();
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(),
              (plist::Dictionary{{u"com.example.scribe"_s, items({plist::Value(print)})}}));
}

TEST_F(Restore, RestoringTheLastShortcutRemovesTheKey)
{
    storeShortcuts({{u"com.example.scribe"_s, items({changed(u"Save"_s)})}});
    showPane();
    select(u"Save"_s);
    pane->scRestoreButton()->click();
    sheetsControl.answer(1);
    EXPECT_TRUE(stored(u"MenuShortcuts"_s).isNull());
    EXPECT_EQ(pane->scPopup()->currentText(), u"No Applications Configured"_s);
    EXPECT_FALSE(pane->scRestoreButton()->isEnabled());
}

TEST_F(Restore, RemovingAnApplicationLeavesTheOthers)
{
    const plist::Value abacus = items({changed(u"Add"_s)});
    storeShortcuts({{u"com.example.scribe"_s, items({changed(u"Save"_s)})},
                    {u"com.example.abacus"_s, abacus}});
    showPane();
    pane->scPopup()->setCurrentIndex(1);
    pane->doPopup(pane->scPopup());
    pane->scRemoveAppButton()->click();
    EXPECT_EQ(lastAlert().style, ports::AlertStyle::Critical);
    EXPECT_EQ(lastAlert().message,
              u"Are you sure you want to remove all customized shortcuts for \"Scribe (Scribe)\"? "
              "This action cannot be undone."_s);
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(), (plist::Dictionary{{u"com.example.abacus"_s, abacus}}));
    EXPECT_EQ(pane->scPopup()->currentText(), u"Abacus (Abacus)"_s);

    // The application goes while the question is up: no other one is removed in its stead.
    pane->scRemoveAppButton()->click();
    const plist::Dictionary meanwhile{{u"com.example.scribe"_s, items({changed(u"Save"_s)})}};
    storeShortcuts(meanwhile);
    postRefresh();
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(), meanwhile);
    EXPECT_TRUE(pane->statusLine()->text().startsWith(u"Nothing was removed"_s));
}

TEST_F(Restore, NothingIsReplacedThatCannotBeKept)
{
    const plist::Dictionary before{{u"com.example.scribe"_s, items({changed(u"Save"_s)})}};
    storeShortcuts(before);
    showPane();
    fileStoreControl.writeError = u"No space left on device"_s;
    pane->scRemoveAppButton()->click();
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(), before);
    EXPECT_EQ(lastAlert().title, u"Nothing Was Changed"_s);
    EXPECT_EQ(lastAlert().style, ports::AlertStyle::Critical) << "a careless Return does nothing";
    EXPECT_TRUE(lastAlert().message.contains(u"No space left on device"_s));
    sheetsControl.answer(0);
    EXPECT_EQ(storedShortcuts(), before);

    // Whoever goes on without a backup does so once.
    const plist::Dictionary both{{u"com.example.scribe"_s, items({changed(u"Save"_s)})},
                                 {u"com.example.abacus"_s, items({changed(u"Add"_s)})}};
    storeShortcuts(both);
    pane->willSelect();
    pane->scRemoveAppButton()->click();
    sheetsControl.answer(1);
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(), before);
    pane->scRestoreButton()->setEnabled(true);
    select(u"Save"_s);
    pane->scRestoreButton()->click();
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(), before);
    sheetsControl.answer(1);
    EXPECT_TRUE(stored(u"MenuShortcuts"_s).isNull());
}

TEST_F(Restore, WhatWasRemovedIsBroughtBack)
{
    const plist::Dictionary before{{u"com.example.scribe"_s, items({changed(u"Save"_s)})},
                                   {u"com.example.abacus"_s, items({changed(u"Add"_s)})}};
    storeShortcuts(before);
    showPane();
    find<QPushButton>("scBringBackButton")->click();
    EXPECT_EQ(lastAlert().title, u"Nothing to Bring Back"_s);
    sheetsControl.answer(1);

    pane->scRemoveAppButton()->click();
    sheetsControl.answer(1);
    find<QPushButton>("scBringBackButton")->click();
    ASSERT_TRUE(sheetsControl.isOpen(pane->bringBackSheet()));
    ASSERT_EQ(pane->bringBackList()->count(), 1);
    EXPECT_TRUE(
        pane->bringBackList()->item(0)->text().contains(u"2 shortcuts of 2 applications"_s));
    pane->bringBackSheet()->findChild<QPushButton *>(u"bringBackConfirmButton"_s)->click();
    sheetsControl.turn();
    EXPECT_EQ(lastAlert().title, u"Bring Back Shortcuts"_s);
    EXPECT_EQ(lastAlert().message.count(u':'), 2) << "the locale has seconds of its own";
    clock.control().advance(1.0);
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(), before);
    EXPECT_EQ(backups().size(), 2) << "what was replaced this time is kept as well";
    const QLocale usual;
    QLocale::setDefault(QLocale(QLocale::Danish));
    find<QPushButton>("scBringBackButton")->click();
    const auto date = [this](int row) {
        return pane->bringBackList()->item(row)->text().section(u": "_s, 0, 0);
    };
    EXPECT_NE(date(0), date(1)) << "they are of the same minute";
    QLocale::setDefault(usual);
}

TEST_F(Restore, ExportsAndImports)
{
    const plist::Dictionary before{{u"com.example.scribe"_s, items({changed(u"Save"_s)})}};
    storeShortcuts(before);
    showPane();
    const QString path = u"/home/tester/shortcuts.plist"_s;
    find<QPushButton>("scExportButton")->click();
    EXPECT_EQ(openPanel.control().suggestedName(), u"Tarnwell Shortcuts.plist"_s);
    openPanel.control().chooseFile(path);
    ASSERT_TRUE(fileStoreControl.files.contains(path));

    store(u"MenuShortcuts"_s, {});
    pane->hostDidBecomeActive();
    find<QPushButton>("scImportButton")->click();
    openPanel.control().chooseFile(path);
    EXPECT_TRUE(lastAlert().message.contains(u"adds 1, replaces 0 and leaves 0"_s));
    EXPECT_TRUE(storedShortcuts().isEmpty()) << "nothing before the answer";
    sheetsControl.answer(1);
    EXPECT_EQ(storedShortcuts(), before);

    find<QPushButton>("scImportButton")->click();
    openPanel.control().chooseFile(path);
    EXPECT_EQ(lastAlert().title, u"Nothing to Import"_s);
    sheetsControl.answer(1);

    fileStoreControl.files[path] = "damaged";
    find<QPushButton>("scImportButton")->click();
    openPanel.control().chooseFile(path);
    EXPECT_EQ(lastAlert().title, u"Nothing Was Imported"_s);
    EXPECT_TRUE(lastAlert().message.contains(path));
    EXPECT_EQ(storedShortcuts(), before);
}

TEST_F(Restore, FilteredRowsActOnTheirOwnRecords)
{
    storeShortcuts(
        {{u"com.example.scribe"_s, items({changed(u"Áccent"_s), changed(u"Open"_s, 0x01, 0x02),
                                          changed(u"Save as"_s, 0x03, 0x05)})}});
    showPane();
    select(u"Save as"_s);
    QTest::keyClicks(pane->scFilterField(), u"SAVE"_s);
    EXPECT_EQ(shownItems(), QStringList{u"Save as"_s});
    EXPECT_TRUE(pane->scRestoreButton()->isEnabled()) << "the item stays selected";
    pane->scFilterField()->setText(u"accent file"_s);
    EXPECT_EQ(shownItems(), QStringList{u"Áccent"_s});
    EXPECT_TRUE(pane->scNoMatch()->isHidden());
    EXPECT_FALSE(pane->scRestoreButton()->isEnabled());
    select(u"Áccent"_s);
    pane->scRestoreButton()->click();
    EXPECT_TRUE(lastAlert().message.contains(u"\"Áccent\""_s));
    sheetsControl.answer(1);
    EXPECT_EQ(shownItems(), QStringList());
    EXPECT_TRUE(pane->scNoMatch()->isVisible());
    EXPECT_TRUE(pane->scNoMatch()->text().contains(u"“accent file”"_s));
    QTest::keyClick(pane->scFilterField(), Qt::Key_Escape);
    EXPECT_EQ(shownItems(), (QStringList{u"Open"_s, u"Save as"_s}));

    EXPECT_TRUE(pane->scNoMatch()->isHidden());

    // By pressing keys: new and original shortcuts count, and the letters are not typed.
    const QString description = pane->scFilterField()->accessibleDescription();
    pane->scFilterKeysButton()->click();
    QTest::keyClick(pane->scFilterField(), Qt::Key_D, Qt::MetaModifier);
    EXPECT_EQ(pane->scFilterField()->text(), u"\u2318D"_s);
    EXPECT_EQ(shownItems(), QStringList{u"Open"_s});
    QTest::keyClick(pane->scFilterField(), Qt::Key_F, Qt::MetaModifier);
    EXPECT_EQ(shownItems(), QStringList{u"Save as"_s});
    EXPECT_EQ(pane->scFilterField()->accessibleDescription(), u"Command F"_s);
    QTest::keyClick(pane->scFilterField(), Qt::Key_Delete, Qt::MetaModifier);
    EXPECT_TRUE(pane->scNoMatch()->isVisible());
    EXPECT_TRUE(pane->scNoMatch()->accessibleName().contains(u"“Command Forward Delete”"_s));
    pane->scFilterKeysButton()->click();
    EXPECT_EQ(shownItems().size(), 2);
    EXPECT_TRUE(pane->scNoMatch()->isHidden());
    EXPECT_EQ(pane->scFilterField()->accessibleDescription(), description);
}

TEST_F(Restore, LogsWhatItMeetsAndDoes)
{
    plist::Dictionary incomplete = changedItem(u"Print"_s);
    incomplete.remove(u"NewKeyCommands");
    storeShortcuts(
        {{u"com.example.scribe"_s, items({changed(u"Save"_s), plist::Value(incomplete)})},
         {u"com.example.abacus"_s, items({changed(u"Add"_s)})},
         {u"com.example.none"_s, items({changed(u"Same"_s, 0x0B, 0x0B)})}});
    const CapturedLog log(CapturedLog::WithDetails);
    showPane();
    EXPECT_EQ(pane->scTable()->model()->index(0, 0).data().toString(), u"Add"_s);
    const int drawn = shortcuts::ShortcutTableModel::StyledStringRole;
    EXPECT_TRUE(pane->scTable()->model()->index(0, 0).data(drawn).isValid());
    select(u"Add"_s);
    pane->scRestoreButton()->click();
    sheetsControl.answer(1);
    const auto removals = [&log] { return log.containing(u"Removing This Application"_s); };
    EXPECT_EQ(removals(), QStringList{u"Removing This Application: com.example.abacus"_s});
    EXPECT_EQ(log.containing(u"All keys are gone"_s).size(), 1);
    pane->scRemoveAppButton()->setFocus();
    pane->scRemoveAppButton()->click();
    sheetsControl.answer(1);
    EXPECT_EQ(view->window()->focusWidget(), pane->scPopup()) << "nothing is left to remove";
    for (const QString &line :
         {u"Print is an incomplete preference. Removing"_s, u"o:0:0:\u2318A"_s, u":11:0:\u2318B"_s,
          u"\"......\u2318A......\" is 2"_s}) {
        EXPECT_TRUE(log.lines().contains(line)) << line.toStdString();
    }
    EXPECT_EQ(log.containing(u"No items configured for com.example.none ("_s).size(), 1);
    EXPECT_FALSE(log.containing(u"Dict: "_s).filter(u"Add"_s).isEmpty());
}

TEST_F(Restore, WhatThePluginStoresMeanwhileStays)
{
    struct Row
    {
        const char *name;
        std::function<void()> act;
        QStringList left; ///< of the application that was changed
    };
    const Row rows[] = {
        {"restore",
         [this] {
             select(u"Save"_s);
             pane->scRestoreButton()->click();
             sheetsControl.answer(1);
         },
         {u"Open"_s}},
        {"remove",
         [this] {
             pane->scRemoveAppButton()->click();
             sheetsControl.answer(1);
         },
         {}},
        {"drop what shows nothing", [this] { pane->willSelect(); }, {u"Open"_s, u"Save"_s}},
    };
    const plist::Value news = items({changed(u"Paste"_s)});
    for (const Row &row : rows) {
        // Before every synchronise in turn, up to the last.
        bool isStored = true;
        for (int when = 1; isStored; ++when) {
            SCOPED_TRACE(row.name);
            SCOPED_TRACE(when);
            preferences.control().setMeanwhile({});
            storeShortcuts(
                {{u"com.example.scribe"_s, items({changed(u"Save"_s), changed(u"Open"_s)})}});
            showPane();
            storeShortcuts(
                {{u"com.example.scribe"_s, items({changed(u"Save"_s), changed(u"Open"_s)})},
                 {u"com.example.empty"_s, items({})}});
            int count = 0;
            isStored = false;
            preferences.control().setMeanwhile([&] {
                if (++count != when)
                    return;
                isStored = true;
                plist::Dictionary present = storedShortcuts();
                present.insert(u"com.example.abacus"_s, news);
                present.insert(u"com.example.empty"_s, news);
                storeShortcuts(present);
            });
            row.act();
            for (const char16_t *id : {u"com.example.abacus", u"com.example.empty"})
                EXPECT_TRUE(!isStored || storedShortcuts().value(id) == news);
            QStringList left;
            const plist::Array groups = storedShortcuts().value(u"com.example.scribe").toArray();
            for (const plist::Value &file : groups) {
                for (const plist::Value &item : file.toDictionary().value(u"Keys").toArray())
                    left.append(item.toDictionary().value(u"MenuItemTitle").toString());
            }
            left.sort();
            EXPECT_EQ(left, row.left);
            pane.reset();
            view.reset();
        }
    }
}

TEST_F(Restore, AChangeThatWaitedTooLongIsGivenUpAndSaidSo)
{
    storeShortcuts({{u"com.example.scribe"_s, items({changed(u"Save"_s), changed(u"Open"_s)})}});
    showPane();
    select(u"Save"_s);
    pane->scRestoreButton()->click();
    preferences.control().setSynchronizeFails(true);
    sheetsControl.answer(1);
    EXPECT_EQ(shownItems(), QStringList{u"Open"_s}) << "kept in the window";
    EXPECT_TRUE(pane->storeProblem()->text().contains("disk full"_L1));
    const plist::Dictionary news{
        {u"com.example.scribe"_s,
         items({changed(u"Save"_s), changed(u"Open"_s), changed(u"Paste"_s)})}};
    storeShortcuts(news);
    preferences.control().setSynchronizeFails(false);
    postRefresh();
    EXPECT_EQ(storedShortcuts(), news);
    EXPECT_EQ(shownItems(), (QStringList{u"Open"_s, u"Paste"_s, u"Save"_s}));
    EXPECT_TRUE(pane->storeProblem()->text().contains("another program"_L1));
}

TEST_F(Restore, WhateverIsDroppedIsKeptBefore)
{
    plist::Dictionary incomplete = changedItem(u"Print"_s);
    incomplete.remove(u"OriginalKeyCommands");
    const plist::Value save = changed(u"Save"_s);
    const std::pair<plist::Dictionary, plist::Dictionary> rows[] = {
        // 1 and 1 on the keypad: other keys that show the same.
        {{{u"com.example.scribe"_s, items({changed(u"One"_s, 0x12, 0x53)})}}, {}},
        {{{u"com.example.scribe"_s, items({save})}, {u"Version"_s, 3}, {u"odd"_s, u"text"_s}},
         {{u"com.example.scribe"_s, items({save})}}},
        {{{u"com.example.scribe"_s, items({save, plist::Value(incomplete)})}},
         {{u"com.example.scribe"_s, items({save})}}},
    };
    openPane();
    for (const auto &[records, left] : rows) {
        fileStoreControl.files.clear();
        storeShortcuts(records);
        fileStoreControl.writeError = u"disk full"_s;
        pane->willSelect();
        EXPECT_EQ(storedShortcuts(), records) << "nowhere to keep it";
        fileStoreControl.writeError.clear();
        pane->willSelect();
        EXPECT_EQ(stored(u"MenuShortcuts"_s), plist::Value(left));
        ASSERT_EQ(backups().size(), 1);
        QString error;
        const QByteArray kept = fileStoreControl.files.begin()->second;
        EXPECT_EQ(shortcuts::readArchive(kept, &error)->shortcuts, records);
        storeShortcuts(records);
        pane->willSelect();
        EXPECT_EQ(stored(u"MenuShortcuts"_s), plist::Value(left));
        EXPECT_EQ(backups().size(), 1) << "it is in the newest one already";
    }
}

} // namespace tarnwell::tests
