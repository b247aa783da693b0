#include "shortcuts/ShortcutTableModel.h"

#include "desktop/CapturedLog.h"
#include "support/PaneFixture.h"
#include "support/ShortcutRecords.h"
#include "support/StrangersNames.h"

#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

constexpr quint32 editorCreator = 0x45646974; // 'Edit'

} // namespace

class ShortcutsPage : public PaneFixture
{
protected:
    void SetUp() override
    {
        home.addApplication(u"/Applications/Scribe.app"_s, u"com.example.scribe"_s, u"Scribe"_s);
        home.addApplication(u"/Applications/Abacus.app"_s, u"com.example.abacus"_s, u"abacus"_s);
        home.addApplication(u"/Applications/Old Editor.app"_s, u""_s, u"Old Editor"_s,
                            editorCreator);
    }

    void storeShortcuts(const plist::Dictionary &records)
    {
        store(u"MenuShortcuts"_s, plist::Value(records));
    }

    static plist::Value application(const QStringList &titles)
    {
        plist::Array items;
        for (const QString &title : titles)
            items.append(plist::Value(changedItem(title)));
        return plist::Array{plist::Value(group(u"File"_s, items))};
    }

    QStringList popupTitles()
    {
        QStringList titles;
        for (int i = 0; i < pane->scPopup()->count(); ++i)
            titles.append(pane->scPopup()->itemText(i));
        return titles;
    }

    QStringList shownItems()
    {
        QStringList titles;
        const QAbstractItemModel *model = pane->scTable()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            titles.append(model->index(row, 0).data().toString());
        return titles;
    }

    QString selectedItem()
    {
        const QModelIndexList selected = pane->scTable()->selectionModel()->selectedRows();
        return selected.isEmpty() ? QString() : selected.first().data().toString();
    }
};

TEST_F(ShortcutsPage, ListsApplicationsByTitleAndShowsTheFirst)
{
    storeShortcuts({{u"com.example.scribe"_s, application({u"Save"_s})},
                    {u"com.example.abacus"_s, application({u"sum"_s, u"Add"_s, u"Mean"_s})},
                    {u"com.unknown.by-creator.0x4150504C.0x45646974"_s, application({u"Old"_s})},
                    {u"com.example.gone"_s, application({u"Lost"_s})}});
    showPane();
    EXPECT_EQ(popupTitles(), (QStringList{u"abacus (abacus)"_s, u"Old Editor (Old Editor)"_s,
                                          u"Scribe (Scribe)"_s}));
    EXPECT_EQ(pane->scPopup()->currentData().toString(), u"com.example.abacus"_s);
    EXPECT_EQ(shownItems(), (QStringList{u"Add"_s, u"Mean"_s, u"sum"_s}));
    EXPECT_TRUE(pane->appFormatField()->text().contains(u"abacus"_s));
    EXPECT_FALSE(pane->appFormatField()->text().contains(u"%@"_s));
    EXPECT_FALSE(pane->appFormatField()->buddy()) << "it would eat a name's ampersand as mnemonic";
    EXPECT_TRUE(pane->scRemoveAppButton()->isEnabled());
    EXPECT_FALSE(pane->scRestoreButton()->isEnabled());
    EXPECT_TRUE(preferences.control().writes().isEmpty())
        << "an application that cannot be found keeps its records";
}

TEST_F(ShortcutsPage, ShowsStrangersNamesAsOneHonestLine)
{
    showPane();
    const QSize usual = view->minimumSizeHint();
    for (const QString &name : strangersNames()) {
        SCOPED_TRACE(name.right(10).toStdString());
        home.addApplication(u"/Applications/Evil.app"_s, u"com.example.evil"_s, name);
        plist::Dictionary evil = changedItem(name);
        evil.insert(u"MenuPath"_s, plist::Array{plist::Dictionary{{u"MenuItemTitle"_s, name}}});
        storeShortcuts(
            {{u"com.example.evil"_s, plist::Array{plist::Value(group(name, plist::Array{evil}))}}});
        postRefresh();
        QApplication::processEvents();
        EXPECT_EQ(view->minimumSizeHint(), usual);
        QStringList shown{pane->scPopup()->currentText(), pane->appFormatField()->text()};
        const QAbstractItemModel *model = pane->scTable()->model();
        for (const int column : {0, 3}) {
            const QModelIndex cell = model->index(0, column);
            for (const int role :
                 {int(Qt::DisplayRole), int(Qt::AccessibleTextRole), int(Qt::ToolTipRole)})
                shown.append(cell.data(role).toString());
            const auto styled = cell.data(shortcuts::ShortcutTableModel::StyledStringRole);
            shown.append(styled.value<foundation::StyledString>().text());
        }
        pane->scTable()->selectRow(0);
        pane->doRestoreOriginal(nullptr);
        pane->doRemoveApp(nullptr);
        for (const auto &[alert, onWindowOf] : sheetsControl.alerts())
            shown.append(alert.message);
        for (const QString &text : shown)
            EXPECT_TRUE(isHonest(text)) << text.left(40).toStdString();
        // What is looked for is the name itself.
        find<QLineEdit>("scFilterField")->setText(name.right(5));
        EXPECT_EQ(model->rowCount(), 1);
    }
}

