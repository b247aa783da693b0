#include "foundation/KeyCodes.h"
#include "support/RowName.h"

#include <QChar>

#include <gtest/gtest.h>

#include <set>

namespace tarnwell::foundation {
namespace {

using tests::RowName;

struct CodeRow
{
    const char *name;
    quint16 evdev;
    quint16 virtualKeyCode;
    quint32 flags;
};

class KeyCodes : public testing::TestWithParam<CodeRow>
{};

TEST_P(KeyCodes, MeetByPosition)
{
    const CodeRow &row = GetParam();
    ASSERT_EQ(virtualKeyCodeForEvdev(row.evdev), row.virtualKeyCode);
    const KeyPosition *key = keyPosition(row.virtualKeyCode);
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->flags, row.flags);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, KeyCodes,
    testing::Values(CodeRow{"A", 30, 0x00, 0}, CodeRow{"B", 48, 0x0B, 0}, CodeRow{"M", 50, 0x2E, 0},
                    CodeRow{"Five", 6, 0x17, 0}, CodeRow{"Six", 7, 0x16, 0},
                    CodeRow{"LeftOfOne", 41, 0x32, 0}, CodeRow{"LeftOfZ", 86, 0x0A, 0},
                    CodeRow{"Return", 28, 0x24, 0}, CodeRow{"Enter", 96, 0x4C, 0x200000},
                    CodeRow{"KeypadSeven", 71, 0x59, 0x200000},
                    CodeRow{"NumLock", 69, 0x47, 0x200000}, CodeRow{"F1", 59, 0x7A, 0x800000},
                    CodeRow{"F10", 68, 0x6D, 0x800000}, CodeRow{"PrintScreen", 99, 0x69, 0x800000},
                    CodeRow{"F13", 183, 0x69, 0x800000}, CodeRow{"Insert", 110, 0x72, 0xC00000},
                    CodeRow{"Help", 138, 0x72, 0xC00000}, CodeRow{"Left", 105, 0x7B, 0xA00000},
                    CodeRow{"Up", 103, 0x7E, 0xA00000}, CodeRow{"Home", 102, 0x73, 0x800000},
                    CodeRow{"ForwardDelete", 111, 0x75, 0x800000},
                    CodeRow{"AltIsOption", 56, 0x3A, 0}, CodeRow{"SuperIsCommand", 125, 0x37, 0},
                    CodeRow{"Yen", 124, 0x5D, 0}, CodeRow{"Underscore", 89, 0x5E, 0},
                    CodeRow{"Eisu", 94, 0x66, 0}, CodeRow{"Kana", 92, 0x68, 0}),
    RowName());

TEST(KeyCodes, AreEachOneKey)
{
    std::set<quint16> codes;
    for (const KeyPosition &key : keyPositions()) {
        EXPECT_LT(key.virtualKeyCode, virtualKeyCodeCount);
        EXPECT_TRUE(codes.insert(key.virtualKeyCode).second) << "code " << key.virtualKeyCode;
        EXPECT_EQ(virtualKeyCodeForEvdev(key.evdevCode), key.virtualKeyCode)
            << "evdev " << key.evdevCode;
    }
}

TEST(KeyCodes, AreUnknownForOtherKeys)
{
    EXPECT_EQ(virtualKeyCodeForEvdev(0), std::nullopt);
    EXPECT_EQ(virtualKeyCodeForEvdev(140), std::nullopt); // a calculator key
    EXPECT_EQ(virtualKeyCodeForEvdev(0xFFFFFFFF), std::nullopt);
    EXPECT_EQ(keyPosition(0x34), nullptr);
    EXPECT_EQ(keyPosition(0xFFFF), nullptr);
}

TEST(KeyCodes, CoverEveryCharacterOfTheUsBoard)
{
    std::set<char16_t> characters;
    for (const KeyPosition &key : keyPositions()) {
        characters.insert(key.usCharacter);
        characters.insert(key.usShifted);
    }
    for (char16_t character = u' '; character < 0x7F; ++character)
        EXPECT_TRUE(characters.contains(character)) << "character " << int{character};
}

} // namespace
} // namespace tarnwell::foundation
