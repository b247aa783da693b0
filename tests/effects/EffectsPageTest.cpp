#include "CompositionFiles.h"

#include "desktop/CapturedLog.h"
#include "effects/Outline.h"
#include "effects/QCView.h"
#include "support/PaneFixture.h"
#include "support/StrangersNames.h"
#include "support/TemporaryHome.h"

#include <QAbstractItemModel>
#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

const QString stopKey = u"Jane, Stop This Crazy Thing"_s;
const QString includeKey = u"IncludeBundledQTZs"_s;
const QString statusKey = u"SEQTZStatusList"_s;

} // namespace

/// The pane on a described home that lies on the disk, too, since compositions are read from there.
class EffectsPage : public PaneFixture
{
protected:
    EffectsPage()
    {
        home = fakes::FakeHome(disk.home(), disk.root());
        fileManager.control().usesDisk = true;
        disk.writeInfo(plugin + u"/Tarnwell.zok/Contents/Resources/SillyEffect.bundle/"
                                "Contents/Info.plist"_s,
                       {});
    }

    QString add(const QString &name, const QByteArray &bytes = compositionFile())
    {
        home.addFile(disk.path(name));
        return disk.write(name, bytes);
    }
    /// A composition among the user's own.
    QString addOwn(const QString &name, const QByteArray &bytes = compositionFile())
    {
        return add(u"~/Library/Application Support/Varnit/Tarnwell/"_s + name, bytes);
    }
    void addScreenSaver(const QString &name) { add(u"/Library/Screen Savers/"_s + name); }

    void showPage(bool on = true)
    {
        find<QTabWidget>("pages")->setCurrentWidget(
            find<QWidget>(on ? "effectsPage" : "shortcutsPage"));
        QApplication::processEvents();
    }
    void showEffects()
    {
        showPane();
        showPage();
    }

    QTreeView *outline() { return pane->seView(); }
    QModelIndex cell(const QString &title, int column)
    {
        const QModelIndexList found =
            outline()->model()->match(outline()->model()->index(0, 0), Qt::DisplayRole, title, 1,
                                      Qt::MatchExactly | Qt::MatchRecursive);
        EXPECT_EQ(found.size(), 1) << qPrintable(title);
        return found.isEmpty() ? QModelIndex() : found.constFirst().siblingAtColumn(column);
    }
    int state(const QString &title) { return cell(title, 1).data(Qt::CheckStateRole).toInt(); }
    void clickSwitch(const QString &title)
    {
        const QModelIndex index = cell(title, 1);
        const QRect place = outline()->visualRect(index);
        QTest::mouseClick(outline()->viewport(), Qt::LeftButton, {},
                          QPoint(place.left() + 10, place.center().y()));
    }
    void select(const QString &title) { outline()->setCurrentIndex(cell(title, 0)); }
    bool choice(const QString &path)
    {
        return stored(statusKey).toDictionary().value(path).toBool();
    }

    TemporaryHome disk;
    const QString plugin = u"~/Library/Hullforges"_s;
};

