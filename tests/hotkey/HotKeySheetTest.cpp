// The hot key on its page and in its sheet.

#include "desktop/CapturedLog.h"
#include "hotkey/LiTextField.h"
#include "hotkey/LiWindow.h"
#include "support/PaneFixture.h"

#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

class HotKeySheet : public PaneFixture
{
protected:
    /// Nobody has opened the pane yet.
    HotKeySheet()
    {
        store(prefs::keys::menuAccKeyCode, {});
        store(prefs::keys::menuAccMods, {});
    }

    void openSheet()
    {
        pane->setMenuAccHKButton()->click();
        ASSERT_TRUE(sheetsControl.isOpen(pane->hotkeySheet()));
    }

    /// Presses a key where the focus is, as the display would.
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget *const focus = pane->hotkeySheet()->focusWidget();
        QTest::keyClick(focus ? focus : pane->hotkeySheet(), Qt::Key(key), modifiers);
    }

    void pressButton(const QString &name)
    {
        pane->hotkeySheet()->findChild<QPushButton *>(name)->click();
        sheetsControl.turn();
    }

    QString fieldText() const { return pane->hotKeyField()->text(); }
    QString hint() const { return pane->hotkeyHint()->text(); }
    QString shown() const { return pane->menuAccHotKey()->text(); }

    void expectStored(const plist::Value &keyCode, const plist::Value &modifiers)
    {
        EXPECT_EQ(stored(u"MenuAccKeyCode"_s), keyCode);
        EXPECT_EQ(stored(u"MenuAccMods"_s), modifiers);
    }
};

TEST_F(HotKeySheet, TheDefaultIsStoredOnceInPlaceOfNoneOrHalfAKey)
{
    store(u"MenuAccMods"_s, 1);
    preferences.appSynchronize(prefs::pluginDomain);
    openPane();
    expectStored(0x2E, 6);
    EXPECT_EQ(shown(), u"⌃⌥⌘M"_s);
    EXPECT_EQ(pane->menuAccHotKey()->accessibleName(), u"Control Option Command M"_s);
    preferences.control().clearRecord();
    pane->updateMenuAccText(pane->menuAccHotKey());
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

TEST_F(HotKeySheet, AStoredKeyOfOddTypesIsLeftAlone)
{
    store(u"MenuAccKeyCode"_s, u"46"_s);
    store(u"MenuAccMods"_s, 6);
    openPane();
    expectStored(u"46"_s, 6);
    EXPECT_EQ(shown(), u"⌃⌥⌘A"_s);
}

TEST_F(HotKeySheet, AnotherLayoutStoresNothing)
{
    keyboard.useBoard(u"xkb:odd"_s, {{0x2E, u"µ"_s}});
    const CapturedLog log;
    openPane();
    expectStored({}, {});
    EXPECT_EQ(shown(), u""_s);
    EXPECT_EQ(log.containing(u"Could not set the default hotkey"_s).size(), 1);
    preferences.control().clearRecord();
    keyboard.useBoard(u"xkb:us"_s);
    expectStored({}, {});
    EXPECT_TRUE(preferences.control().writes().isEmpty());
    EXPECT_EQ(shown(), u""_s);
    openSheet();
    expectStored(0x2E, 6);
    EXPECT_EQ(fieldText(), u"⌃⌥⌘M"_s);
    EXPECT_EQ(shown(), fieldText());
}

TEST_F(HotKeySheet, TheLastKeyIsStoredWheneverTheSheetIsConfirmed)
{
    showPane();
    preferences.control().clearRecord();
    openSheet();
    pressButton(u"hotkeyOkButton"_s);
    EXPECT_TRUE(preferences.control().writes().isEmpty()) << "no key was pressed yet";

    openSheet();
    press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(fieldText(), u"⇧⌃K"_s);
    EXPECT_TRUE(preferences.control().writes().isEmpty());
    pressButton(u"hotkeyCancelButton"_s);
    EXPECT_TRUE(preferences.control().writes().isEmpty());
    EXPECT_EQ(shown(), u"⌃⌥⌘M"_s);

    openSheet();
    EXPECT_EQ(fieldText(), u"⌃⌥⌘M"_s);
    pressButton(u"hotkeyOkButton"_s);
    expectStored(0x28, 13);
    EXPECT_EQ(shown(), u"⇧⌃K"_s) << "the key of the earlier sheet";
    EXPECT_FALSE(pane->hotkeySheet()->isVisible());
}

TEST_F(HotKeySheet, TellsInWordsWhatWasTakenAndWhyAKeyWasNot)
{
    struct Row
    {
        const char *name;
        int key;
        Qt::KeyboardModifiers modifiers;
        QString field;
        QString hint;
    };
    const QString add = u"Add Control, Option or Command"_s;
    const Row rows[] = {
        {"letter", Qt::Key_A, Qt::NoModifier, u"⌃⌥⌘M"_s, add},
        {"taken", Qt::Key_A, Qt::ControlModifier | Qt::AltModifier, u"⌃⌥A"_s,
         u"Control Option A"_s},
        {"refused after it", Qt::Key_B, Qt::NoModifier, u"⌃⌥A"_s, add},
        {"space bar", Qt::Key_Space, Qt::ControlModifier, u"⌃ "_s, u"Control Space"_s},
        {"key of no board", Qt::Key_MediaPlay, Qt::ControlModifier, u"⌃ "_s,
         u"This key cannot be the hot key"_s},
        {"modifier", Qt::Key_Control, Qt::ControlModifier, u"⌃ "_s,
         u"This key cannot be the hot key"_s},
    };
    showPane();
    openSheet();
    EXPECT_EQ(hint(), u"Control Option Command M"_s);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        press(row.key, row.modifiers);
        EXPECT_EQ(fieldText(), row.field);
        EXPECT_EQ(hint(), row.hint);
        EXPECT_EQ(pane->hotKeyField()->accessibleDescription(), row.hint);
    }
}

