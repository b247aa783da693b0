#include "tutorial/Keys.h"

#include "fakes/FakeKeyboardLayouts.h"
#include "tutorial/Menus.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace tarnwell;
using namespace tarnwell::tutorial;
using namespace Qt::StringLiterals;

namespace {

constexpr quint32 scanCodeOfK = 37 + 8;
constexpr quint32 scanCodeOf5OnKeypad = 76 + 8;
constexpr quint32 scanCodeOf1 = 2 + 8;

struct PressRow
{
    const char *name;
    KeyPress press;
    quint16 keyCode;
    char16_t commandKey;
    quint32 modifiers;
    const char16_t *display;
    const char *sequence; ///< portable; what triggers it afterwards
};

void PrintTo(const PressRow &row, std::ostream *stream)
{
    *stream << row.name;
}

class PressTest : public testing::TestWithParam<PressRow>
{};

TEST_P(PressTest, becomesAShortcutAndBack)
{
    const PressRow &row = GetParam();
    fakes::FakeKeyboardLayouts layouts;
    const auto shortcut = shortcutOfKeyPress(row.press, layouts.port());
    ASSERT_TRUE(shortcut);
    EXPECT_EQ(shortcut->keyCode, row.keyCode);
    EXPECT_EQ(shortcut->commandKey, row.commandKey);
    EXPECT_EQ(shortcut->modifiers, row.modifiers);
    EXPECT_EQ(displayText(*shortcut, layouts.port()), QString::fromUtf16(row.display));
    EXPECT_EQ(keySequence(*shortcut, layouts.port()).toString(QKeySequence::PortableText),
              QLatin1String(row.sequence));
}

const PressRow pressRows[] = {
    {"command",
     {Qt::Key_K, Qt::MetaModifier, scanCodeOfK},
     0x28,
     u'K',
     commandBit,
     u"⌘K",
     "Meta+K"},
    {"all_modifiers",
     {Qt::Key_K, Qt::MetaModifier | Qt::AltModifier | Qt::ControlModifier | Qt::ShiftModifier,
      scanCodeOfK},
     0x28,
     u'K',
     allModifierBits,
     u"⇧⌃⌥⌘K",
     "Meta+Ctrl+Alt+Shift+K"},
    {"the_place_counts_not_the_character",
     {Qt::Key_Exclam, Qt::ControlModifier | Qt::ShiftModifier, scanCodeOf1},
     0x12,
     u'1',
     controlBit | shiftBit,
     u"⇧⌃1",
     "Ctrl+Shift+1"},
    {"without_a_scan_code",
     {Qt::Key_K, Qt::ControlModifier, 0},
     0x28,
     u'K',
     controlBit,
     u"⌃K",
     "Ctrl+K"},
    {"function_key", {Qt::Key_F6, Qt::NoModifier, 0}, 0x61, 0xF709, 0, u"F6", "F6"},
    {"arrow",
     {Qt::Key_Left, Qt::AltModifier | Qt::KeypadModifier, 105 + 8},
     0x7B,
     28,
     optionBit,
     u"⌥←",
     "Alt+Left"},
    {"keypad",
     {Qt::Key_5, Qt::ControlModifier | Qt::KeypadModifier, scanCodeOf5OnKeypad},
     0x57,
     u'5',
     controlBit,
     u"⌃5",
     "Ctrl+5"},
    {"space",
     {Qt::Key_Space, Qt::ControlModifier, 57 + 8},
     0x31,
     u' ',
     controlBit,
     u"⌃ ",
     "Ctrl+Space"},
};

constexpr auto nameOf = [](const auto &row) { return std::string(row.param.name); };
INSTANTIATE_TEST_SUITE_P(Keys, PressTest, testing::ValuesIn(pressRows), nameOf);

TEST(Keys, thatCanBeAShortcut)
{
    const auto can = [](int key, Qt::KeyboardModifiers modifiers) {
        return canBeShortcut({key, modifiers, 0});
    };
    EXPECT_TRUE(can(Qt::Key_K, Qt::ControlModifier));
    EXPECT_TRUE(can(Qt::Key_K, Qt::AltModifier));
    EXPECT_TRUE(can(Qt::Key_F5, Qt::NoModifier));
    EXPECT_TRUE(can(Qt::Key_F5, Qt::ShiftModifier));
    EXPECT_TRUE(can(Qt::Key_Down, Qt::MetaModifier));
    EXPECT_FALSE(can(Qt::Key_K, Qt::NoModifier));
    EXPECT_FALSE(can(Qt::Key_K, Qt::ShiftModifier));
    EXPECT_FALSE(can(Qt::Key_Down, Qt::NoModifier));
    EXPECT_FALSE(can(Qt::Key_Escape, Qt::NoModifier));
    EXPECT_FALSE(can(Qt::Key_Control, Qt::ControlModifier));
}

TEST(Keys, withoutAPlaceOnTheBoardAreNone)
{
    fakes::FakeKeyboardLayouts layouts;
    EXPECT_FALSE(
        shortcutOfKeyPress({Qt::Key_LaunchMail, Qt::ControlModifier, 163 + 8}, layouts.port()));
    EXPECT_FALSE(shortcutOfKeyPress({Qt::Key_unknown, Qt::ControlModifier, 0}, layouts.port()));
    layouts.useNoLayout();
    EXPECT_TRUE(keySequence({0x28, u'K', controlBit}, layouts.port()).isEmpty());
}

TEST(Keys, followTheLayout)
{
    fakes::FakeKeyboardLayouts layouts;
    layouts.useBoard(u"xkb:fr"_s, {{0x00, u"q"_s}, {0x0C, u"a"_s}, {0x12, u"&"_s}});
    // The application's own shortcut goes where the character is; a stored one keeps its place.
    EXPECT_EQ(shortcutOfCharacter(u'q', controlBit, layouts.port()).keyCode, 0x00);
    EXPECT_EQ(keySequence({0x0C, u'Q', controlBit}, layouts.port()),
              QKeySequence(Qt::CTRL | Qt::Key_A));
    EXPECT_EQ(keySequence({0x12, u'1', controlBit}, layouts.port()),
              QKeySequence(Qt::CTRL | Qt::Key_Ampersand));
}

TEST(Menus, haveNoTitleAndNoShortcutTwice)
{
    fakes::FakeKeyboardLayouts layouts;
    QSet<QString> titles;
    QSet<QString> shortcuts;
    const QList<Item> items = itemsOfMenus(layouts.port());
    qsizetype withShortcut = 0;
    for (const Item &item : items) {
        titles.insert(item.title);
        if (!item.original.isNone()) {
            ++withShortcut;
            const QString sequence = keySequence(item.original, layouts.port()).toString();
            EXPECT_FALSE(sequence.isEmpty()) << item.title.toStdString();
            shortcuts.insert(sequence);
        }
    }
    EXPECT_EQ(titles.size(), items.size());
    EXPECT_EQ(shortcuts.size(), withShortcut);
}

} // namespace
