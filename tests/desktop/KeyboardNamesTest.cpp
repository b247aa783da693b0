#include "desktop/XkbKeyboardLayouts.h"
#include "desktop/XkbNamesSources.h"
#include "support/RowName.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace tarnwell::desktop {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;

// --- the configuration file -------------------------------------------------------------------

struct FileRow
{
    const char *name;
    QByteArray text;
    std::optional<XkbNames> names;
};

class KeyboardFile : public testing::TestWithParam<FileRow>
{};

TEST_P(KeyboardFile, IsParsed)
{
    EXPECT_EQ(parseKeyboardFile(GetParam().text), GetParam().names);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, KeyboardFile,
    testing::Values(
        FileRow{"Usual",
                "# KEYBOARD CONFIGURATION FILE\n\nXKBMODEL=\"pc105\"\nXKBLAYOUT=\"de\"\n"
                "XKBVARIANT=\"nodeadkeys\"\nXKBOPTIONS=\"\"\n\nBACKSPACE=\"guess\"\n",
                XkbNames{u"pc105"_s, u"de"_s, u"nodeadkeys"_s, {}}},
        FileRow{"Several", "XKBLAYOUT=us,ru\nXKBVARIANT=,phonetic\nXKBOPTIONS='grp:toggle'",
                XkbNames{{}, u"us,ru"_s, u",phonetic"_s, u"grp:toggle"_s}},
        FileRow{"Spaces", "  XKBLAYOUT=fr   # French\n", XkbNames{{}, u"fr"_s, {}, {}}},
        FileRow{"CommentAfterQuotes", "XKBLAYOUT=\"fr\" # \"be\"\n", XkbNames{{}, u"fr"_s, {}, {}}},
        FileRow{"LastOneCounts", "XKBLAYOUT=fr\nXKBLAYOUT=be\n", XkbNames{{}, u"be"_s, {}, {}}},
        FileRow{"CommentedOut", "#XKBLAYOUT=fr\n", std::nullopt},
        FileRow{"OnlyAModel", "XKBMODEL=pc105\n", std::nullopt},
        FileRow{"EmptyLayout", "XKBLAYOUT=\"\"\n", std::nullopt},
        FileRow{"OpenQuote", "XKBLAYOUT=\"\n", std::nullopt},
        FileRow{"Noise", QByteArray("\0=\xFF\"=\n==", 9), std::nullopt},
        FileRow{"Empty", "", std::nullopt}),
    RowName());

TEST(LocaleProperties, AreNames)
{
    EXPECT_EQ(namesFromLocaleProperties({{u"X11Layout"_s, u"ch"_s},
                                         {u"X11Variant"_s, u"fr"_s},
                                         {u"X11Model"_s, u"pc105"_s},
                                         {u"X11Options"_s, u"caps:none"_s},
                                         {u"Locale"_s, QStringList{u"LANG=C"_s}}}),
              (XkbNames{u"pc105"_s, u"ch"_s, u"fr"_s, u"caps:none"_s}));
    // A machine that was never told its keyboard.
    EXPECT_EQ(namesFromLocaleProperties({{u"X11Layout"_s, u""_s}}), std::nullopt);
    EXPECT_EQ(namesFromLocaleProperties({}), std::nullopt);
    EXPECT_EQ(namesFromLocaleProperties({{u"X11Layout"_s, QVariantMap()}}), std::nullopt);
}

// --- the port, on a machine without an X server -----------------------------------------------

struct MachineRow
{
    const char *name;
    std::optional<QByteArray> file;
    QString identifier;
};

class KeyboardOfAMachine : public testing::TestWithParam<MachineRow>
{};

TEST_P(KeyboardOfAMachine, IsTheConfiguredOneOrUs)
{
    const tests::TemporaryHome home;
    if (GetParam().file)
        home.write(u"/etc/default/keyboard"_s, *GetParam().file);
    const XkbKeyboardLayouts layouts(home.root());
    const auto source = layouts.currentKeyboardLayout();
    ASSERT_TRUE(source);
    EXPECT_EQ(source->identifier, GetParam().identifier);
    EXPECT_FALSE(source->unicodeKeyLayoutData.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Files, KeyboardOfAMachine,
    testing::Values(MachineRow{"None", std::nullopt, u"xkb:us"_s},
                    MachineRow{"Dvorak", "XKBLAYOUT=us\nXKBVARIANT=dvorak\n", u"xkb:us(dvorak)"_s},
                    MachineRow{"FirstOfSeveral", "XKBLAYOUT=gr,us\n", u"xkb:gr"_s},
                    MachineRow{"Unknown", "XKBLAYOUT=atlantis\n", u"xkb:us"_s},
                    MachineRow{"Hostile", "XKBLAYOUT=../../../etc/passwd\n", u"xkb:us"_s},
                    MachineRow{"NoNames", "XKBLAYOUT=\n", u"xkb:us"_s}),
    RowName());

TEST(KeyboardOfAMachine, IsReadOnceAndAtTheFirstQuestion)
{
    const tests::TemporaryHome home;
    const XkbKeyboardLayouts layouts(home.root());
    home.write(u"/etc/default/keyboard"_s, "XKBLAYOUT=de\n");
    EXPECT_EQ(layouts.currentKeyboardLayout()->identifier, u"xkb:de"_s);
    home.write(u"/etc/default/keyboard"_s, "XKBLAYOUT=fr\n");
    EXPECT_EQ(layouts.currentKeyboardLayout()->identifier, u"xkb:de"_s);
    EXPECT_EQ(layouts.currentKeyModifiers(), 0U);
}

} // namespace
} // namespace tarnwell::desktop
