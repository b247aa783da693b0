#include "fakes/FakeApplications.h"
#include "fakes/FakeRunningApplications.h"
#include "fakes/FakeSheets.h"
#include "fakes/FakeWorkspace.h"
#include "support/StrangersNames.h"
#include "support/TemporaryHome.h"
#include "ui/ApplicationBrowser.h"
#include "ui/ApplicationChooserModel.h"
#include "ui/StyledText.h"
#include "ui/WidgetOpenPanel.h"
#include "ui/WidgetSheets.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

ports::ApplicationPanel severalApplications()
{
    ports::ApplicationPanel panel;
    panel.title = u"Choose an Application"_s;
    panel.prompt = u"Add"_s;
    panel.folder = u"/Applications"_s;
    panel.types = QStringList{u"app"_s};
    panel.allowsMultipleSelection = true;
    return panel;
}

} // namespace

class ApplicationChooser : public testing::Test
{
protected:
    ApplicationChooser()
    {
        for (const QString &name : {u"quill"_s, u"Pens"_s, u"brush"_s, u"Inks"_s})
            home.addApplication(u"/Applications/%1.app"_s.arg(name), u"com.example."_s + name,
                                name);
        running.control().insert(u"/Applications/quill.app"_s);
        window.show();
    }

    void begin(const ports::ApplicationPanel &panel = severalApplications())
    {
        openPanel.chooseApplications(panel, &window, [this](int code, const QStringList &paths) {
            codes.append(code);
            chosen = paths;
        });
        QApplication::processEvents();
    }

    template <typename Widget>
    Widget *find(const char *name)
    {
        for (QWidget *top : QApplication::topLevelWidgets()) {
            if (!top->isVisible())
                continue;
            if (auto *widget = top->findChild<Widget *>(QLatin1StringView(name)))
                return widget;
            if (auto *itself = qobject_cast<Widget *>(top);
                itself && itself->objectName() == QLatin1StringView(name))
                return itself;
        }
        return nullptr;
    }
    QStringList shown()
    {
        QStringList names;
        const auto *model = find<QListView>("applicationList")->model();
        for (int row = 0; row < model->rowCount(); ++row)
            names.append(model->index(row, 0).data().toString());
        return names;
    }
    void tick(int row)
    {
        auto *model = find<QListView>("applicationList")->model();
        model->setData(model->index(row, 0), Qt::Checked, Qt::CheckStateRole);
    }
    void press(const char *button)
    {
        QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton);
        QApplication::processEvents();
    }

    fakes::FakeHome home;
    fakes::FakeApplications applications{home};
    fakes::FakeRunningApplications running;
    fakes::FakeWorkspace workspace{home};
    QWidget window;
    ui::WidgetSheets sheets;
    ui::WidgetOpenPanel openPanel{sheets, applications, running, workspace};
    QList<int> codes;
    QStringList chosen;
};

TEST_F(ApplicationChooser, ShowsTheRunningOnesFirst)
{
    begin();
    EXPECT_EQ(shown(), (QStringList{u"quill"_s, u"brush"_s, u"Inks"_s, u"Pens"_s}));
    EXPECT_FALSE(find<QPushButton>("confirmButton")->isEnabled());
    const QModelIndex first = find<QListView>("applicationList")->model()->index(0, 0);
    EXPECT_EQ(first.data(Qt::AccessibleTextRole).toString(), u"quill, running"_s);
}

TEST_F(ApplicationChooser, ShowsStrangersNamesAsOneHonestLine)
{
    int number = 0;
    for (const QString &name : strangersNames())
        home.addApplication(u"/Applications/%1.app"_s.arg(++number), name, name);
    begin();
    const QAbstractItemModel *model = find<QListView>("applicationList")->model();
    ASSERT_EQ(model->rowCount(), 9);
    for (int row = 0; row < 9; ++row) {
        tick(row);
        const QModelIndex index = model->index(row, 0);
        EXPECT_TRUE(isHonest(index.data(Qt::AccessibleTextRole).toString()));
        EXPECT_TRUE(
            isHonest(index.data(ui::styledTextRole).value<foundation::StyledString>().text(), 2));
    }
    EXPECT_TRUE(isHonest(find<QLabel>("chosenApplications")->accessibleName()));
    EXPECT_LE(find<QDialog>("applicationChooser")->minimumSizeHint().height(), 300);
}

TEST_F(ApplicationChooser, KeepsTicksAcrossSearches)
{
    begin();
    auto *search = find<QLineEdit>("applicationSearch");
    QTest::keyClicks(search, u"inks"_s);
    EXPECT_EQ(shown(), QStringList{u"Inks"_s});
    tick(0);
    search->setText(u"COM.EXAMPLE.Q"_s);
    EXPECT_EQ(shown(), QStringList{u"quill"_s}) << "identifiers are searched, too";
    tick(0);
    search->setText(u"no such thing"_s);
    EXPECT_TRUE(shown().isEmpty());
    EXPECT_TRUE(find<QLabel>("chosenApplications")->toolTip().contains(u"quill, Inks"_s));
    press("confirmButton");
    EXPECT_EQ(codes, QList<int>{1});
    EXPECT_EQ(chosen, (QStringList{u"/Applications/quill.app"_s, u"/Applications/Inks.app"_s}));
}