TEST_F(ShortcutsPage, NothingConfigured)
{
    showPane();
    EXPECT_EQ(popupTitles(), QStringList{u"No Applications Configured"_s});
    EXPECT_FALSE(pane->scPopup()->currentData().isValid());
    EXPECT_FALSE(pane->scRemoveAppButton()->isEnabled());
    EXPECT_EQ(pane->appFormatField()->text(), u""_s);
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

TEST_F(ShortcutsPage, ChoosingAnApplicationShowsItsShortcuts)
{
    storeShortcuts({{u"com.example.scribe"_s, application({u"Save"_s})},
                    {u"com.example.abacus"_s, application({u"Add"_s})}});
    showPane();
    pane->scTable()->selectRow(0);
    EXPECT_TRUE(pane->scRestoreButton()->isEnabled());
    pane->scPopup()->setFocus();
    QTest::keyClick(pane->scPopup(), Qt::Key_Down);
    EXPECT_EQ(pane->scPopup()->currentData().toString(), u"com.example.scribe"_s);
    EXPECT_EQ(shownItems(), QStringList{u"Save"_s});
    EXPECT_FALSE(pane->scRestoreButton()->isEnabled()) << "another application, no selection";
}

TEST_F(ShortcutsPage, DropsApplicationsWithNothingToShow)
{
    const plist::Value unchanged = plist::Array{
        plist::Value(group(u"File"_s, {plist::Value(changedItem(u"Same"_s, 0x0B, 0x0B))}))};
    storeShortcuts({{u"com.example.abacus"_s, unchanged}, {u"com.example.other"_s, u"damaged"_s}});
    showPane();
    EXPECT_EQ(stored(u"MenuShortcuts"_s), plist::Value(plist::Dictionary()))
        << "an empty dictionary stays, it is not removed";
}

TEST_F(ShortcutsPage, RefreshFollowsThePluginAndWritesNothing)
{
    storeShortcuts({{u"com.example.scribe"_s, application({u"Open"_s, u"Save"_s})},
                    {u"com.example.abacus"_s, application({u"Add"_s})}});
    showPane();
    pane->scPopup()->setCurrentIndex(1);
    pane->doPopup(pane->scPopup());
    pane->scTable()->selectRow(1);
    ASSERT_EQ(selectedItem(), u"Save"_s);
    preferences.control().clearRecord();

    plist::Dictionary halfWritten = changedItem(u"Import"_s);
    halfWritten.remove(u"OriginalKeyCommands");
    plist::Dictionary incomplete = changedItem(u"Print"_s);
    incomplete.remove(u"NewKeyCommands");
    const plist::Array items{plist::Value(changedItem(u"Close"_s)),
                             plist::Value(changedItem(u"Save"_s)), plist::Value(halfWritten),
                             plist::Value(incomplete)};
    storeShortcuts({{u"com.example.scribe"_s, plist::Array{plist::Value(group(u"File"_s, items))}},
                    {u"com.example.abacus"_s, application({u"Add"_s})},
                    {u"com.example.nothing"_s, plist::Array{}}});
    postRefresh();

    EXPECT_EQ(pane->scPopup()->currentData().toString(), u"com.example.scribe"_s);
    EXPECT_EQ(shownItems(), (QStringList{u"Close"_s, u"Import"_s, u"Save"_s}));
    EXPECT_EQ(selectedItem(), u"Save"_s) << "the item stays selected, not its place";
    EXPECT_TRUE(preferences.control().writes().isEmpty());
    EXPECT_FALSE(pane->isInNotification());

    // The user comes back to the window: now what is incomplete goes.
    pane->hostDidBecomeActive();
    EXPECT_EQ(shownItems(), (QStringList{u"Close"_s, u"Save"_s}));
    const plist::Dictionary left = stored(u"MenuShortcuts"_s).toDictionary();
    EXPECT_FALSE(left.contains(u"com.example.nothing"));
}

TEST_F(ShortcutsPage, LogsTheDetailsOfRowsAndCellsOnceAndOnlyWhenAsked)
{
    storeShortcuts({{u"com.example.scribe"_s, application({u"Save"_s})}});
    showPane();
    using Model = shortcuts::ShortcutTableModel;
    for (const auto details : {CapturedLog::WithoutDetails, CapturedLog::WithDetails}) {
        const CapturedLog log(details);
        for (const int role : {int(Qt::DisplayRole), int(Model::StyledStringRole),
                               int(Qt::AccessibleTextRole), int(Qt::ToolTipRole)})
            EXPECT_TRUE(pane->scTable()->model()->index(0, 0).data(role).isValid());
        EXPECT_EQ(log.lines().size(), details == CapturedLog::WithDetails ? 1 : 0);
        postRefresh();
        EXPECT_EQ(log.containing(u"......"_s).isEmpty(), details != CapturedLog::WithDetails);
    }
}

TEST_F(ShortcutsPage, SelectionGoesWithItsItem)
{
    storeShortcuts({{u"com.example.scribe"_s, application({u"Open"_s, u"Save"_s})}});
    showPane();
    pane->scTable()->selectRow(0);
    storeShortcuts({{u"com.example.scribe"_s, application({u"Save"_s})}});
    postRefresh();
    EXPECT_EQ(selectedItem(), QString());
    EXPECT_FALSE(pane->scRestoreButton()->isEnabled());

    storeShortcuts({});
    postRefresh();
    EXPECT_EQ(popupTitles(), QStringList{u"No Applications Configured"_s});
    EXPECT_EQ(shownItems(), QStringList());
}

TEST_F(ShortcutsPage, RefreshWithoutNewsLeavesTheTableAlone)
{
    storeShortcuts({{u"com.example.scribe"_s, application({u"Open"_s, u"Save"_s})}});
    showPane();
    const QSignalSpy resets(pane->scTable()->model(), &QAbstractItemModel::modelReset);
    pane->scPopup()->showPopup();
    ASSERT_TRUE(pane->scPopup()->view()->currentIndex().isValid());
    postRefresh();
    EXPECT_EQ(resets.count(), 0);
    EXPECT_TRUE(pane->scPopup()->view()->currentIndex().isValid()) << "Return chooses it";
    home.addApplication(u"/Applications/Scribe.app"_s, u"com.example.scribe"_s, u"Scribe 2"_s);
    postRefresh();
    EXPECT_EQ(popupTitles(), QStringList{u"Scribe 2 (Scribe 2)"_s});
}

TEST_F(ShortcutsPage, IncompleteRecordsAreTrimmedAndTheRestKept)
{
    plist::Dictionary incomplete = changedItem(u"Print"_s);
    incomplete.remove(u"OriginalKeyCommands");
    plist::Dictionary untitled = changedItem(u"x"_s);
    untitled.remove(u"MenuItemTitle");
    plist::Dictionary file = group(u"File"_s, {plist::Value(incomplete), plist::Value(untitled),
                                               plist::Value(changedItem(u"Save"_s)), 17});
    file.insert(u"Unknown"_s, 42);
    const plist::Array other{u"no group"_s};
    storeShortcuts({{u"com.example.scribe"_s, plist::Array{u"damaged"_s, plist::Value(file)}},
                    {u"com.example.gone"_s, plist::Value(other)}});
    home.addApplication(u"/Applications/Gone.app"_s, u"com.example.gone"_s);
    showPane();
    EXPECT_EQ(shownItems(), QStringList{u"Save"_s});
    plist::Dictionary expected = file;
    expected.insert(u"Keys"_s,
                    plist::Array{plist::Value(untitled), plist::Value(changedItem(u"Save"_s)), 17});
    // The pop-up stores the dictionary it had read before the list was trimmed, so the trimmed
    // list shows only once nothing else is dropped.
    pane->willSelect();
    EXPECT_EQ(stored(u"MenuShortcuts"_s).toDictionary().value(u"com.example.scribe"),
              plist::Value(plist::Array{u"damaged"_s, plist::Value(expected)}));
}

TEST_F(ShortcutsPage, AnotherLayoutShowsOtherKeys)
{
    storeShortcuts({{u"com.example.scribe"_s, application({u"Save"_s})}});
    showPane();
    const QModelIndex cell = pane->scTable()->model()->index(0, 1);
    ASSERT_EQ(cell.data().toString(), u"\u2318B"_s);
    preferences.control().clearRecord();
    keyboard.useBoard(u"xkb:other"_s, {{quint16(0x0B), u"x"_s}});
    EXPECT_EQ(pane->scTable()->model()->index(0, 1).data().toString(), u"\u2318X"_s);
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

TEST_F(ShortcutsPage, ModelKeepsItsPromises)
{
    storeShortcuts({{u"com.example.scribe"_s, application({u"Open"_s, u"Save"_s})}});
    showPane();
    QAbstractItemModelTester tester(pane->scTable()->model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    plist::Dictionary close = changedItem(u"Close"_s);
    close.insert(u"MenuPath"_s, plist::Array{plist::Dictionary{{u"MenuItemTitle"_s, u"File"_s}},
                                             plist::Dictionary{{u"MenuItemTitle"_s, u"Close"_s}}});
    storeShortcuts({{u"com.example.scribe"_s,
                     plist::Array{plist::Value(group(u"File"_s, {plist::Value(close)}))}}});
    postRefresh();
    const QModelIndex cell = pane->scTable()->model()->index(0, 0);
    EXPECT_EQ(cell.data().toString(), u"File \u261E Close"_s);
    EXPECT_EQ(cell.data(Qt::AccessibleTextRole).toString(), u"File, Close"_s);
    EXPECT_EQ(pane->numberOfRowsInTableView(pane->scTable()), 1);
    EXPECT_EQ(pane->numberOfRowsInTableView(nullptr), 0);
    EXPECT_FALSE(pane->objectValueForTableColumn(pane->scTable(), 7, 0));
    EXPECT_FALSE(pane->objectValueForTableColumn(pane->scTable(), 0, 1));
}

} // namespace tarnwell::tests