TEST_F(HotKeySheet, NothingElseIsSetOffByAKeyThatItTakes)
{
    showPane();
    openSheet();
    QShortcut ofSheet(QKeySequence(u"Ctrl+K"_s), pane->hotkeySheet());
    QShortcut plain(QKeySequence(u"K"_s), pane->hotkeySheet());
    QShortcut ofHost(QKeySequence(u"Ctrl+K"_s), view.get());
    ofHost.setContext(Qt::ApplicationShortcut);
    auto *ok = pane->hotkeySheet()->findChild<QPushButton *>(u"hotkeyOkButton"_s);
    ok->setText(u"&OK"_s);
    QSignalSpy clicks(ok, &QPushButton::clicked);
    int activations = 0;
    for (const QShortcut *shortcut : {&ofSheet, &plain, &ofHost})
        QObject::connect(shortcut, &QShortcut::activated, view.get(), [&] { ++activations; });

    press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(fieldText(), u"⌃K"_s);
    press(Qt::Key_K);
    press(Qt::Key_O, Qt::AltModifier);
    EXPECT_EQ(fieldText(), u"⌥O"_s);
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(fieldText(), u"⌃↩"_s);
    press(Qt::Key_Escape, Qt::ShiftModifier | Qt::MetaModifier);
    EXPECT_EQ(fieldText(), u"⇧⌘⎋"_s);
    EXPECT_EQ(clicks.count() + activations, 0);
    press(Qt::Key_Tab);
    press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(fieldText(), u"⌥A"_s) << "a button with the focus takes no more than the space bar";
    press(Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 1);
    press(Qt::Key_Return);
    EXPECT_EQ(clicks.count(), 2);
}

TEST_F(HotKeySheet, AKeyHeldDownIsTakenOnce)
{
    showPane();
    openSheet();
    QSignalSpy taken(pane->hotkeySheet(), &hotkey::LiWindow::keyAccepted);
    const auto hold = [this](Qt::Key key, Qt::KeyboardModifiers modifiers, bool isRepeated) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, QString(), isRepeated);
        QCoreApplication::sendEvent(pane->hotkeySheet()->focusWidget(), &event);
        EXPECT_TRUE(event.isAccepted());
    };
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab}) {
        hold(key, Qt::ControlModifier, false);
        hold(key, Qt::ControlModifier, true);
        hold(key, Qt::NoModifier, true); // Control is let go of first
    }
    EXPECT_EQ(taken.count(), 4);
    EXPECT_EQ(fieldText(), u"⌃⇥"_s);
    EXPECT_EQ(pane->hotkeySheet()->focusWidget(), pane->hotKeyField());
    EXPECT_TRUE(sheetsControl.isOpen(pane->hotkeySheet()));
}

TEST_F(HotKeySheet, NamesWhoHoldsTheCombinationAndTakesItAllTheSame)
{
    showPane();
    openSheet();
    press(Qt::Key_T, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_EQ(globalShortcuts.control().questions.size(), 1);
    const ports::KeyCombination asked = globalShortcuts.control().questions.first();
    EXPECT_EQ(asked.keyCode, 0x11);
    EXPECT_EQ(asked.menuModifiers, 14U);
    EXPECT_EQ(asked.character, u"T"_s);
    EXPECT_EQ(hint(), u"Control Option T"_s);
    globalShortcuts.control().answer({{u"Open %@"_s, u"Terminals"_s}});
    EXPECT_EQ(hint(), u"Control Option T\n“Open %@” of Terminals already has this combination."_s);
    press(Qt::Key_T, Qt::ControlModifier);
    globalShortcuts.control().answer({{u"Lock"_s, {}}});
    EXPECT_EQ(hint(), u"Control T\n“Lock” already has this combination."_s);
    press(Qt::Key_U, Qt::ControlModifier);
    globalShortcuts.control().answer(std::nullopt);
    EXPECT_EQ(hint(), u"Control U"_s);
    press(Qt::Key_V, Qt::ControlModifier);
    pressButton(u"hotkeyOkButton"_s);
    expectStored(0x09, 12);
    pane.reset();
    EXPECT_TRUE(globalShortcuts.control().answer({{u"Late"_s, {}}})) << "nobody hears it any more";
}

TEST_F(HotKeySheet, GrowsWithWhatItSays)
{
    showPane();
    openSheet();
    pane->hotkeySheet()->show();
    press(Qt::Key_T, Qt::ControlModifier);
    globalShortcuts.control().answer({{u"word "_s.repeated(100), {}}});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    EXPECT_GE(pane->hotkeyHint()->height(),
              pane->hotkeyHint()->heightForWidth(pane->hotkeyHint()->width()));
}

} // namespace tarnwell::tests
