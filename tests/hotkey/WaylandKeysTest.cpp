// The pane under a real Wayland compositor, with keys as a keyboard sends them.

#include "WaylandKeys.h"
#include "RealSheet.h"
#include "desktop/FilePreferences.h"
#include "desktop/SystemClock.h"
#include "desktop/TestBus.h"
#include "desktop/XkbKeyboardLayouts.h"
#include "fakes/FakeNotificationCenter.h"
#include "foundation/KeyCodes.h"
#include "hotkey/LiTextField.h"
#include "hotkey/LiWindow.h"
#include "ports/KeyboardLayouts.h"
#include "tutorial/ShortcutStore.h"
#include "tutorial/TutorialWindow.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QProcess>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

// The kernel's key codes.
constexpr quint16 escapeKey = 1;
constexpr quint16 keyY = 21; // of the English board
constexpr quint16 returnKey = 28;
constexpr quint16 controlKey = 29;
constexpr quint16 keyF = 33;
constexpr quint16 keyM = 50;
constexpr quint16 altKey = 56;
constexpr quint16 superKey = 125;

/// What a program that sends the letter j makes up for it: the first key is the board's Escape key.
constexpr auto keymapOfJ = R"(xkb_keymap {
    xkb_keycodes { minimum = 8; maximum = 255; <J> = 9; <LCTL> = 37; };
    xkb_types { include "complete" };
    xkb_compatibility { include "complete" };
    xkb_symbols {
        key <J> { [ j ] };
        key <LCTL> { [ Control_L ] };
        modifier_map Control { <LCTL> };
    };
};)";

/// Asks the compositor, or tells it something.
QByteArray compositor(const QStringList &arguments)
{
    QProcess process;
    process.start(u"swaymsg"_s, arguments);
    process.waitForFinished();
    return process.readAllStandardOutput();
}

QString shownWorkspace()
{
    const QJsonArray all =
        QJsonDocument::fromJson(compositor({u"-t"_s, u"get_workspaces"_s, u"-r"_s})).array();
    for (const QJsonValue &workspace : all) {
        if (workspace[u"focused"_s].toBool())
            return workspace[u"name"_s].toString();
    }
    return {};
}

} // namespace

class WaylandSheet : public RealSheet
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(keys.isPluggedIn());
        RealSheet::SetUp();
        showPane();
        openSheet();
    }

    WaylandKeys keys;
};

TEST_F(WaylandSheet, KeysOfTheDesktopAreTakenWhileItIsUp)
{
    compositor({u"bindsym"_s, u"Mod4+m"_s, u"workspace"_s, u"taken"_s});
    waitForVerdictAfter([this] { keys.press({superKey, keyM}); });
    EXPECT_EQ(pane->hotKeyField()->text(), u"⌘M"_s);
    EXPECT_EQ(shownWorkspace(), u"1"_s);
    waitForEndAfter([this] { keys.press({returnKey}); });
    expectStored(0x2E, 0);
    keys.press({superKey, keyM});
    EXPECT_EQ(shownWorkspace(), u"taken"_s) << "the compositor has its keys again";

    // Back, and once more: a second inhibition of a window that still has one would end the
    // program.
    compositor({u"workspace"_s, u"1"_s});
    ASSERT_TRUE(waitUntil([this] { return QApplication::activeWindow() == view.get(); }));
    openSheet();
    waitForVerdictAfter([this] { keys.press({superKey, keyM}); });
    compositor({u"workspace"_s, u"taken"_s});
    ASSERT_TRUE(waitUntil([this] { return QApplication::activeWindow() != pane->hotkeySheet(); }));
    compositor({u"workspace"_s, u"1"_s});
    ASSERT_TRUE(waitUntil([this] { return QApplication::activeWindow() == pane->hotkeySheet(); }));
    waitForVerdictAfter([this] { keys.press({superKey, keyM}); });
    EXPECT_EQ(shownWorkspace(), u"1"_s);
    waitForEndAfter([this] { keys.press({escapeKey}); });
}

TEST_F(WaylandSheet, EveryKeyOfTheBoardHasItsPlace)
{
    for (const foundation::KeyPosition &position : foundation::keyPositions()) {
        const bool isModifier = position.virtualKeyCode >= 0x36 && position.virtualKeyCode <= 0x3F;
        constexpr quint16 numLock = 69;
        if (isModifier || position.evdevCode == numLock)
            continue;
        SCOPED_TRACE(position.evdevCode);
        waitForVerdictAfter([&] { keys.press({controlKey, position.evdevCode}); });
        const auto event = pane->hotkeySheet()->hotKeyEvent();
        ASSERT_TRUE(event);
        EXPECT_EQ(event->keyCode, position.virtualKeyCode);
        EXPECT_EQ(event->modifierFlags, 0x40000 | position.flags);
    }
    waitForEndAfter([this] { keys.press({escapeKey}); });
}

