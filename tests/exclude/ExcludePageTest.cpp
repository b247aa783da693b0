#include "support/PaneFixture.h"
#include "support/TemporaryHome.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

plist::Dictionary record(const QString &id, bool hardcoded = false)
{
    plist::Dictionary result{{u"ID"_s, id}, {u"DisplayName"_s, id}};
    if (hardcoded)
        result.insert(u"Hardcoded"_s, true);
    return result;
}

} // namespace

class ExcludePage : public PaneFixture
{
protected:
    QTableView *table() { return pane->ieListTable(); }
    QStringList shown()
    {
        QStringList names;
        for (int row = 0; row < table()->model()->rowCount(); ++row)
            names.append(table()->model()->index(row, 1).data().toString());
        return names;
    }
    QStringList storedIdentifiers()
    {
        QStringList result;
        const plist::Value list = stored(u"ExcludeList"_s);
        for (const plist::Value &element : list.toArray())
            result.append(element.toDictionary().value(u"ID").toString());
        return result;
    }
    void showPaneWith(const plist::Array &list)
    {
        store(u"ExcludeList"_s, plist::Value(list));
        showPane();
        tester = std::make_unique<QAbstractItemModelTester>(
            table()->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    void TearDown() override
    {
        tester.reset();
        PaneFixture::TearDown();
    }
    /// A bundle on disk, which the registry knows.
    QString makeApplication(const QString &name)
    {
        const QString identifier = u"com.example."_s + name;
        const QString path = disk.makeApplication(u'/' + name + u".app"_s, identifier);
        home.addApplication(path, identifier, name);
        return path;
    }

    TemporaryHome disk;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(ExcludePage, AddsWhatTheOpenPanelChooses)
{
    const QString pens = makeApplication(u"Pens"_s);
    const QString inks = makeApplication(u"Inks"_s);
    showPaneWith({});
    EXPECT_FALSE(pane->ieRemoveButton()->isEnabled());
    QTest::mouseClick(find<QPushButton>("ieAddButton"), Qt::LeftButton);
    ASSERT_TRUE(openPanel.control().chooseApplications({pens, inks}));
    EXPECT_EQ(storedIdentifiers(), (QStringList{u"com.example.Pens"_s, u"com.example.Inks"_s}));
    EXPECT_EQ(shown(), (QStringList{u"Inks"_s, u"Pens"_s}));

    pane->ieAddApp(nullptr);
    ASSERT_TRUE(openPanel.control().cancel());
    EXPECT_EQ(shown().size(), 2);
}

TEST_F(ExcludePage, AddsTheBundleAroundAnItemAndSkipsWhatIsInNone)
{
    fileManager.control().usesDisk = true;
    const QString pens = makeApplication(u"Pens"_s);
    const auto write = [this](const QString &name, bool executable) {
        const QString path = disk.write(name, {}, executable);
        home.addFile(path, executable);
        return path;
    };
    const QString tool = write(u"/blotter"_s, true);
    showPaneWith({record(u"com.example.Pens"_s)});
    pane->ieOpenPanelDidEnd({u"/nowhere"_s, write(u"/notes.txt"_s, false), disk.root(), tool,
                             write(u"/Pens.app/nib"_s, true), pens},
                            1);
    EXPECT_EQ(storedIdentifiers(),
              (QStringList{u"com.example.Pens"_s, QString(u"com.unknown.by-path."_s + tool),
                           QString(u"com.unknown.by-path."_s + pens + u"/nib"_s)}));
}

TEST_F(ExcludePage, RemovesTheSelectedApplication)
{
    showPaneWith({record(u"b"_s), record(u"a"_s), record(u"c"_s), record(u"d"_s, true)});
    preferences.control().clearRecord();
    pane->ieRemoveApp(nullptr);
    EXPECT_TRUE(preferences.control().writes().isEmpty()) << "nothing was selected";

    table()->selectRow(1);
    EXPECT_TRUE(pane->ieRemoveButton()->isEnabled());
    const QWidget *window = view->window();
    find<QTabWidget>("pages")->setCurrentWidget(find<QWidget>("excludeListPage"));
    view->activateWindow();
    QApplication::processEvents();
    pane->ieRemoveButton()->setFocus();
    QTest::keyClick(window->focusWidget(), Qt::Key_Space);
    EXPECT_EQ(storedIdentifiers(), (QStringList{u"a"_s, u"c"_s, u"d"_s}));
    EXPECT_EQ(table()->currentIndex().row(), 1) << "the next one is selected";
    EXPECT_EQ(window->focusWidget(), pane->ieRemoveButton());
    QTest::keyClick(window->focusWidget(), Qt::Key_Space);
    EXPECT_EQ(shown(), (QStringList{u"a"_s, u"d"_s}));
    EXPECT_FALSE(pane->ieRemoveButton()->isEnabled()) << "the next one came with the product";
    EXPECT_EQ(window->focusWidget(), table());
    QTest::keyClick(table(), Qt::Key_Delete);
    table()->selectRow(0);
    QTest::keyClick(table(), Qt::Key_Delete);
    EXPECT_EQ(shown(), QStringList{u"d"_s});
}

TEST_F(ExcludePage, RemovesTheVeryRowThatHasNoIdentifier)
{
    showPaneWith({record({}), plist::Dictionary{{u"DisplayName"_s, u"z"_s}}});
    table()->selectRow(1);
    pane->ieRemoveApp(nullptr);
    EXPECT_EQ(stored(u"ExcludeList"_s), plist::Value(plist::Array{record({})}));
}

TEST_F(ExcludePage, GuardsPredefinedOnesByTheSelectionAlone)
{
    showPaneWith({record(u"a"_s), record(u"b"_s, true)});
    table()->selectRow(1);
    EXPECT_FALSE(pane->ieRemoveButton()->isEnabled());
    pane->buildIEList();
    EXPECT_TRUE(pane->ieRemoveButton()->isEnabled()) << "a rebuild asks only for a selection";
    table()->selectRow(0);
    EXPECT_TRUE(pane->ieRemoveButton()->isEnabled());
    table()->selectRow(1);
    EXPECT_FALSE(pane->ieRemoveButton()->isEnabled());
    pane->buildIEList();
    QTest::mouseClick(pane->ieRemoveButton(), Qt::LeftButton);
    EXPECT_EQ(storedIdentifiers(), QStringList{u"a"_s});
}

TEST_F(ExcludePage, HidesPredefinedOnesOnWish)
{
    store(u"HidePredefinedExcludeListItems"_s, true);
    showPaneWith({record(u"c"_s), record(u"b"_s, true), record(u"a"_s)});
    EXPECT_EQ(shown(), (QStringList{u"a"_s, u"c"_s}));
    table()->selectRow(1);
    pane->ieHideCheckbox()->click();
    EXPECT_EQ(stored(u"HidePredefinedExcludeListItems"_s), plist::Value(false));
    EXPECT_EQ(shown(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(table()->currentIndex().row(), 2) << "the application stays selected";
    pane->ieHideCheckbox()->click();
    EXPECT_EQ(shown(), (QStringList{u"a"_s, u"c"_s}));
    EXPECT_EQ(storedIdentifiers().size(), 3);
}

TEST_F(ExcludePage, FollowsTheStoredListWhenShownAgain)
{
    showPaneWith({record(u"b"_s)});
    table()->selectRow(0);
    plist::Dictionary changed = record(u"b"_s);
    changed.insert(u"Path"_s, u"/Applications/b<b>.app"_s);
    store(u"ExcludeList"_s, plist::Value(plist::Array{7, changed, record(u"a"_s)}));
    pane->willUnselect();
    pane->willSelect();
    EXPECT_EQ(shown().size(), 2);
    EXPECT_EQ(table()->currentIndex().row(), 1) << "the application stays selected";
    EXPECT_FALSE(table()->currentIndex().data(Qt::ToolTipRole).toString().contains("<b>"_L1));
    EXPECT_EQ(pane->objectValueForTableColumn(table(), 1, 1)->text(), u"b\n"_s);
    EXPECT_EQ(pane->objectValueForTableColumn(table(), 1, 2), std::nullopt);
}

TEST_F(ExcludePage, InternetCheckboxStoresTheOpposite)
{
    showPane();
    ASSERT_TRUE(pane->ieInternetCheckbox()->isChecked());
    pane->ieInternetCheckbox()->click();
    EXPECT_EQ(stored(u"ExcludeListNoInternetSync"_s), plist::Value(true));
    pane->ieInternetCheckbox()->click();
    EXPECT_EQ(stored(u"ExcludeListNoInternetSync"_s), plist::Value(false));
    EXPECT_TRUE(httpFetcher.control().fetched.isEmpty());
}

TEST_F(ExcludePage, ChecksTheInternetOnceADayWhenItHasBeenSeen)
{
    constexpr double aDay = 24 * 60 * 60;
    auto &web = httpFetcher.control();
    web.list = "<plist><array/></plist>";
    store(u"ExcludeListLastInternetCheck"_s, 1);
    showPane();
    const auto showAgain = [&](bool isSeen) {
        pane->willUnselect();
        pane->willSelect();
        if (isSeen)
            view->grab();
        timers.control().advance(0);
    };
    timers.control().advance(60);
    view->grab();
    EXPECT_EQ(web.fetched.size(), 0) << "painting does not wait for it";
    timers.control().advance(0);
    EXPECT_EQ(web.fetched.size(), 1);
    showAgain(true);
    EXPECT_EQ(web.fetched.size(), 1) << "once a day";
    EXPECT_FALSE(web.answer()) << "the pane was left";

    clock.control().absoluteTime += aDay;
    showAgain(false);
    EXPECT_EQ(web.fetched.size(), 1) << "not seen";
    showAgain(true);
    EXPECT_EQ(stored(u"ExcludeListLastInternetCheck"_s), plist::Value(1)) << "on its way";
    EXPECT_TRUE(web.answer());
    EXPECT_NE(stored(u"ExcludeListLastInternetCheck"_s), plist::Value(1));

    // Whoever asks for it is not put off to another day.
    store(u"ExcludeListLastInternetCheck"_s, 1);
    preferences.appSynchronize(prefs::pluginDomain);
    pane->ieCheckInternet();
    EXPECT_EQ(web.fetched.size(), 3);
    EXPECT_NE(stored(u"ExcludeListLastInternetCheck"_s), plist::Value(1));
}

TEST_F(ExcludePage, ExportsAndImportsTheUsersOwn)
{
    showPaneWith({record(u"a"_s), record(u"b"_s, true)});
    QTest::mouseClick(pane->ieExportButton(), Qt::LeftButton);
    EXPECT_EQ(openPanel.control().suggestedName(), u"Tarnwell Exclude List.plist"_s);
    ASSERT_TRUE(openPanel.control().chooseFile(u"/home/tester/list.plist"_s));
    store(u"ExcludeList"_s, plist::Value(plist::Array{u"no record"_s, record(u"c"_s)}));
    pane->buildIEList();

    QTest::mouseClick(find<QPushButton>("ieImportButton"), Qt::LeftButton);
    ASSERT_TRUE(openPanel.control().chooseFile(u"/home/tester/list.plist"_s));
    ASSERT_EQ(sheetsControl.alerts().size(), 1);
    EXPECT_TRUE(sheetsControl.alerts().first().alert.message.contains(u"added: a."_s));
    EXPECT_EQ(storedIdentifiers().size(), 2) << "not before the user agrees";
    ASSERT_TRUE(sheetsControl.answer(1));
    const plist::Value imported = plist::Array{u"no record"_s, record(u"c"_s), record(u"a"_s)};
    EXPECT_EQ(stored(u"ExcludeList"_s), imported);
    EXPECT_EQ(shown(), (QStringList{u"a"_s, u"c"_s}));

    // Another process adds the same at the very moment in which it is stored.
    store(u"ExcludeList"_s, plist::Value(plist::Array{record(u"c"_s)}));
    pane->doImportExcludeList(nullptr);
    ASSERT_TRUE(openPanel.control().chooseFile(u"/home/tester/list.plist"_s));
    int synchronizations = 0;
    preferences.control().setMeanwhile([&] {
        if (++synchronizations == 2)
            store(u"ExcludeList"_s, imported);
    });
    ASSERT_TRUE(sheetsControl.answer(1));
    EXPECT_EQ(stored(u"ExcludeList"_s), imported);
}

TEST_F(ExcludePage, SaysWhyAnExportOrImportFailed)
{
    showPaneWith({record(u"a"_s, true)});
    EXPECT_FALSE(pane->ieExportButton()->isEnabled()) << "nothing is the user's own";
    fileStoreControl.files[u"/damaged.plist"_s] = "<plist><dict>";
    for (const QString &path : {u"/damaged.plist"_s, u"/none.plist"_s}) {
        pane->doImportExcludeList(nullptr);
        ASSERT_TRUE(openPanel.control().chooseFile(path));
        EXPECT_EQ(sheetsControl.alerts().last().alert.title, u"Nothing Was Imported"_s);
        EXPECT_TRUE(sheetsControl.alerts().last().alert.message.contains(path));
    }
    fileStoreControl.files[u"/list.plist"_s] = "precious";
    pane->doExportExcludeList(nullptr);
    ASSERT_TRUE(openPanel.control().chooseFile(u"/list.plist"_s));
    EXPECT_EQ(fileStoreControl.files[u"/list.plist"_s], "precious") << "the list emptied meanwhile";
    EXPECT_TRUE(sheetsControl.alerts().last().alert.message.contains(u"No application"_s));

    store(u"ExcludeList"_s, plist::Value(plist::Array{record(u"a"_s)}));
    fileStoreControl.writeError = u"The disk is full"_s;
    pane->doExportExcludeList(nullptr);
    ASSERT_TRUE(openPanel.control().chooseFile(u"/list.plist"_s));
    EXPECT_TRUE(sheetsControl.alerts().last().alert.message.contains(u"The disk is full"_s));
}

} // namespace tarnwell::tests
