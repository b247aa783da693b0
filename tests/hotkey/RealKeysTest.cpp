// The pane on a real X server, with layouts of setxkbmap and keys as a keyboard sends them.

#include "RealSheet.h"
#include "XKeys.h"
#include "desktop/TestBus.h"
#include "hotkey/LiTextField.h"
#include "hotkey/LiWindow.h"
#include "ports/KeyboardLayouts.h"
#include "support/RowName.h"

#include <QApplication>
#include <QLabel>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

// The server's key codes.
constexpr quint8 escapeKey = 9;
constexpr quint8 tabKey = 23;
constexpr quint8 keyQ = 24;
constexpr quint8 returnKey = 36;
constexpr quint8 controlKey = 37;
constexpr quint8 keyA = 38;
constexpr quint8 shiftKey = 50;
constexpr quint8 keyM = 58;
constexpr quint8 altKey = 64;
constexpr quint8 capsLockKey = 66;
constexpr quint8 numLockKey = 77;
constexpr quint8 pad7Key = 79;
constexpr quint8 superKey = 133;
constexpr quint8 menuKey = 135;

QString markOf(quint32 menuModifiers)
{
    return QString(menuModifiers & 1 ? u"⇧"_s : u""_s) + (menuModifiers & 4 ? u"⌃"_s : u""_s) +
           (menuModifiers & 2 ? u"⌥"_s : u""_s) + (menuModifiers & 8 ? u""_s : u"⌘"_s);
}

} // namespace

class RealKeys : public RealSheet
{
protected:
    void SetUp() override
    {
        useLayout({u"us"_s});
        RealSheet::SetUp();
    }
    void TearDown() override
    {
        RealSheet::TearDown();
        if (isOn(capsLockKey))
            keys.press({capsLockKey});
        if (isOn(numLockKey))
            keys.press({numLockKey});
    }

    static void useLayout(QStringList arguments)
    {
        arguments.prepend(u"-layout"_s);
        ASSERT_EQ(QProcess::execute(u"setxkbmap"_s, arguments), 0);
    }

    void pressAndWait(const QList<quint8> &codes)
    {
        waitForVerdictAfter([&] { keys.press(codes); });
    }
    void endSheetBy(quint8 code)
    {
        waitForEndAfter([&] { keys.press({code}); });
    }

    bool isOn(quint8 lockKey) const
    {
        return (keys.modifiers() & (lockKey == capsLockKey ? 0x02 : 0x10)) != 0;
    }

    XKeys keys;
};

// --- layouts and modifiers --------------------------------------------------------------------

struct LayoutRow
{
    const char *name;
    QStringList layout;
    quint8 code;     ///< the server's, of the key that is pressed
    int keyCode;     ///< the same as it is stored
    QString shown;   ///< what it types with Command
    int defaultCode; ///< of the key that types m
};

class LayoutsAndModifiers : public RealKeys, public testing::WithParamInterface<LayoutRow>
{};

