#include "desktop/XkbDeadKeys.h"
#include "desktop/XkbKeyboardLayouts.h"
#include "desktop/XkbKeymap.h"
#include "desktop/XkbLayoutData.h"
#include "foundation/KeyCodes.h"
#include "foundation/UnicodeKeyLayout.h"

#include <QFile>
#include <QList>

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <iostream>

/// Turns every layout of the installed keyboard database into layout data and presses every key of
/// it twice: once as xkb would, modifier keys and all, and once through the layout data.

namespace tarnwell::desktop {
namespace {

using namespace Qt::StringLiterals;
using foundation::KeyPosition;

/// The layouts and variants that the database lists.
QList<XkbNames> listedLayouts()
{
    QList<XkbNames> listed;
    QFile file(u"/usr/share/X11/xkb/rules/evdev.lst"_s);
    if (!file.open(QIODevice::ReadOnly))
        return listed;
    QString section;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString &line : lines) {
        if (line.startsWith(u'!')) {
            section = line.sliced(1).trimmed();
            continue;
        }
        const QString name = line.trimmed().section(u' ', 0, 0);
        if (name.isEmpty() || name == "custom"_L1)
            continue;
        if (section == "layout"_L1)
            listed.append({{}, name, {}, {}});
        else if (section == "variant"_L1)
            listed.append(
                {{}, line.trimmed().section(u' ', 1).trimmed().section(u':', 0, 0), name, {}});
    }
    return listed;
}

// The keys as the evdev keycodes name them; a keymap may have put something else there.
constexpr xkb_keycode_t shiftKey = 50;
constexpr xkb_keycode_t capsLockKey = 66;
constexpr xkb_keycode_t numLockKey = 77;
constexpr xkb_keycode_t thirdLevelKey = 92;

constexpr quint32 stateCommand = 1;
constexpr quint32 stateShift = 2;
constexpr quint32 stateCapsLock = 4;
constexpr quint32 stateOption = 8;

/// A keyboard with some keys held, as xkb sees it.
class PressedKeyboard
{
public:
    PressedKeyboard(xkb_keymap *keymap, quint32 modifiers, bool keypad)
        : m_state(xkb_state_new(keymap))
    {
        if (modifiers & stateShift && !keypad)
            press(shiftKey, XKB_KEY_Shift_L);
        if (modifiers & stateCapsLock) {
            press(capsLockKey, XKB_KEY_Caps_Lock);
            xkb_state_update_key(m_state.get(), capsLockKey, XKB_KEY_UP);
        }
        if (modifiers & stateOption)
            press(thirdLevelKey, XKB_KEY_ISO_Level3_Shift);
        if (keypad)
            press(numLockKey, XKB_KEY_Num_Lock);
    }

    /// Whether every key that was pressed is the one that it was meant to be.
    bool isAsMeant() const { return m_isAsMeant; }

    QString typed(quint16 evdevCode) const
    {
        char buffer[64] = {};
        xkb_state_key_get_utf8(m_state.get(), evdevCode + 8U, buffer, sizeof buffer);
        return QString::fromUtf8(buffer);
    }
    xkb_keysym_t keysym(quint16 evdevCode) const
    {
        return xkb_state_key_get_one_sym(m_state.get(), evdevCode + 8U);
    }

private:
    void press(xkb_keycode_t key, xkb_keysym_t meant)
    {
        m_isAsMeant = m_isAsMeant && xkb_state_key_get_one_sym(m_state.get(), key) == meant;
        xkb_state_update_key(m_state.get(), key, XKB_KEY_DOWN);
    }

    XkbStatePointer m_state;
    bool m_isAsMeant = true;
};

/// Characters that no key of the layout data types: those of Clear, Linefeed and the like.
bool isStray(const QString &text)
{
    return text.size() == 1 && text.front() < u' ' && !u"\r\t\b\x1B"_s.contains(text.front());
}

class DatabaseCheck
{
public:
    DatabaseCheck(xkb_keymap *keymap, const QString &name)
        : m_keymap(keymap)
        , m_name(name)
        , m_data(inputSourceFromKeymap(keymap, 0, name).unicodeKeyLayoutData)
    {}