TEST_F(ApplicationChooser, TypingAndReturnAreEnough)
{
    begin();
    auto *search = find<QLineEdit>("applicationSearch");
    QTest::keyClicks(search, u"pen"_s);
    QTest::keyClick(search, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(chosen, QStringList{u"/Applications/Pens.app"_s});
    EXPECT_EQ(codes, QList<int>{1});
}

TEST_F(ApplicationChooser, WhatIsPointedAtJoinsWhatIsTicked)
{
    const auto viewport = [this] { return find<QListView>("applicationList")->viewport(); };
    const auto row = [this] {
        auto *list = find<QListView>("applicationList");
        return list->visualRect(list->model()->index(1, 0));
    };
    const auto checkBox = [&row] { return QPoint(row().left() + 10, row().center().y()); };
    const QString quill = u"/Applications/quill.app"_s;
    const QString brush = u"/Applications/brush.app"_s;
    const struct
    {
        const char *name;
        std::function<void()> point;
    } ways[] = {
        {"double-click",
         [&] {
             QTest::mouseClick(viewport(), Qt::LeftButton, {}, row().center());
             QTest::mouseDClick(viewport(), Qt::LeftButton, {}, row().center());
         }},
        {"Return after a search",
         [this] {
             QTest::keyClicks(find<QLineEdit>("applicationSearch"), u"brush"_s);
             QTest::keyClick(find<QLineEdit>("applicationSearch"), Qt::Key_Return);
         }},
        {"two quick clicks on the check box",
         [&] {
             QTest::mouseClick(viewport(), Qt::LeftButton, {}, checkBox());
             QTest::mouseDClick(viewport(), Qt::LeftButton, {}, checkBox());
             EXPECT_TRUE(chosen.isEmpty());
             QTest::mouseRelease(viewport(), Qt::LeftButton, {}, checkBox());
             press("confirmButton");
         }},
    };
    for (const auto &way : ways) {
        SCOPED_TRACE(way.name);
        begin();
        tick(0);
        way.point();
        QApplication::processEvents();
        EXPECT_EQ(std::exchange(chosen, {}), (QStringList{quill, brush}));
    }
}

TEST_F(ApplicationChooser, ArrowsLeadFromTheSearchIntoTheList)
{
    begin();
    QTest::keyClick(find<QLineEdit>("applicationSearch"), Qt::Key_Down);
    auto *list = find<QListView>("applicationList");
    EXPECT_EQ(list->currentIndex().row(), 0);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Space);
    EXPECT_EQ(list->model()->index(1, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);
}

TEST_F(ApplicationChooser, EndsWithNothingWhenTheUserGivesUp)
{
    const std::function<void()> ways[] = {
        [this] { press("cancelButton"); },
        [this] { QTest::keyClick(find<QDialog>("applicationChooser"), Qt::Key_Escape); },
        [this] { window.hide(); }};
    for (const auto &giveUp : ways) {
        begin();
        tick(0);
        giveUp();
        QApplication::processEvents();
        EXPECT_EQ(std::exchange(codes, {}), QList<int>{0});
        EXPECT_TRUE(chosen.isEmpty());
    }
}

TEST_F(ApplicationChooser, HundredsOfApplicationsLoadOnlyTheIconsThatShow)
{
    for (int i = 0; i < 800; ++i)
        home.addApplication(u"/Applications/Tool %1.app"_s.arg(i), u"tool.%1"_s.arg(i),
                            u"Tool %1"_s.arg(i));
    begin();
    EXPECT_EQ(shown().size(), 804);
    auto *list = find<QListView>("applicationList");
    list->grab();
    const qsizetype onePage = workspace.control().iconsAskedFor();
    EXPECT_GT(onePage, 0);
    EXPECT_LT(onePage, 40);
    list->scrollToBottom();
    list->grab();
    EXPECT_LE(workspace.control().iconsAskedFor(), 2 * onePage + 2);
    const QAbstractItemModelTester tester(list->model());
}

TEST_F(ApplicationChooser, BrowsingTakesBundlesForFiles)
{
    TemporaryHome disk;
    const QString bundle = disk.makeApplication(u"/Tools/Nibs.app"_s, u"nibs"_s);
    const QString tool = disk.write(u"/Tools/blotter"_s, "#!/bin/sh\n", true);
    disk.write(u"/Tools/notes.txt"_s, "");
    const QString entry =
        disk.write(u"/Tools/pens.desktop"_s, "[Desktop Entry]\nType=Application\nName=P\nExec=p\n");
    disk.write(u"/Tools/link.desktop"_s, "[Desktop Entry]\nType=Link\nURL=https://a.example\n");
    disk.makeFolder(u"/Tools/More"_s);
    disk.makeFolder(u"/Tools/Empty.app"_s);
    disk.writeInfo(u"/Tools/Sources/Info.plist"_s, {{u"CFBundleExecutable"_s, u"run"_s}});
    ports::ApplicationPanel panel = severalApplications();
    panel.folder = disk.path(u"/Tools"_s);
    const struct
    {
        const char *name;
        QString entered; ///< a folder that is opened
        QString typed;   ///< a name that is typed
        QStringList chosen;
        QString refused = {}; ///< the name that a message tells to be of no application
    } rows[] = {
        {"opening a bundle", bundle, {}, {bundle}},
        {"opening a folder", disk.path(u"/Tools/More"_s), {}, {}},
        {"typing a bundle", {}, u"Nibs.app"_s, {bundle}},
        {"typing a program", {}, u"blotter"_s, {tool}},
        {"typing a desktop entry", {}, u"pens.desktop"_s, {entry}},
        {"typing an entry of no application", {}, u"link.desktop"_s, {}, u"link.desktop"_s},
        {"typing a folder", {}, u"More"_s, {}},
        {"opening a folder with a bundle's contents", disk.path(u"/Tools/Sources"_s), {}, {}},
        {"typing such a folder", {}, u"Sources"_s, {}},
        {"typing a folder that only looks like a bundle", {}, u"Empty.app"_s, {}},
        {"typing another file", {}, u"notes.txt"_s, {}, u"notes.txt"_s},
        {"typing what does not exist", {}, u"nothing"_s, {}, u"nothing"_s},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        begin(panel);
        tick(0);
        press("browseButton");
        auto *browser = find<ui::ApplicationBrowser>("applicationBrowser");
        ASSERT_TRUE(browser);
        EXPECT_EQ(browser->directory().absolutePath(), panel.folder);
        if (!row.entered.isEmpty())
            Q_EMIT browser->directoryEntered(row.entered);
        if (!row.typed.isEmpty()) {
            browser->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(row.typed);
            browser->accept();
        }
        QApplication::processEvents();
        if (row.chosen.isEmpty()) {
            EXPECT_TRUE(codes.isEmpty());
            ASSERT_TRUE(browser->isVisible()) << "for another try";
            const auto *refusal = find<QMessageBox>("noApplication");
            EXPECT_EQ(refusal != nullptr, !row.refused.isEmpty());
            EXPECT_TRUE(!refusal || refusal->text().contains(u'"' + row.refused + u'"'));
            browser->reject();
            press("cancelButton");
        } else {
            EXPECT_EQ(chosen, QStringList{u"/Applications/quill.app"_s} + row.chosen);
        }
        codes.clear();
        chosen.clear();
    }
}

TEST_F(ApplicationChooser, FilesAreChosenToOpenAndToSave)
{
    TemporaryHome disk;
    const QString file = disk.write(u"/list.plist"_s, "");
    QStringList paths;
    const auto didEnd = [&paths](const QString &path) { paths.append(path); };
    const auto type = [&](const char *dialogName, const QString &name) {
        QApplication::processEvents();
        auto *dialog = find<QFileDialog>(dialogName);
        ASSERT_TRUE(dialog);
        const QLocale locale;
        for (const char *view : {"listView", "treeView"}) {
            const auto *delegate = qobject_cast<QStyledItemDelegate *>(
                dialog->findChild<QAbstractItemView *>(QLatin1StringView(view))->itemDelegate());
            ASSERT_TRUE(delegate);
            EXPECT_EQ(delegate->displayText(u"two\nlines\u202e"_s, locale), u"two␊lines[U+202E]"_s);
        }
        dialog->setDirectory(disk.root());
        if (!name.isEmpty())
            dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(name);
        static_cast<QDialog *>(dialog)->accept();
        QApplication::processEvents();
    };
    openPanel.chooseFileToOpen(u"Open"_s, {u"Lists (*.plist)"_s}, &window, didEnd);
    type("fileToOpen", u"list.plist"_s);
    openPanel.chooseFileToSave(u"Save"_s, u"Suggested.plist"_s, &window, didEnd);
    type("fileToSave", {});
    openPanel.chooseFileToSave(u"Save"_s, u"Suggested.plist"_s, &window, didEnd);
    type("fileToSave", u"mine"_s);
    openPanel.chooseFileToOpen(u"Open"_s, {}, &window, didEnd);
    QApplication::processEvents();
    find<QFileDialog>("fileToOpen")->reject();
    QApplication::processEvents();
    EXPECT_EQ(paths, (QStringList{file, disk.path(u"/Suggested.plist"_s),
                                  disk.path(u"/mine.plist"_s), QString()}));
}

} // namespace tarnwell::tests
