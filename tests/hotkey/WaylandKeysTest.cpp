// The pane under a real Wayland compositor, with keys as a keyboard sends them.

#include "WaylandKeys.h"
#include "RealSheet.h"
#include "desktop/TestBus.h"
#include "foundation/KeyCodes.h"
#include "hotkey/LiTextField.h"
#include "hotkey/LiWindow.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

// The kernel's key codes.
constexpr quint16 escapeKey = 1;
constexpr quint16 returnKey = 28;
constexpr quint16 controlKey = 29;
constexpr quint16 keyM = 50;
constexpr quint16 superKey = 125;

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

} // namespace tarnwell::tests