TEST_P(LayoutsAndModifiers, AreStoredByPlaceAndShownAsTyped)
{
    const LayoutRow &row = GetParam();
    useLayout(row.layout);
    showPane();
    expectStored(row.defaultCode, 6);
    EXPECT_EQ(pane->menuAccHotKey()->text(), u"⌃⌥⌘M"_s);
    int keyCode = row.defaultCode;
    quint32 modifiers = 6;
    for (quint32 held = 0; held < 16; ++held) {
        SCOPED_TRACE(held);
        QList<quint8> codes;
        for (const auto &[bit, code] :
             {std::pair{1, shiftKey}, {2, altKey}, {4, controlKey}, {8, superKey}}) {
            if (held & quint32(bit))
                codes.append(code);
        }
        codes.append(row.code);
        openSheet();
        pressAndWait(codes);
        if (HasFatalFailure())
            return;
        if (held < 2) {
            EXPECT_EQ(pane->hotkeyHint()->text(), u"Add Control, Option or Command"_s);
            endSheetBy(escapeKey);
        } else {
            keyCode = row.keyCode;
            modifiers = held ^ 8;
            EXPECT_EQ(pane->hotKeyField()->text(), markOf(modifiers) + row.shown);
            endSheetBy(returnKey);
            EXPECT_EQ(pane->menuAccHotKey()->text(), markOf(modifiers) + row.shown);
        }
        expectStored(keyCode, modifiers);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, LayoutsAndModifiers,
    testing::Values(LayoutRow{"English", {u"us"_s}, keyM, 0x2E, u"M"_s, 0x2E},
                    LayoutRow{"German", {u"de"_s}, 29, 0x10, u"Z"_s, 0x2E},
                    LayoutRow{"French", {u"fr"_s}, keyQ, 0x0C, u"A"_s, 0x29},
                    LayoutRow{
                        "Dvorak", {u"us"_s, u"-variant"_s, u"dvorak"_s}, keyQ, 0x0C, u"'"_s, 0x2E},
                    LayoutRow{"Russian", {u"ru"_s}, keyQ, 0x0C, u"Q"_s, 0x2E},
                    LayoutRow{"Hebrew", {u"il"_s}, keyA, 0x00, u"A"_s, 0x2E},
                    LayoutRow{"Japanese", {u"jp"_s}, 34, 0x21, u"@"_s, 0x2E}),
    RowName());

// --- locks, groups, keypad --------------------------------------------------------------------

TEST_F(RealKeys, LocksAndGroupsChangeNothingButWhatCapsLockIs)
{
    showPane();
    openSheet();
    const auto recorded = [this] { return *pane->hotkeySheet()->hotKeyEvent(); };
    keys.press({numLockKey});
    pressAndWait({controlKey, keyA});
    EXPECT_EQ(recorded(), (hotkey::KeyEvent{0x00, 0x40000}));
    pressAndWait({pad7Key});
    EXPECT_EQ(recorded(), (hotkey::KeyEvent{0x59, 0x200000}));
    keys.press({numLockKey});
    pressAndWait({controlKey, pad7Key});
    EXPECT_EQ(recorded(), (hotkey::KeyEvent{0x59, 0x240000}));

    keys.press({capsLockKey});
    pressAndWait({keyA});
    EXPECT_EQ(recorded(), (hotkey::KeyEvent{0x00, 0x10000}));
    EXPECT_EQ(pane->hotKeyField()->text(), u"A"_s);
    endSheetBy(returnKey);
    expectStored(0x00, 8);
}

TEST_F(RealKeys, TheSecondGroupCountsByPlaceToo)
{
    useLayout({u"us,fr"_s});
    showPane();
    EXPECT_EQ(pane->menuAccHotKey()->text(), u"⌃⌥⌘M"_s);
    keys.lockGroup(1);
    ASSERT_TRUE(waitUntil([this] { return pane->menuAccHotKey()->text() != u"⌃⌥⌘M"_s; }));
    EXPECT_EQ(pane->menuAccHotKey()->text(), u"⌃⌥⌘,"_s);
    openSheet();
    pressAndWait({superKey, keyQ});
    EXPECT_EQ(pane->hotKeyField()->text(), u"⌘A"_s);
    keys.lockGroup(0);
    ASSERT_TRUE(waitUntil([this] { return pane->hotKeyField()->text() == u"⌘Q"_s; }));
    endSheetBy(returnKey);
    expectStored(0x0C, 0);
}

TEST_F(RealKeys, AnotherLayoutIsFollowedAtOnce)
{
    showPane();
    openSheet();
    useLayout({u"fr"_s});
    ASSERT_TRUE(waitUntil([this] { return pane->hotKeyField()->text() == u"⌃⌥⌘,"_s; }));
    EXPECT_EQ(pane->menuAccHotKey()->text(), u"⌃⌥⌘,"_s);
    expectStored(0x2E, 6);
}

TEST_F(RealKeys, SymbolsThatProgramsSendOnAnyKeyCount)
{
    showPane();
    openSheet();
    constexpr quint8 keyOfNoBoard = 248;
    for (const quint8 code : {escapeKey, keyOfNoBoard}) {
        SCOPED_TRACE(code);
        keys.giveSymbol(code, u'j');
        pressAndWait({controlKey, keyA});
        pressAndWait({controlKey, code});
        EXPECT_EQ(pane->hotKeyField()->text(), u"⌃J"_s);
    }
    endSheetBy(returnKey);
    expectStored(0x26, 12);
}

// --- the sheet by keyboard --------------------------------------------------------------------

TEST_F(RealKeys, TabWalksMenuIsTakenEscapeCancelsAlsoUnderCapsLock)
{
    showPane();
    openSheet();
    keys.press({capsLockKey});
    const auto focus = [this] { return QApplication::focusWidget(); };
    ASSERT_EQ(focus(), pane->hotKeyField());
    keys.press({tabKey});
    ASSERT_TRUE(waitUntil([&] { return focus() != pane->hotKeyField(); }));
    EXPECT_EQ(focus()->objectName(), u"hotkeyOkButton"_s);
    keys.press({shiftKey, tabKey});
    ASSERT_TRUE(waitUntil([&] { return focus() == pane->hotKeyField(); }));
    pressAndWait({controlKey, tabKey});
    EXPECT_EQ(pane->hotKeyField()->text(), u"⌃⇥"_s);
    pressAndWait({controlKey, menuKey});
    EXPECT_EQ(pane->hotKeyField()->text(), u"⌃"_s);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    endSheetBy(escapeKey);
    expectStored(0x2E, 6);
    EXPECT_EQ(pane->menuAccHotKey()->text(), u"⌃⌥⌘M"_s);
}

TEST_F(RealKeys, KeysOfTheDesktopAreTakenWhileTheSheetIsUp)
{
    constexpr quint16 superModifier = 0x40;
    XKeys otherProgram;
    otherProgram.grab(keyM, superModifier);
    showPane();
    openSheet();
    pressAndWait({superKey, keyM});
    EXPECT_EQ(pane->hotKeyField()->text(), u"⌘M"_s);
    endSheetBy(escapeKey);
    keys.press({superKey, keyM});
    // The first that it hears of comes only now.
    EXPECT_EQ(otherProgram.waitForGrabbedPresses(), 1);
}

TEST_F(RealKeys, ADomainThatCannotBeWrittenIsReported)
{
    showPane();
    QDir(home.path(u"~/Library/Preferences"_s)).removeRecursively();
    home.write(u"~/Library/Preferences"_s, "no folder");
    openSheet();
    pressAndWait({controlKey, keyA});
    endSheetBy(returnKey);
    EXPECT_TRUE(waitUntil([&] { return pane->storeProblem()->isVisible(); }));
}

} // namespace tarnwell::tests