    /// Compares all tables that xkb knows; returns how many of them could be compared.
    int compareTables()
    {
        int compared = 0;
        for (quint32 modifiers = 0; modifiers <= 14; modifiers += 2) {
            const PressedKeyboard letters(m_keymap, modifiers, false);
            const PressedKeyboard keypad(m_keymap, modifiers, true);
            if (!letters.isAsMeant() || !keypad.isAsMeant())
                continue;
            ++compared;
            for (const KeyPosition &key : foundation::keyPositions())
                compareKey(key, key.flags & foundation::keyFlagNumericPad ? keypad : letters,
                           modifiers);
        }
        return compared;
    }

    /// Every key that has a character on the US board can name a shortcut.
    void checkCommand()
    {
        bool isHotKeyFound = false;
        for (const KeyPosition &key : foundation::keyPositions()) {
            if (key.usCharacter == 0)
                continue;
            const QString text = translate(key, stateCommand, foundation::keyTranslateNoDeadKeys);
            for (quint32 modifiers = 0; modifiers < 16 && !isHotKeyFound; ++modifiers)
                isHotKeyFound = translate(key, modifiers, 0) == "m"_L1;
            for (const char32_t character : text.toStdU32String()) {
                const QChar::Script script = QChar::script(character);
                if (script != QChar::Script_Latin && script != QChar::Script_Common &&
                    script != QChar::Script_Inherited)
                    fail(key, stateCommand, text, u"a Latin character"_s);
            }
        }
        // The default hot key is found by the letter m, typed with any modifiers.
        if (!isHotKeyFound)
            ADD_FAILURE() << qPrintable(m_name) << ": no key types m";
    }

    int failures() const { return m_failures; }

private:
    QString translate(const KeyPosition &key, quint32 modifiers, quint32 options)
    {
        m_state = 0;
        return foundation::UCKeyTranslate(m_data, key.virtualKeyCode, foundation::KeyAction::Down,
                                          modifiers, 40, options, m_state, 255)
            .value_or(u"<nothing>"_s);
    }

    void compareKey(const KeyPosition &key, const PressedKeyboard &keyboard, quint32 modifiers)
    {
        const QString typed = translate(key, modifiers, 0);
        if (const XkbDeadKey *deadKey = xkbDeadKey(keyboard.keysym(key.evdevCode))) {
            const bool isDead = typed.isEmpty() && m_state != 0;
            const QString alone = translate(key, modifiers, foundation::keyTranslateNoDeadKeys);
            if (!isDead || alone != spacingText(*deadKey))
                fail(key, modifiers, alone, spacingText(*deadKey));
            return;
        }
        const QString expected = keyboard.typed(key.evdevCode);
        if (typed != (isStray(expected) ? QString() : expected))
            fail(key, modifiers, typed, expected);
    }

    void fail(const KeyPosition &key, quint32 modifiers, const QString &typed,
              const QString &expected)
    {
        if (++m_failures <= 3)
            ADD_FAILURE() << qPrintable(m_name) << ": key " << key.virtualKeyCode
                          << " with modifiers " << modifiers << " gives \"" << qPrintable(typed)
                          << "\", not \"" << qPrintable(expected) << '"';
    }

    xkb_keymap *m_keymap;
    QString m_name;
    QByteArray m_data;
    quint32 m_state = 0;
    int m_failures = 0;
};

TEST(KeyboardDatabase, IsTranslatedKeyByKey)
{
    const QList<XkbNames> listed = listedLayouts();
    ASSERT_GT(listed.size(), 300) << "Is the keyboard database installed?";
    const XkbContextPointer context = makeXkbContext();
    int refused = 0;
    int tables = 0;
    int failed = 0;
    int unlikeABoard = 0;
    for (const XkbNames &names : listed) {
        const XkbKeymapPointer keymap = compileKeymap(context.get(), names);
        if (keymap == nullptr) {
            ++refused;
            continue;
        }
        unlikeABoard += isKeymapOfBoard(keymap.get()) ? 0 : 1;
        DatabaseCheck check(keymap.get(), layoutName(names, 0));
        tables += check.compareTables();
        check.checkCommand();
        if (check.failures() > 0 && ++failed == 10)
            break;
    }
    std::cout << listed.size() << " layouts, " << refused << " refused, " << tables
              << " tables compared\n";
    EXPECT_LE(refused, 5);
    // Braille has six keys, Ogham few letters, and one is for use beside another layout.
    EXPECT_LE(unlikeABoard, 7);
    // A handful of layouts have something else where the modifier keys are.
    EXPECT_GT(tables, (listed.size() - refused) * 8 * 9 / 10);
}

} // namespace
} // namespace tarnwell::desktop