TEST_F(EffectsPage, SwitchesAreStoredAsThePluginReadsThem)
{
    struct Row
    {
        const char *name;
        plist::Value stop;
        plist::Value include;
        bool shown;
        bool includes;
    };
    const Row rows[] = {
        {"nothing stored", {}, {}, false, false},
        {"on", false, true, true, true},
        {"off", true, false, false, false},
        {"as numbers", 0, 1, true, true},
        {"as texts", u"no"_s, u"YES"_s, true, true},
        {"of other types", plist::Dictionary{}, QByteArray("1"), false, false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        store(stopKey, row.stop);
        store(includeKey, row.include);
        showEffects();
        auto *effects = find<QCheckBox>("sillyEffectCheckbox");
        auto *bundled = find<QCheckBox>("includesBundledEffectsCheckbox");
        EXPECT_EQ(effects->isChecked(), row.shown);
        EXPECT_EQ(bundled->isChecked(), row.includes);
        for (int round = 0; round < 2; ++round) {
            effects->click();
            bundled->click();
            EXPECT_EQ(stored(stopKey), plist::Value(!effects->isChecked()));
            EXPECT_EQ(stored(includeKey), plist::Value(bundled->isChecked()));
        }
        pane.reset();
        view.reset();
    }
}

TEST_F(EffectsPage, NothingIsLookedForBeforeThePageShows)
{
    addScreenSaver(u"s.qtz"_s);
    showPane();
    QApplication::processEvents();
    postRefresh();
    EXPECT_TRUE(stored(statusKey).isNull());
    showPage();
    EXPECT_EQ(stored(statusKey).toDictionary().size(), 1) << "a screen saver is noted down as off";
    EXPECT_EQ(state(u"s.qtz"_s), int(Qt::Unchecked));
}

TEST_F(EffectsPage, AnswersForTheOutlineBeforeThePageShows)
{
    const QString group = u"Application Support"_s;
    const QUrl a = QUrl::fromLocalFile(addOwn(u"a.qtz"_s));
    const QUrl b = QUrl::fromLocalFile(addOwn(u"b.qtz"_s));
    openPane();
    const auto check = QString(effects::enableColumn);
    pane->setObjectValue(false, check, group);
    EXPECT_EQ(stored(statusKey),
              plist::Value(plist::Dictionary{{a.toLocalFile(), false}, {b.toLocalFile(), false}}));
    pane->setObjectValue(true, check, b);
    pane->outlineViewSelectionDidChange(pane->seView());
    EXPECT_EQ(pane->numberOfChildrenOfItem({}), 1);
    EXPECT_EQ(pane->child(0, {}), effects::OutlineItem(group));
    EXPECT_EQ(pane->child(1, group), effects::OutlineItem(b));
    EXPECT_EQ(pane->objectValueForTableColumn(check, group), -1);
    EXPECT_EQ(pane->objectValueForTableColumn(check, a), 0);
    EXPECT_EQ(pane->objectValueForTableColumn(u"com.varnit.tawl.title"_s, b), u"b.qtz"_s);
    EXPECT_TRUE(pane->isItemExpandable(group) && !pane->isItemExpandable(a));
    EXPECT_TRUE(pane->shouldEditTableColumn(check, a));
    EXPECT_EQ(pane->itemForPersistentObject(pane->persistentObjectForItem(a)),
              effects::OutlineItem(a));
}

TEST_F(EffectsPage, ADisplayThatCannotPlayHidesTheControls)
{
    addOwn(u"a.qtz"_s);
    showEffects();
    EXPECT_FALSE(pane->hideSillyEffects()) << "nobody knows it yet";
    EXPECT_TRUE(outline()->isVisible());
    Q_EMIT pane->previewView()->playable(false);
    EXPECT_TRUE(pane->hideSillyEffects());
    for (const char *name :
         {"sillyEffectCheckbox", "includesBundledEffectsCheckbox", "effectsSplitter"})
        EXPECT_FALSE(find<QWidget>(name)->isVisible()) << name;
    EXPECT_TRUE(find<QWidget>("effectsUnavailableLabel")->isVisible());
    postRefresh();
    showPage(false);
    showPage();
    Q_EMIT pane->previewView()->playable(true);
    EXPECT_TRUE(outline()->isVisible());
    EXPECT_FALSE(find<QWidget>("effectsUnavailableLabel")->isVisible());
    EXPECT_EQ(state(u"a.qtz"_s), int(Qt::Checked));
}

TEST_F(EffectsPage, SwitchesCompositionsAndGroups)
{
    const QString a = addOwn(u"a.qtz"_s);
    const QString b = addOwn(u"b.qtz"_s);
    addScreenSaver(u"s.qtz"_s);
    store(statusKey, plist::Dictionary{{u"/elsewhere.qtz"_s, true}, {b, false}});
    showEffects();
    EXPECT_EQ(state(u"Application Support"_s), int(Qt::PartiallyChecked));
    EXPECT_EQ(state(u"Screensavers"_s), int(Qt::Unchecked));

    clickSwitch(u"Application Support"_s);
    EXPECT_TRUE(choice(a) && choice(b));
    EXPECT_EQ(state(u"b.qtz"_s), int(Qt::Checked));
    EXPECT_EQ(state(u"Application Support"_s), int(Qt::Checked));
    clickSwitch(u"a.qtz"_s);
    EXPECT_FALSE(choice(a));
    EXPECT_EQ(state(u"Application Support"_s), int(Qt::PartiallyChecked));
    clickSwitch(u"s.qtz"_s);
    EXPECT_EQ(state(u"Screensavers"_s), int(Qt::Checked));
    EXPECT_TRUE(choice(u"/elsewhere.qtz"_s)) << "what others stored stays";

    outline()->setFocus();
    select(u"a.qtz"_s);
    const auto spoken = [&] {
        return QAccessible::queryAccessibleInterface(outline())->focusChild()->text(
            QAccessible::Name);
    };
    QTest::keyClick(outline(), Qt::Key_Space);
    EXPECT_TRUE(choice(a));
    EXPECT_EQ(spoken(), u"a.qtz, on"_s);
    QTest::keyClick(outline(), Qt::Key_Space);
    EXPECT_FALSE(choice(a));
    EXPECT_EQ(spoken(), u"a.qtz, off"_s);

    preferences.control().clearRecord();
    pane->setObjectValue(true, u"com.varnit.tawl.title"_s, QUrl::fromLocalFile(a));
    EXPECT_TRUE(preferences.control().writes().isEmpty()) << "names can't be edited";
}

TEST_F(EffectsPage, PreviewsTheSelectedComposition)
{
    addOwn(u"rain.qtz"_s,
           compositionFile({{u"name"_s, u"Rain <b>"_s},
                            {u"copyright"_s, u"© <i>Somebody</i>"_s},
                            {u"description"_s, u"https://example.com/?a=1&b=\"2\""_s}},
                           {u"SelectedMenuItem"_s}));
    addOwn(u"plain.qtz"_s);
    addOwn(u"snow.qtz"_s, compositionFile({{u"description"_s, u"Falls\nslowly"_s}}));
    showEffects();
    EXPECT_TRUE(pane->preInstructionView()->isVisible());
    select(u"Application Support"_s);
    EXPECT_FALSE(pane->previewView()->isRendering());

    select(u"rain.qtz"_s);
    EXPECT_TRUE(pane->previewView()->isRendering());
    EXPECT_FALSE(pane->preInstructionView()->isVisible());
    EXPECT_EQ(pane->qcName()->text(), u"Rain <b>"_s);
    EXPECT_EQ(pane->qcName()->textFormat(), Qt::PlainText);
    EXPECT_EQ(pane->authorName()->text(), u"© <i>Somebody</i>"_s);
    EXPECT_EQ(pane->authorName()->textFormat(), Qt::PlainText);

    select(u"plain.qtz"_s);
    EXPECT_EQ(pane->qcName()->text(), u"plain.qtz"_s);
    EXPECT_EQ(pane->authorName()->text() + pane->urlField()->text(), QString());

    select(u"snow.qtz"_s);
    EXPECT_EQ(pane->urlField()->text(), u"Falls\nslowly"_s);
    EXPECT_EQ(pane->urlField()->textFormat(), Qt::PlainText);
    EXPECT_EQ(pane->urlField()->focusPolicy(), Qt::NoFocus) << "nothing to be done there";
    select(u"Application Support"_s);
    EXPECT_TRUE(pane->previewView()->isRendering()) << "a group leaves the preview alone";
}

TEST_F(EffectsPage, StaysAsLargeAsItIsWhateverACompositionIsCalled)
{
    addOwn(u"plain.qtz"_s);
    const QStringList names = strangersNames();
    for (qsizetype i = 0; i < names.size(); ++i)
        addOwn(u"%1.qtz"_s.arg(i), compositionFile({{u"name"_s, names[i]},
                                                    {u"copyright"_s, names[i]},
                                                    {u"description"_s, names[i]}}));
    addOwn(u"two\nlines\u202e.qtz"_s);
    showEffects();
    const QSize usual = view->minimumSizeHint();
    for (qsizetype i = 0; i < names.size(); ++i) {
        SCOPED_TRACE(i);
        select(u"%1.qtz"_s.arg(i));
        QApplication::processEvents();
        EXPECT_LE(view->minimumSizeHint().width(), usual.width());
        EXPECT_LE(view->minimumSizeHint().height(), usual.height() + 400);
    }
    select(u"3.qtz"_s);
    EXPECT_EQ(pane->urlField()->text(), u"fifo[U+202E]gpj.exe"_s);
    EXPECT_EQ(cell(u"two␊lines[U+202E].qtz"_s, 0).data(Qt::AccessibleTextRole).toString(),
              u"two␊lines[U+202E].qtz, on"_s);
}

TEST_F(EffectsPage, OpensTheLink)
{
    const QString address = u"https://example.com/a?b=1&c=%22"_s;
    addOwn(u"rain.qtz"_s, compositionFile({{u"description"_s, address}}));
    showEffects();
    select(u"rain.qtz"_s);
    EXPECT_EQ(pane->urlField()->textFormat(), Qt::RichText);
    EXPECT_EQ(pane->urlField()->focusPolicy(), Qt::StrongFocus);
    EXPECT_TRUE(pane->urlField()->text().contains(u">example.com</a>"_s));
    EXPECT_TRUE(pane->urlField()->toolTip().contains(address.toHtmlEscaped()));
    QTest::mouseClick(pane->urlField(), Qt::LeftButton, {}, pane->urlField()->rect().center());
    EXPECT_EQ(workspace.control().openedUrls, QList<QUrl>{QUrl(address)});
}

TEST_F(EffectsPage, SaysWhereThePreviewIsMissing)
{
    addOwn(u"a.qtz"_s);
    showEffects();
    select(u"a.qtz"_s);
    Q_EMIT pane->previewView()->failed(u"Too large."_s);
    EXPECT_TRUE(pane->preInstructionView()->isVisible());
    EXPECT_EQ(pane->preInstructionView()->text(), u"Too large."_s);
    select(u"Application Support"_s);
    select(u"a.qtz"_s);
    EXPECT_FALSE(pane->preInstructionView()->isVisible());
}

TEST_F(EffectsPage, KeepsTheLabelsForWhatIsNoComposition)
{
    addOwn(u"good.qtz"_s, compositionFile({{u"name"_s, u"Good"_s}, {u"copyright"_s, u"Me"_s}}));
    addOwn(u"bad.qtz"_s, "what is this?");
    QFile::remove(addOwn(u"gone.qtz"_s));
    showEffects();
    for (const QString &bad : {u"bad.qtz"_s, u"gone.qtz"_s}) {
        select(u"good.qtz"_s);
        EXPECT_TRUE(pane->previewView()->isRendering());
        select(bad);
        EXPECT_FALSE(pane->previewView()->isRendering());
        EXPECT_EQ(pane->qcName()->text(), u"Good"_s);
        EXPECT_EQ(pane->authorName()->text(), u"Me"_s);
    }
}

TEST_F(EffectsPage, FollowsWhatOthersDo)
{
    const QString a = addOwn(u"a.qtz"_s, compositionFile({{u"name"_s, u"A"_s}}));
    addOwn(u"b.qtz"_s);
    addScreenSaver(u"s.qtz"_s);
    showEffects();
    select(u"b.qtz"_s);
    outline()->collapse(cell(u"Screensavers"_s, 0));
    store(statusKey, plist::Dictionary{{a, false}});
    store(stopKey, false);
    preferences.control().clearRecord();
    postRefresh();
    EXPECT_EQ(state(u"a.qtz"_s), int(Qt::Unchecked));
    EXPECT_EQ(state(u"s.qtz"_s), int(Qt::Unchecked));
    EXPECT_TRUE(find<QCheckBox>("sillyEffectCheckbox")->isChecked());
    EXPECT_TRUE(preferences.control().writes().isEmpty()) << "a refresh is not answered";

    // A new file, seen when the user comes back: rows move, but what is selected stays so.
    const QString before = pane->qcName()->text();
    addOwn(u"aa.qtz"_s);
    addOwn(u"b.qtz"_s, compositionFile({{u"name"_s, u"Not played anew"_s}}));
    pane->hostDidBecomeActive();
    EXPECT_EQ(state(u"aa.qtz"_s), int(Qt::Checked));
    EXPECT_EQ(outline()->currentIndex().data().toString(), u"b.qtz"_s);
    EXPECT_TRUE(outline()->selectionModel()->isSelected(cell(u"b.qtz"_s, 0)));
    EXPECT_EQ(pane->qcName()->text(), before);
    EXPECT_TRUE(outline()->isExpanded(cell(u"Application Support"_s, 0)));
    EXPECT_FALSE(outline()->isExpanded(cell(u"Screensavers"_s, 0)));
}

TEST_F(EffectsPage, WithoutThePluginTheListStaysEmptyUntilItIsThere)
{
    addOwn(u"a.qtz"_s);
    const QString aside = plugin + u" aside"_s;
    disk.move(plugin, aside);
    const CapturedLog log;
    showEffects();
    EXPECT_EQ(log.containing(u"Cannot find the Tarnwell.zok bundle"_s).size(), 1);
    EXPECT_EQ(outline()->model()->rowCount(), 0);
    EXPECT_TRUE(pane->preInstructionView()->text().contains(u"not installed"_s));
    EXPECT_TRUE(stored(statusKey).isNull());
    disk.move(aside, plugin);
    pane->hostDidBecomeActive();
    EXPECT_EQ(state(u"a.qtz"_s), int(Qt::Checked));
    EXPECT_FALSE(pane->preInstructionView()->text().contains(u"not installed"_s));
    disk.move(plugin, aside);
    pane->hostDidBecomeActive();
    EXPECT_EQ(outline()->model()->rowCount(), 1) << "the bundle is found once";
}

} // namespace tarnwell::tests