TEST_F(WaylandSheet, TheGroupThatTypesIsShown)
{
    keys.useKeymap(WaylandKeys::keymapOf("us,de"));
    keys.lockGroup(1);
    waitForVerdictAfter([this] { keys.press({controlKey, altKey, keyY}); });
    EXPECT_EQ(pane->hotKeyField()->text(), u"⌃⌥Z"_s);
    keys.lockGroup(0);
    EXPECT_TRUE(waitUntil([this] { return pane->hotKeyField()->text() == u"⌃⌥Y"_s; }));
    waitForEndAfter([this] { keys.press({returnKey}); });
    expectStored(0x10, 14);
}

TEST_F(WaylandSheet, KeysOfAKeymapOfTheirOwnAreTakenBySymbol)
{
    // A new keyboard has the compositor's own keymap for a moment.
    WaylandKeys program(keymapOfJ);
    keys.useKeymap(WaylandKeys::keymapOf("us,de"));
    keys.lockGroup(1);
    waitForVerdictAfter([this] { keys.press({controlKey, keyY}); });
    QCoreApplication::sendPostedEvents(); // the change to this layout, which is told later
    QSignalSpy changes(&desktop->ports().keyboardLayouts,
                       &ports::KeyboardLayouts::currentKeyboardLayoutChanged);
    waitForVerdictAfter([&program] { program.press({controlKey, escapeKey}); });
    EXPECT_EQ(pane->hotKeyField()->text(), u"⌃J"_s);
    EXPECT_EQ(pane->hotkeySheet()->hotKeyEvent()->keyCode, 0x26);
    waitForVerdictAfter([this] { keys.press({controlKey, keyY}); });
    EXPECT_EQ(pane->hotKeyField()->text(), u"⌃Z"_s);
    EXPECT_EQ(changes.count(), 0);
    waitForEndAfter([this] { keys.press({escapeKey}); });
}

TEST(WaylandSeat, MayGetItsKeyboardLater)
{
    const desktop::XkbKeyboardLayouts layouts;
    QSignalSpy changes(&layouts, &ports::KeyboardLayouts::currentKeyboardLayoutChanged);
    const auto name = [&layouts] { return layouts.currentKeyboardLayout()->identifier; };
    EXPECT_NE(name(), u"xkb:French"_s);
    const WaylandKeys keys(WaylandKeys::keymapOf("fr"));
    EXPECT_TRUE(waitUntil([&changes] { return changes.count() > 0; }));
    EXPECT_EQ(name(), u"xkb:French"_s);
    EXPECT_EQ(desktop::XkbKeyboardLayouts().currentKeyboardLayout()->identifier, u"xkb:French"_s);
}

TEST(WaylandTutorial, AShortcutFiresInTheGroupThatItWasRecordedIn)
{
    WaylandKeys keys(WaylandKeys::keymapOf("us,de"));
    keys.lockGroup(1);
    const TemporaryHome home;
    const desktop::SystemClock clock;
    fakes::FakeNotificationCenter notifications;
    const desktop::XkbKeyboardLayouts layouts;
    tutorial::ShortcutStore store(
        [&] { return std::make_unique<desktop::FilePreferences>(home.home(), clock); },
        notifications, u"com.varnit.tarnwell.tutorial"_s,
        [](auto &, const QString &sitting) { return sitting; });
    QStringList events;
    tutorial::TutorialWindow window(
        store, layouts, [&events](const QStringList &event) { events += event.join(u'|'); });
    QObject::connect(&layouts, &ports::KeyboardLayouts::currentKeyboardLayoutChanged, &window,
                     [&window] { window.useCurrentLayout(); });
    window.show();
    ASSERT_TRUE(waitUntil([&window] { return QApplication::activeWindow() == &window; }));
    const auto waitFor = [&events](const QString &event) {
        return waitUntil([&events, &event] { return events.contains(event); });
    };
    keys.press({altKey, keyF});
    ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    keys.press({controlKey, altKey, keyY});
    EXPECT_TRUE(waitFor(u"assigned|New Page|⌃⌥Z"_s)) << qPrintable(events.join(u'\n'));
    keys.press({escapeKey});
    ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() == nullptr; }));
    keys.press({controlKey, altKey, keyY});
    EXPECT_TRUE(waitFor(u"triggered|New Page"_s)) << qPrintable(events.join(u'\n'));
}

} // namespace tarnwell::tests
