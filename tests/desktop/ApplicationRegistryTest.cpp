#include "desktop/ApplicationRegistry.h"
#include "desktop/ApplicationFolder.h"
#include "desktop/LocalFileManager.h"
#include "support/ArgumentReport.h"
#include "support/RowName.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <sys/xattr.h>

namespace tarnwell::desktop {
namespace {

using namespace Qt::StringLiterals;
using tests::ArgumentReport;
using tests::RowName;
using tests::TemporaryHome;

constexpr quint32 appl = 0x4150504c;
constexpr quint32 text = 0x54455854;
constexpr quint32 pens = 0x50656e73;
const QByteArray entryStart = "[Desktop Entry]\nType=Application\n";

class Registry : public testing::Test
{
protected:
    TemporaryHome home;
    Places places{home.home(), home.root()};
    BundleCache bundles;
    ApplicationRegistry registry{places, bundles};
};

struct PlaceRow
{
    const char *name;
    QString place;
};

class RegistryPlaces : public Registry, public testing::WithParamInterface<PlaceRow>
{};

TEST_P(RegistryPlaces, AreSearchedOneSubfolderDeep)
{
    const QString folder = GetParam().place;
    home.makeApplication(folder + "/Office/Deep/Lost.app"_L1, u"org.example.lost"_s);
    const QString inside =
        home.makeApplication(folder + "/Office/Pens.app"_L1, u"org.example.Pens"_s, "APPLPens");
    const QString direct = home.makeApplication(folder + "/Ink.app"_L1, u"org.example.ink"_s);
    EXPECT_EQ(registry.applicationForIdentifier(u"ORG.example.pens"_s), inside);
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.ink"_s), direct);
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.lost"_s), QString());
    EXPECT_EQ(registry.applicationForCreator(pens), inside);
}

const PlaceRow placeRows[] = {
    {"User", u"~/Applications"_s},
    {"UserGnustep", u"~/GNUstep/Applications"_s},
    {"Local", u"/Applications"_s},
    {"LocalGnustep", u"/usr/local/lib/GNUstep/Applications"_s},
    {"SystemGnustep", u"/usr/lib/GNUstep/Applications"_s},
};
INSTANTIATE_TEST_SUITE_P(Rows, RegistryPlaces, testing::ValuesIn(placeRows), RowName());

TEST_F(Registry, PrefersTheUsersOwnThenTheLocalApplication)
{
    const QString system = home.makeApplication(u"/usr/lib/GNUstep/Applications/Pens.app"_s,
                                                u"org.example.pens"_s, "APPLPens");
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.pens"_s), system);
    const QString local =
        home.makeApplication(u"/Applications/Pens.app"_s, u"org.example.pens"_s, "APPLPens");
    registry.refresh();
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.pens"_s), local);
    const QString own =
        home.makeApplication(u"~/Applications/Pens.app"_s, u"org.example.pens"_s, "APPLPens");
    registry.refresh();
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.pens"_s), own);
    EXPECT_EQ(registry.applicationForCreator(pens), own);
    EXPECT_EQ(registry.installedApplications().size(), 1);
}

TEST_F(Registry, FindsDesktopEntriesByTheirFileId)
{
    const QString path = home.write(u"/usr/share/applications/office/pens.desktop"_s,
                                    entryStart + "Name=Fine Pens\nExec=pens\n");
    EXPECT_EQ(registry.applicationForIdentifier(u"office-pens"_s), path);
    const auto all = registry.installedApplications();
    ASSERT_EQ(all.size(), 1);
    EXPECT_EQ(all[0].path, path);
    EXPECT_EQ(all[0].identifier, u"office-pens"_s);
    EXPECT_EQ(all[0].displayName, u"Fine Pens"_s);
}

TEST_F(Registry, LeavesOutEntriesThatAreNotForMenus)
{
    home.write(u"/usr/share/applications/hidden.desktop"_s, entryStart + "NoDisplay=true\n");
    home.write(u"/usr/share/applications/gone.desktop"_s, entryStart + "TryExec=/no/such\n");
    EXPECT_TRUE(registry.installedApplications().isEmpty());
    EXPECT_NE(registry.applicationForIdentifier(u"hidden"_s), QString());
}

TEST_F(Registry, BelievesAUserWhoDeletedAnEntryOfTheSystem)
{
    home.write(u"/usr/share/applications/pens.desktop"_s, entryStart + "Name=Pens\n");
    home.write(u"~/.local/share/applications/pens.desktop"_s, entryStart + "Hidden=true\n");
    EXPECT_EQ(registry.applicationForIdentifier(u"pens"_s), QString());
    EXPECT_TRUE(registry.installedApplications().isEmpty());
}

TEST_F(Registry, KnowsNobodyByACreatorThatNobodyHas)
{
    home.makeApplication(u"/Applications/A.app"_s, u"org.example.a"_s, "APPL????");
    home.makeApplication(u"/Applications/B.app"_s, u"org.example.b"_s);
    EXPECT_EQ(registry.applicationForCreator(0x3f3f3f3f), QString());
    EXPECT_EQ(registry.applicationForCreator(0), QString());
}

TEST_F(Registry, TakesUpChangesAtTheNextRefreshOnly)
{
    home.makeApplication(u"/Applications/Ink.app"_s, u"org.example.ink"_s);
    EXPECT_NE(registry.applicationForIdentifier(u"org.example.ink"_s), QString());

    const QString added =
        home.makeApplication(u"/Applications/Office/Pens.app"_s, u"org.example.pens"_s);
    home.remove(u"/Applications/Ink.app"_s);
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.pens"_s), QString());
    registry.refresh();
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.pens"_s), added);
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.ink"_s), QString());

    home.makeApplication(u"/Applications/Office/Pens.app"_s, u"org.example.newpens"_s, "APPLInkX");
    TemporaryHome::makeOld(home.path(u"/Applications"_s));
    TemporaryHome::makeOld(home.path(u"/Applications/Office"_s));
    registry.refresh();
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.newpens"_s), added);
    EXPECT_EQ(registry.applicationForCreator(0x496e6b58), added);
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.pens"_s), QString());
}

TEST_F(Registry, NoticesABundleThatIsRewrittenInAFolderThatRests)
{
    const QString path =
        home.makeApplication(u"/Applications/Pens.app"_s, u"org.example.pens"_s, "APPLPens");
    const auto rest = [&] {
        TemporaryHome::makeOld(path + "/Contents/Info.plist"_L1);
        TemporaryHome::makeOld(home.path(u"/Applications"_s));
    };
    rest();
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.pens"_s), path);
    home.makeApplication(u"/Applications/Pens.app"_s, u"org.example.quills"_s, "APPLQuil");
    TemporaryHome::makeOld(home.path(u"/Applications"_s));
    registry.refresh();
    EXPECT_EQ(registry.applicationForCreator(pens), QString());
    EXPECT_EQ(registry.applicationForCreator(0x5175696c), path);
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.pens"_s), QString());
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.quills"_s), path);
}

TEST_F(Registry, SurvivesLinksInCircles)
{
    home.makeFolder(u"/Applications"_s);
    ASSERT_TRUE(QFile::link(u"."_s, home.path(u"/Applications/Again"_s)));
    ASSERT_TRUE(QFile::link(u"Loop.app"_s, home.path(u"/Applications/Loop.app"_s)));
    const QString ink = home.makeApplication(u"/Applications/Ink.app"_s, u"org.example.ink"_s);
    EXPECT_EQ(registry.applicationForIdentifier(u"org.example.ink"_s), ink);
    EXPECT_EQ(registry.installedApplications().size(), 1);
}

TEST(ApplicationFolderTest, ListsOnlyWhatChanged)
{
    const TemporaryHome home;
    home.makeApplication(u"/Applications/Pens.app"_s, u"org.example.pens"_s);
    home.makeApplication(u"/Applications/Office/Ink.app"_s, u"org.example.ink"_s);
    const auto rest = [&] {
        TemporaryHome::makeOld(home.path(u"/Applications"_s));
        TemporaryHome::makeOld(home.path(u"/Applications/Office"_s));
    };
    rest();
    ApplicationFolder folder(home.path(u"/Applications"_s), ApplicationFolder::Kind::Bundles);
    EXPECT_EQ(folder.update(), 2);
    EXPECT_EQ(folder.update(), 0);

    home.makeApplication(u"/Applications/Office/Nib.app"_s, u"org.example.nib"_s);
    EXPECT_EQ(folder.update(), 1);
    EXPECT_EQ(folder.items().size(), 3);

    rest();
    folder.update();
    home.move(u"/Applications/Office"_s, u"/elsewhere"_s);
    EXPECT_EQ(folder.update(), 1);
    EXPECT_EQ(folder.items(), QStringList{home.path(u"/Applications/Pens.app"_s)});
}

// --- single items -----------------------------------------------------------------------------

TEST_F(Registry, TellsContainersFromFiles)
{
    const QString bundle =
        home.makeApplication(u"/Applications/Pens.app"_s, u"org.example.pens"_s, "APPLPens");
    const QString entry = home.write(u"/a.desktop"_s, entryStart + "Name=Pens\n");
    const QString broken = home.write(u"/b.desktop"_s, "nonsense");
    const QString file = home.write(u"/tool"_s, "x", true);

    const auto info = registry.itemInfo(bundle);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->fileType, appl);
    EXPECT_EQ(info->creator, pens);
    EXPECT_TRUE(info->isContainer);
    EXPECT_TRUE(registry.itemInfo(entry)->isContainer);
    EXPECT_TRUE(registry.itemInfo(home.root())->isContainer);
    EXPECT_FALSE(registry.itemInfo(broken)->isContainer);
    EXPECT_FALSE(registry.itemInfo(file)->isContainer);
    EXPECT_FALSE(registry.itemInfo(home.path(u"/none"_s)));
    EXPECT_FALSE(registry.itemInfo({}));
}

TEST_F(Registry, ReadsTypeAndCreatorOfAPlainFile)
{
    const QString file = home.write(u"/tool"_s, "x");
    const QByteArray name = QFile::encodeName(file);
    QByteArray finderInfo = "TEXTPens" + QByteArray(24, '\0');
    const auto set = [&] {
        return ::setxattr(name.constData(), "user.com.apple.FinderInfo", finderInfo.constData(),
                          size_t(finderInfo.size()), 0) == 0;
    };
    if (!set())
        GTEST_SKIP() << "no extended attributes here";
    EXPECT_EQ(registry.itemInfo(file)->fileType, text);
    EXPECT_EQ(registry.itemInfo(file)->creator, pens);
    finderInfo = "TEXT";
    ASSERT_TRUE(set());
    EXPECT_EQ(registry.itemInfo(file)->creator, 0u);
}

TEST_F(Registry, ShowsTheNamesThatFileManagersShow)
{
    const LocalFileManager files(places, bundles);
    home.writeInfo(u"/Pens.app/Contents/Info.plist"_s, {{u"CFBundleName"_s, u"Fine Pens"_s}});
    home.write(u"/a.desktop"_s, entryStart + "Name=Ink\n");
    home.write(u"/letter.txt"_s, "x");
    const std::pair<QString, QString> rows[] = {
        {home.path(u"/Pens.app"_s), u"Fine Pens"_s},
        {home.path(u"/Pens.app/"_s), u"Fine Pens"_s},
        {home.path(u"/a.desktop"_s), u"Ink"_s},
        {home.path(u"/letter.txt"_s), u"letter.txt"_s},
        {home.root() + u'/', u"root"_s},
        {home.path(u"/none.app"_s), QString()},
        {QString(), QString()},
    };
    for (const auto &[path, name] : rows) {
        EXPECT_EQ(registry.displayName(path), name) << qPrintable(path);
        EXPECT_EQ(files.displayNameAtPath(path), name) << qPrintable(path);
    }
}

TEST_F(Registry, DoesNotRememberANameThatChanged)
{
    const QString path = home.makeApplication(u"/Pens.app"_s, u"org.example.pens"_s);
    EXPECT_EQ(registry.displayName(path), u"Pens"_s);
    TemporaryHome::makeOld(path + "/Contents/Info.plist"_L1);
    EXPECT_EQ(registry.displayName(path), u"Pens"_s);
    home.writeInfo(u"/Pens.app/Contents/Info.plist"_s, {{u"CFBundleName"_s, u"Quills"_s}});
    EXPECT_EQ(registry.displayName(path), u"Quills"_s);
    home.remove(u"/Pens.app"_s);
    EXPECT_EQ(registry.displayName(path), QString());
}

// --- opening ----------------------------------------------------------------------------------

TEST_F(Registry, StartsAnApplicationWithADocument)
{
    const ArgumentReport report(home);
    const QString path = home.makeApplication(u"/Applications/Pens.app"_s, u"org.example.pens"_s);
    home.write(u"/Applications/Pens.app/Contents/Linux/run"_s, report.script(), true);
    const QString document = home.write(u"/my letter.txt"_s, "x");
    ASSERT_EQ(registry.openApplication(path, document), 0);
    EXPECT_EQ(report.read(), "1|" + document.toUtf8() + '|');
    ASSERT_EQ(registry.openApplication(path, {}), 0);
    EXPECT_EQ(report.read(), "0|");
}

TEST_F(Registry, StartsADesktopEntryWithADocument)
{
    const ArgumentReport report(home);
    const QString program = home.write(u"/pens"_s, report.script(), true);
    const QString entry =
        home.write(u"/a.desktop"_s, entryStart + "Exec=\"" + program.toUtf8() + "\" --open %f\n");
    const QString document = home.write(u"/my letter.txt"_s, "x");
    ASSERT_EQ(registry.openApplication(entry, document), 0);
    EXPECT_EQ(report.read(), "2|--open|" + document.toUtf8() + '|');
}

TEST_F(Registry, SaysWhyAnApplicationDidNotStart)
{
    const QString noExecutable = home.path(u"/A.app"_s);
    home.writeInfo(u"/A.app/Contents/Info.plist"_s, {{u"CFBundleExecutable"_s, u"none"_s}});
    const QString notExecutable = home.makeApplication(u"/B.app"_s, u"org.example.b"_s);
    QFile::setPermissions(notExecutable + "/Contents/Linux/run"_L1, QFileDevice::ReadOwner);
    const QString unknownFormat = home.makeApplication(u"/C.app"_s, u"org.example.c"_s);
    home.write(u"/C.app/Contents/Linux/run"_s,
               "\x7f"
               "ELF nonsense",
               true);
    const QString entry = home.write(u"/d.desktop"_s, entryStart + "Exec=/no/such/program %f\n");
    const std::tuple<QString, QString, int> rows[] = {
        {home.path(u"/none.app"_s), {}, -43},
        {notExecutable, home.path(u"/none.txt"_s), -43},
        {home.write(u"/plain"_s, "x"), {}, -10814},
        {home.makeFolder(u"/Folder"_s), {}, -10814},
        {noExecutable, {}, -10814},
        {notExecutable, {}, -10810},
        {unknownFormat, {}, -10810},
        {entry, {}, -10810},
    };
    for (const auto &[path, document, status] : rows)
        EXPECT_EQ(registry.openApplication(path, document), status) << qPrintable(path);
}

// --- folders ----------------------------------------------------------------------------------

TEST_F(Registry, FoldersFollowTheHomeAndTheRoot)
{
    using ports::FolderDomain;
    using ports::FolderKind;
    const LocalFileManager files(places, bundles);
    const std::pair<QString, QString> rows[] = {
        {files.resolve(u"~"_s), home.home()},
        {files.resolve(u"~/Library/X.plist"_s), home.home() + "/Library/X.plist"_L1},
        {files.resolve(u"/Library/X"_s), home.root() + "/Library/X"_L1},
        {files.resolve(u"~other/x"_s), u"~other/x"_s},
        {LocalFileManager({u"/home/a/"_s, u"/"_s}, bundles).resolve(u"/Library"_s), u"/Library"_s},
        {LocalFileManager({u"/home/a/"_s, u"/r/"_s}, bundles).resolve(u"/x"_s), u"/r/x"_s},
        {LocalFileManager({u"/home/a/"_s, {}}, bundles).resolve(u"~/x"_s), u"/home/a/x"_s},
        {files.folder(FolderDomain::User, FolderKind::ScreenSavers),
         home.home() + "/Library/Screen Savers"_L1},
        {files.folder(FolderDomain::Local, FolderKind::ApplicationSupport),
         home.root() + "/Library/Application Support"_L1},
        {files.folder(FolderDomain::Network, FolderKind::Library),
         home.root() + "/Network/Library"_L1},
        {files.folder(FolderDomain::System, FolderKind::Library),
         home.root() + "/System/Library"_L1},
        {files.folder(FolderDomain::System, FolderKind::TemporaryItems), home.root() + "/tmp"_L1},
    };
    for (const auto &[actual, expected] : rows)
        EXPECT_EQ(actual, expected);

    // Only the real home's may be elsewhere.
    const LocalFileManager real(Places::ofThisUser(), bundles);
    const auto stateFolders = [&](const char *named) {
        qputenv("XDG_STATE_HOME", named);
        return QStringList{real.folder(FolderDomain::User, FolderKind::State),
                           files.folder(FolderDomain::User, FolderKind::State)};
    };
    const QString own = home.home() + "/.local/state"_L1;
    EXPECT_EQ(stateFolders("/state/"), (QStringList{u"/state"_s, own}));
    EXPECT_EQ(stateFolders("state"), (QStringList{QDir::homePath() + "/.local/state"_L1, own}));
    qunsetenv("XDG_STATE_HOME");
}

TEST_F(Registry, TheOwnersBitDecidesWhatIsExecutable)
{
    const LocalFileManager files(places, bundles);
    EXPECT_TRUE(files.isOwnerExecutable(home.write(u"/tool"_s, "x", true)));
    const QString others = home.write(u"/others"_s, "x");
    QFile::setPermissions(others, QFileDevice::ReadOwner | QFileDevice::ExeGroup);
    EXPECT_FALSE(files.isOwnerExecutable(others));
    EXPECT_FALSE(files.isOwnerExecutable(home.path(u"/none"_s)));
}

} // namespace
} // namespace tarnwell::desktop
