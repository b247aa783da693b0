#include "foundation/DesktopEntry.h"
#include "foundation/Bundle.h"
#include "support/RowName.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace tarnwell::foundation {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;
using tests::TemporaryHome;

struct ParseRow
{
    const char *name;
    QByteArray bytes;
    bool isEntry;
    QString expectedName;
};

class DesktopEntryParsing : public testing::TestWithParam<ParseRow>
{};

TEST_P(DesktopEntryParsing, ReadsTheEntrysOwnGroup)
{
    const ParseRow &row = GetParam();
    const auto entry = DesktopEntry::parse(row.bytes);
    ASSERT_EQ(entry.has_value(), row.isEntry);
    const QStringList languages{u"de-DE"_s, u"de"_s};
    EXPECT_EQ(entry ? entry->localizedValue(u"Name"_s, languages) : QString(), row.expectedName);
}

const ParseRow parseRows[] = {
    {"Plain", "[Desktop Entry]\nType=Application\nName=Pens\n", true, u"Pens"_s},
    {"CommentsAndBlanks", "# hello\r\n\r\n[Desktop Entry]\r\nType = Application\r\nName = Pens\r\n",
     true, u"Pens"_s},
    {"Language", "[Desktop Entry]\nType=Application\nName=Pens\nName[de]=Stifte\n", true,
     u"Stifte"_s},
    {"LanguageOfACountry",
     "[Desktop Entry]\nType=Application\nName[de]=Stifte\nName[de_DE]=Griffel\nName=Pens\n", true,
     u"Griffel"_s},
    {"OtherLanguage", "[Desktop Entry]\nType=Application\nName=Pens\nName[fr]=Stylos\n", true,
     u"Pens"_s},
    {"Escapes", "[Desktop Entry]\nType=Application\nName=\\sA\\\\n\\tB\\\n", true, u" A\\n\tB\\"_s},
    {"OtherGroupsDoNotCount",
     "[Desktop Entry]\nType=Application\nName=Pens\n[Desktop Action new]\nName=New\n", true,
     u"Pens"_s},
    {"NoName", "[Desktop Entry]\nType=Application\n", true, QString()},
    {"LinesWithoutSense", "[Desktop Entry]\n=\nName\n=x\nType=Application\nName=P\0s\n"_ba, true,
     u"P\0s"_s},
    {"WrongFirstGroup", "[Other]\n[Desktop Entry]\nType=Application\n", false, {}},
    {"Link", "[Desktop Entry]\nType=Link\nName=Pens\n", false, {}},
    {"NoGroup", "Type=Application\nName=Pens\n", false, {}},
    {"Empty", {}, false, {}},
};
INSTANTIATE_TEST_SUITE_P(Rows, DesktopEntryParsing, testing::ValuesIn(parseRows), RowName());

TEST(DesktopEntry, IsIdentifiedByItsPlaceBelowTheApplicationsFolder)
{
    EXPECT_EQ(
        DesktopEntry::identifierForPath(u"/usr/share/applications/org.example.Pens.desktop"_s),
        u"org.example.Pens"_s);
    EXPECT_EQ(DesktopEntry::identifierForPath(u"/usr/share/applications/kde4/pens.desktop"_s),
              u"kde4-pens"_s);
    EXPECT_EQ(DesktopEntry::identifierForPath(u"/home/a/Desktop/pens.desktop"_s), u"pens"_s);
}

struct CommandRow
{
    const char *name;
    QByteArray exec;
    QString document;
    QStringList expected;
};

class DesktopCommands : public testing::TestWithParam<CommandRow>
{};

TEST_P(DesktopCommands, OpenTheDocument)
{
    const CommandRow &row = GetParam();
    const auto entry = DesktopEntry::parse("[Desktop Entry]\nType=Application\nName=Fine Pens\n"
                                           "Icon=pens\nExec=" +
                                           row.exec + '\n');
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->command(u"/e.desktop"_s, row.document), row.expected);
}

const CommandRow commandRows[] = {
    {"File", "pens %f", u"/a b.txt"_s, {u"pens"_s, u"/a b.txt"_s}},
    {"FileLeftOut", "pens --new %F", {}, {u"pens"_s, u"--new"_s}},
    {"Url", "pens %U", u"/a b.txt"_s, {u"pens"_s, u"file:///a%20b.txt"_s}},
    {"NoCode", "pens -x", u"/a.txt"_s, {u"pens"_s, u"-x"_s, u"/a.txt"_s}},
    {"Quotation", R"("my pens" "a \\"b\\" \\$c" %f)", {}, {u"my pens"_s, u"a \"b\" $c"_s}},
    {"EmptyWord", R"(pens "")", {}, {u"pens"_s, QString()}},
    {"IconNamePlace",
     "pens %i %c %k",
     {},
     {u"pens"_s, u"--icon"_s, u"pens"_s, u"Fine Pens"_s, u"/e.desktop"_s}},
    {"Percent", "pens 100%% %d%", {}, {u"pens"_s, u"100%"_s, u"%"_s}},
    {"OpenQuotation", "pens \"a", u"/a.txt"_s, {}},
    {"Nothing", "  ", u"/a.txt"_s, {}},
};
INSTANTIATE_TEST_SUITE_P(Rows, DesktopCommands, testing::ValuesIn(commandRows), RowName());

TEST(DesktopEntry, AnswersAsABundle)
{
    const TemporaryHome home;
    const QString path = home.write(u"/usr/share/applications/org.example.Pens.desktop"_s,
                                    "[Desktop Entry]\nType=Application\nName=Fine Pens\n"
                                    "Exec=sh %f\nTryExec=sh\nIcon=pens\n");
    const auto bundle = Bundle::open(path);
    ASSERT_TRUE(bundle);
    EXPECT_TRUE(bundle->isDesktopEntry());
    EXPECT_EQ(bundle->identifier(), u"org.example.Pens"_s);
    EXPECT_EQ(bundle->displayName(), u"Fine Pens"_s);
    EXPECT_EQ(bundle->infoValue(u"CFBundleIconFile"_s), plist::Value(u"pens"_s));
    EXPECT_TRUE(bundle->infoValue(u"CFBundleVersion"_s).isNull());
    EXPECT_TRUE(bundle->executablePath().endsWith("/sh"_L1));
    EXPECT_EQ(bundle->resourcePath(u"a"_s, u"txt"_s), QString());
}

TEST(DesktopEntry, HasNoExecutableWhenItsProgramIsMissing)
{
    const auto entry = DesktopEntry::parse("[Desktop Entry]\nType=Application\nExec=sh\n"
                                           "TryExec=/no/such/program\n");
    EXPECT_EQ(entry->executablePath(), QString());
}

TEST(DesktopEntry, IsNoBundleWhenItIsMarkedDeletedOrHasAnotherEnding)
{
    const TemporaryHome home;
    const QByteArray entry = "[Desktop Entry]\nType=Application\nName=Pens\n";
    EXPECT_FALSE(Bundle::open(home.write(u"/a.desktop"_s, entry + "Hidden=true\n")));
    EXPECT_FALSE(Bundle::open(home.write(u"/a.txt"_s, entry)));
    EXPECT_TRUE(Bundle::open(home.write(u"/b.desktop"_s, entry)));
}

} // namespace
} // namespace tarnwell::foundation
