#include "desktop/XkbKeyboardLayouts.h"
#include "desktop/XkbX11Keyboard.h"
#include "foundation/UnicodeKeyLayout.h"

#include <QProcess>
#include <QSignalSpy>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <cstdlib>

#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit

/// The keyboard of a real X server, which this program starts for itself.

namespace tarnwell::desktop {
namespace {

using namespace Qt::StringLiterals;

constexpr int patience = 60000; // milliseconds; only a failing test waits that long
constexpr quint16 capsLockModifier = 0x02;
constexpr quint16 altModifier = 0x08;
constexpr quint16 superModifier = 0x40;

class X11Keyboards : public testing::Test
{
protected:
    void SetUp() override
    {
        lock(0, 0);
        useLayout({u"us,ru"_s});
    }

    static void useLayout(QStringList arguments)
    {
        arguments.prepend(u"-layout"_s);
        EXPECT_EQ(QProcess::execute(u"setxkbmap"_s, arguments), 0);
    }

    /// Locks a group and modifiers, as their keys would.
    static void lock(quint8 group, quint8 modifiers)
    {
        xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
        const auto use = xcb_xkb_use_extension(connection, 1, 0);
        free(xcb_xkb_use_extension_reply(connection, use, nullptr));
        const auto change = xcb_xkb_latch_lock_state_checked(connection, XCB_XKB_ID_USE_CORE_KBD,
                                                             0xFF, modifiers, 1, group, 0, 0, 0);
        EXPECT_EQ(xcb_request_check(connection, change), nullptr);
        xcb_disconnect(connection);
    }

    /// What the key at the US board's Q types.
    static QString keyQ(const ports::KeyboardLayouts &layouts, quint32 modifiers)
    {
        quint32 state = 0;
        const auto source = layouts.currentKeyboardLayout().value_or(ports::InputSource());
        return foundation::UCKeyTranslate(source.unicodeKeyLayoutData, 0x0C,
                                          foundation::KeyAction::Display, modifiers,
                                          layouts.keyboardType(), 1, state, 255)
            .value_or(u"<nothing>"_s);
    }
};

TEST_F(X11Keyboards, FollowAnotherKeymap)
{
    const XkbKeyboardLayouts layouts;
    QSignalSpy changes(&layouts, &ports::KeyboardLayouts::currentKeyboardLayoutChanged);
    EXPECT_EQ(keyQ(layouts, 0), u"q"_s);
    useLayout({u"fr"_s});
    ASSERT_TRUE(changes.count() > 0 || changes.wait(patience));
    EXPECT_EQ(keyQ(layouts, 0), u"a"_s);
}

TEST_F(X11Keyboards, FollowAnotherGroup)
{
    const XkbKeyboardLayouts layouts;
    QSignalSpy changes(&layouts, &ports::KeyboardLayouts::currentKeyboardLayoutChanged);
    EXPECT_EQ(keyQ(layouts, 0), u"q"_s);
    lock(1, 0);
    ASSERT_TRUE(changes.count() > 0 || changes.wait(patience));
    EXPECT_EQ(keyQ(layouts, 0), u"й"_s);
    EXPECT_EQ(keyQ(layouts, 1), u"q"_s);
}

TEST_F(X11Keyboards, CatchUpWithoutWaitingForEvents)
{
    const XkbKeyboardLayouts layouts;
    layouts.catchUp();
    EXPECT_EQ(keyQ(layouts, 0), u"q"_s);
    lock(1, 0);
    layouts.catchUp();
    EXPECT_EQ(keyQ(layouts, 0), u"й"_s);
    lock(0, 0);
    layouts.catchUp();
    QSignalSpy changes(&layouts, &ports::KeyboardLayouts::currentKeyboardLayoutChanged);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(changes.count(), 1) << "whoever saw the other layout hears that it is gone";
}

TEST_F(X11Keyboards, StartWithTheGroupThatIsOn)
{
    lock(1, 0);
    const XkbKeyboardLayouts layouts;
    EXPECT_EQ(keyQ(layouts, 0), u"й"_s);
}

TEST_F(X11Keyboards, SayNothingWhenTheLayoutStays)
{
    const XkbKeyboardLayouts layouts;
    QSignalSpy changes(&layouts, &ports::KeyboardLayouts::currentKeyboardLayoutChanged);
    keyQ(layouts, 0);
    X11KeyboardWatcher watcher;
    QSignalSpy events(&watcher, &X11KeyboardWatcher::keyboardChanged);
    ASSERT_TRUE(watcher.start());
    useLayout({u"us,ru"_s});
    // The same events went to both; then a change that must be seen shows that they were read.
    ASSERT_TRUE(events.count() > 0 || events.wait(patience));
    useLayout({u"de"_s});
    ASSERT_TRUE(changes.count() > 0 || changes.wait(patience));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(layouts.currentKeyboardLayout()->identifier, u"xkb:German"_s);
}

TEST_F(X11Keyboards, TellTheModifiersThatAreHeld)
{
    const XkbKeyboardLayouts layouts;
    EXPECT_EQ(layouts.currentKeyModifiers(), 0U);
    lock(0, capsLockModifier);
    EXPECT_EQ(layouts.currentKeyModifiers(), 0x0400U);
    lock(0, altModifier | superModifier);
    EXPECT_EQ(layouts.currentKeyModifiers(), 0x0900U);
    lock(0, 0);
}

TEST(X11KeyboardWatcher, HearsNothingWithoutAServer)
{
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", "/nowhere:0");
    X11KeyboardWatcher watcher;
    EXPECT_FALSE(watcher.start());
    qputenv("DISPLAY", display);
}

} // namespace
} // namespace tarnwell::desktop
