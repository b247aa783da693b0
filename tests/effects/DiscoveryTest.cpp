#include "desktop/BundleCache.h"
#include "desktop/CapturedLog.h"
#include "desktop/LocalFileManager.h"
#include "desktop/LocalFolders.h"
#include "effects/CompositionLists.h"
#include "effects/CompositionSearch.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeFileManager.h"
#include "fakes/FakeFolders.h"
#include "fakes/FakePreferences.h"
#include "foundation/StatusCodes.h"
#include "support/TemporaryHome.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

namespace {

const QString domain = u"com.varnit.tarnwell"_s;
const QString statusKey = u"SEQTZStatusList"_s;
const QString bundleFolder =
    u"/Library/Hullforges/Tarnwell.zok/Contents/Resources/SillyEffect.bundle"_s;

// What somebody has of their own, what everybody has, and a screen saver.
const QString mine = u"~/Library/Application Support/Varnit/Tarnwell/mine.qtz"_s;
const QString all = u"/Library/Application Support/Varnit/Tarnwell/all.qtz"_s;
const QString saver = u"/Library/Screen Savers/saver.qtz"_s;

QStringList paths(const QList<QUrl> &urls)
{
    QStringList result;
    for (const QUrl &url : urls)
        result.append(url.toLocalFile());
    return result;
}

} // namespace

/// Real folders below a home and a root of their own. Names are those of the pane: "~/Library/...".
class Discovery : public testing::Test
{
protected:
    void add(const QStringList &names)
    {
        for (const QString &name : names)
            home.write(name, "no matter");
    }
    void makeBundle(const QStringList &compositions)
    {
        home.writeInfo(bundleFolder + u"/Contents/Info.plist"_s,
                       {{u"CFBundleIdentifier"_s, u"com.varnit.tawl.SillyEffect"_s}});
        for (const QString &name : compositions)
            add({bundleFolder + u"/Contents/Resources/"_s + name});
    }
    std::optional<foundation::Bundle> bundle() const { return findSillyEffectBundle(fileManager); }
    DiscoveryContext context() { return {preferences, fileManager, folders, clock, domain}; }

    void choose(const QStringList &names, const plist::Value &value)
    {
        plist::Dictionary list = status();
        for (const QString &name : names)
            list.insert(home.path(name), value);
        preferences.control().setStoredValue(statusKey, plist::Value(list), domain);
    }
    plist::Dictionary status() const
    {
        return preferences.control().storedValue(statusKey, domain).toDictionary();
    }

    /// What is shown of a path in an expectation: the pane's own name of it.
    QString named(QString path) const
    {
        return path.startsWith(home.home()) ? u"~"_s + path.mid(home.home().size())
                                            : path.mid(home.root().size());
    }
    QStringList named(const QList<QUrl> &urls) const
    {
        QStringList result;
        for (const QString &path : paths(urls))
            result.append(named(path));
        return result;
    }
    QMap<QString, QStringList> groups()
    {
        QMap<QString, QStringList> result;
        const auto found = std::get<CompositionGroups>(SECopyQTZList(context(), bundle(), true));
        for (auto group = found.cbegin(); group != found.cend(); ++group)
            result.insert(group.key(), named(group.value()));
        return result;
    }
    QStringList enabled()
    {
        return named(std::get<EnabledCompositions>(SECopyQTZList(context(), bundle(), false)));
    }

    tests::TemporaryHome home;
    desktop::BundleCache bundles;
    desktop::LocalFileManager fileManager{desktop::Places(home.home(), home.root()), bundles};
    desktop::LocalFolders folders;
    mutable fakes::FakePreferences preferences;
    fakes::FakeClock clock;
};

// --- one folder --------------------------------------------------------------------------------

TEST_F(Discovery, FindsWhatMayBePlayedInAFolder)
{
    struct Row
    {
        QString name; ///< of the folder that is searched
        QStringList files;
        QStringList found;
        QStringList refused = {}; ///< folders with a line in the log
    };
    const Row rows[] = {
        {u"empty"_s, {}, {}},
        {u"endings"_s,
         {u"a.qtz"_s, u"b.QTZ"_s, u"c.qtz.txt"_s, u"d"_s, u"qtz"_s, u"f.qtzx"_s, u"g.h.qtz"_s},
         {u"a.qtz"_s, u"b.QTZ"_s, u"g.h.qtz"_s}},
        {u"other characters"_s, {u"Ünï ☞ 1%.qtz"_s}, {u"Ünï ☞ 1%.qtz"_s}},
        {u"hidden"_s, {u".a.qtz"_s, u".qtz"_s}, {}},
        {u"one level down"_s,
         {u"b/x.qtz"_s, u"a/y.qtz"_s, u"z.qtz"_s, u"a/deep/no.qtz"_s, u".hidden/h.qtz"_s},
         {u"z.qtz"_s, u".hidden/h.qtz"_s, u"a/y.qtz"_s, u"b/x.qtz"_s}},
        {u"folder with the ending"_s, {u"a.qtz/inner.qtz"_s}, {u"a.qtz/inner.qtz"_s}},
        {u"folders that are refused"_s,
         {u"Logs/a.qtz"_s, u"catalog/a.qtz"_s, u"My ICHAT Icons/a.qtz"_s, u"Fine/Logo.qtz"_s},
         {u"Fine/Logo.qtz"_s},
         {u"Logs"_s, u"My ICHAT Icons"_s, u"catalog"_s}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name.toStdString());
        const QString top = home.makeFolder(u'/' + row.name);
        for (const QString &name : row.files)
            add({u'/' + row.name + u'/' + name});
        QList<QUrl> results;
        const tests::CapturedLog log;
        EXPECT_EQ(SEScanFolderForQTZ(fileManager, folders, top, results, 0), 0);
        EXPECT_EQ(log.lines().size(), row.refused.size());
        for (const QString &name : row.refused)
            EXPECT_EQ(log.containing(u' ' + name + u" is not"_s).size(), 1);
        QStringList found;
        for (const QString &path : paths(results))
            found.append(path.mid(top.size() + 1));
        EXPECT_EQ(found, row.found);
    }
}

TEST_F(Discovery, PassesOverWhatIsNoFileOrInvisible)
{
    const QString top = home.makeFolder(u"/Top"_s);
    add({u"/Top/seen.qtz"_s, u"/Top/flagged.qtz"_s, u"/Elsewhere/linked.qtz"_s});
    ASSERT_EQ(::mkfifo(QFile::encodeName(top + u"/pipe.qtz"_s).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(home.path(u"/Elsewhere/linked.qtz"_s), top + u"/link.qtz"_s));
    ASSERT_TRUE(QFile::link(home.path(u"/nowhere.qtz"_s), top + u"/dangling.qtz"_s));
    ASSERT_TRUE(QFile::link(home.path(u"/Elsewhere"_s), top + u"/folder link"_s));
    // Bytes that are no text.
    const QByteArray unsayable = QFile::encodeName(top) + "/\xff\xfe.qtz";
    ASSERT_EQ(::mknod(unsayable.constData(), S_IFREG | 0600, 0), 0);

    QByteArray flags(32, 0);
    flags[8] = 0x40;
    const bool hasFlags =
        ::setxattr(QFile::encodeName(top + u"/flagged.qtz"_s).constData(),
                   "user.com.apple.FinderInfo", flags.constData(), size_t(flags.size()), 0) == 0;
    QList<QUrl> results;
    EXPECT_EQ(SEScanFolderForQTZ(fileManager, folders, top, results, 0), 0);
    EXPECT_EQ(::unlink(unsayable.constData()), 0) << "the folder could not be removed with it";
    QStringList expected{top + u"/link.qtz"_s, top + u"/seen.qtz"_s};
    if (!hasFlags) // the temporary folder's file system has no room for them
        expected.prepend(top + u"/flagged.qtz"_s);
    EXPECT_EQ(paths(results), expected);
}

TEST(ScanStatus, IsThatOfTheFolderLookedIntoLast)
{
    struct Row
    {
        const char *name;
        QHash<QString, int> failing;
        int status;
    };
    const Row rows[] = {
        {"nothing fails", {}, 0},
        {"the folder itself", {{u"/top"_s, -36}}, 0},
        {"the first of its folders", {{u"/top/a"_s, -36}}, 0},
        {"all", {{u"/top"_s, -1}, {u"/top/a"_s, -2}, {u"/top/b"_s, -3}}, -3},
    };
    fakes::FakeHome described;
    for (const QString &folder : {u"/top"_s, u"/top/a"_s, u"/top/b"_s})
        described.addFolder(folder);
    for (const QString &file : {u"/top/1.qtz"_s, u"/top/a/2.qtz"_s, u"/top/b/3.qtz"_s})
        described.addFile(file);
    const fakes::FakeFileManager fileManager(described);
    fakes::FakeFolders folders(described);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        folders.control().failing = row.failing;
        QList<QUrl> results;
        EXPECT_EQ(SEScanFolderForQTZ(fileManager, folders, u"/top"_s, results, 0), row.status);
        EXPECT_EQ(results.size(), 3) << "what was read before an error counts";
    }
    QList<QUrl> results;
    EXPECT_EQ(SEScanFolderForQTZ(fileManager, folders, u"/none"_s, results, 0),
              foundation::dirNFErr);
}

// --- the bundle --------------------------------------------------------------------------------

TEST_F(Discovery, TakesTheFirstBundleThatIsThere)
{
    EXPECT_FALSE(bundle());
    const QStringList places{u"/Library/Hullforges (disabled)"_s,
                             u"~/Library/Hullforges (disabled)"_s, u"/Library/Hullforges"_s,
                             u"~/Library/Hullforges"_s};
    for (const QString &place : places) {
        const QString path = place + u"/Tarnwell.zok/Contents/Resources/SillyEffect.bundle"_s;
        home.writeInfo(path + u"/Contents/Info.plist"_s, {});
        ASSERT_TRUE(bundle());
        EXPECT_EQ(named(bundle()->path()), path);
    }
    // Others further down are not asked when the first one says nothing of itself.
    const QString last =
        u"~/Library/Hullforges/Tarnwell.zok/Contents/Resources/SillyEffect.bundle"_s;
    home.write(last + u"/Contents/Info.plist"_s, "damaged");
    ASSERT_TRUE(bundle());
    EXPECT_EQ(named(bundle()->path()), last);
}

TEST_F(Discovery, ListsTheCompositionsOfABundleThatSaysNothingOfItself)
{
    for (const QString &name :
         {u"/flat.qtz"_s, u"/Resources/old.qtz"_s, u"/Contents/Resources/new.qtz"_s,
          u"/Contents/Info.plist"_s, u"/Contents/Resources/English.lproj/more.qtz"_s}) {
        add({bundleFolder + name});
        const QString newest = name.endsWith(".plist"_L1) ? u"/Contents/Resources/new.qtz"_s : name;
        EXPECT_EQ(groups().value(u"Bundled Quartz Composer Documents"_s).value(0),
                  bundleFolder + newest);
    }
}

// --- groups ------------------------------------------------------------------------------------

TEST_F(Discovery, GroupsBySourceInTheOrderOfNames)
{
    EXPECT_EQ(groups(), (QMap<QString, QStringList>()));
    add({u"~/Library/Application Support/Varnit/Tarnwell/gamma.qtz"_s,
         u"~/Library/Application Support/Varnit/Tarnwell/More/Beta.qtz"_s,
         u"/Library/Application Support/Varnit/Tarnwell/alpha.qtz"_s,
         u"/Library/Application Support/Varnit/Tarnwell/Delta.qtz"_s,
         u"/Library/Application Support/Varnit/stray.qtz"_s, u"~/Library/Screen Savers/d.qtz"_s,
         u"/Network/Library/Screen Savers/C.qtz"_s, u"/Library/Screen Savers/b.qtz"_s,
         u"/System/Library/Screen Savers/A.qtz"_s, u"/System/Library/Screen Savers/A.saver"_s});
    makeBundle({u"two.qtz"_s, u"One.qtz"_s, u"picture.png"_s, u"sub/three.qtz"_s});
    const QMap<QString, QStringList> expected{
        {u"Application Support"_s,
         {u"/Library/Application Support/Varnit/Tarnwell/alpha.qtz"_s,
          u"~/Library/Application Support/Varnit/Tarnwell/More/Beta.qtz"_s,
          u"/Library/Application Support/Varnit/Tarnwell/Delta.qtz"_s,
          u"~/Library/Application Support/Varnit/Tarnwell/gamma.qtz"_s}},
        {u"Bundled Quartz Composer Documents"_s,
         {bundleFolder + u"/Contents/Resources/One.qtz"_s,
          bundleFolder + u"/Contents/Resources/two.qtz"_s}},
        {u"Screensavers"_s,
         {u"/System/Library/Screen Savers/A.qtz"_s, u"/Library/Screen Savers/b.qtz"_s,
          u"/Network/Library/Screen Savers/C.qtz"_s, u"~/Library/Screen Savers/d.qtz"_s}}};
    EXPECT_EQ(groups(), expected);
    EXPECT_TRUE(preferences.control().writes().isEmpty()) << "only the flat list records anything";
}

TEST_F(Discovery, MovesWhatCouldNotBeReadToTheNextGroup)
{
    // A file where a folder is expected fails for every user, root included.
    add({mine, saver, u"/Library/Application Support/Varnit/Tarnwell"_s});
    EXPECT_EQ(groups(), (QMap<QString, QStringList>{{u"Screensavers"_s, {mine, saver}}}));
    makeBundle({});
    EXPECT_EQ(groups(),
              (QMap<QString, QStringList>{{u"Bundled Quartz Composer Documents"_s, {mine}},
                                          {u"Screensavers"_s, {saver}}}));
    // The user's own folder may fail without anybody noticing.
    home.remove(u"/Library/Application Support/Varnit/Tarnwell"_s);
    home.remove(u"~/Library/Application Support/Varnit/Tarnwell"_s);
    add({u"~/Library/Application Support/Varnit/Tarnwell"_s, all});
    EXPECT_EQ(groups().value(u"Application Support"_s), QStringList{all});
}

TEST(DisplayNames, DecideTheOrder)
{
    fakes::FakeHome described;
    described.addFile(u"/x/1.qtz"_s).displayName = u"beta"_s;
    described.addFile(u"/x/2.qtz"_s).displayName = u"Alpha"_s;
    described.addFile(u"/x/3.qtz"_s).displayName = u"ALPHA"_s;
    const fakes::FakeFileManager fileManager(described);
    const QUrl beta(u"file:///x/1.qtz"_s), alpha(u"file:///x/2.qtz"_s),
        sameAlpha(u"file:///x/3.qtz"_s), gone(u"file:///x/gone.qtz"_s);
    EXPECT_LT(SECompareURLsByDisplayName(fileManager, alpha, beta), 0);
    EXPECT_EQ(SECompareURLsByDisplayName(fileManager, alpha, sameAlpha), 0);
    EXPECT_GT(SECompareURLsByDisplayName(fileManager, gone, beta), 0);
    EXPECT_LT(SECompareURLsByDisplayName(fileManager, beta, gone), 0);
    EXPECT_LT(SECompareURLsByDisplayName(fileManager, {}, beta), 0);
}

// --- what may be played ------------------------------------------------------------------------

TEST_F(Discovery, LeavesOutWhatIsSwitchedOff)
{
    const QString bundled = bundleFolder + u"/Contents/Resources/bundled.qtz"_s;
    add({mine, all});
    makeBundle({u"bundled.qtz"_s});
    ASSERT_TRUE(QDir().mkpath(QFileInfo(home.path(bundled)).path() + u"/folder.qtz"_s));
    EXPECT_EQ(enabled(), (QStringList{mine, all, bundled}));

    struct Row
    {
        const char *name;
        plist::Value value;
        bool isOff;
    };
    const Row rows[] = {{"false", false, true},
                        {"true", true, false},
                        {"zero", 0, false},
                        {"text", u"false"_s, false}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        choose({mine, bundled}, row.value);
        const tests::CapturedLog log;
        EXPECT_EQ(enabled(), row.isOff ? QStringList{all} : (QStringList{mine, all, bundled}));
        EXPECT_EQ(log.lines(),
                  row.isOff ? QStringList{u"[SE] Removing "_s + home.path(mine)} : QStringList())
            << "nothing is said of what is in the bundle";
    }
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

TEST_F(Discovery, ScreenSaversAreOffUntilTheyAreSwitchedOn)
{
    const QString known = u"~/Library/Screen Savers/known.qtz"_s;
    const QString odd = u"~/Library/Screen Savers/odd.qtz"_s;
    const QString fresh = u"/System/Library/Screen Savers/New Ones/fresh.qtz"_s;
    const QString inSupport =
        u"~/Library/Application Support/Varnit/Tarnwell/my screen savers/s.qtz"_s;
    add({known, odd, fresh, inSupport});
    choose({known}, true);
    choose({odd}, 17);
    choose({u"/gone.qtz"_s}, false);
    plist::Dictionary expected = status();
    expected.insert(home.path(fresh), false);
    expected.insert(home.path(inSupport), false);

    const CompositionLists silent =
        copyCompositionLists(context(), bundle(), NewScreenSavers::OnlyLeaveOut);
    EXPECT_EQ(named(silent.enabled), (QStringList{known, odd}));
    EXPECT_TRUE(preferences.control().writes().isEmpty());

    EXPECT_EQ(enabled(), (QStringList{known, odd}));
    EXPECT_EQ(plist::Value(status()), plist::Value(expected)) << "other entries stay";
    preferences.control().clearRecord();
    EXPECT_EQ(enabled(), (QStringList{known, odd}));
    EXPECT_TRUE(preferences.control().writes().isEmpty()) << "nothing is new the second time";
}

TEST_F(Discovery, AStatusListOfAnotherTypeCountsAsNone)
{
    add({mine, saver});
    for (const plist::Value &value : {plist::Value(u"text"_s), plist::Value(true),
                                      plist::Value(plist::Array{home.path(mine), false})}) {
        preferences.control().setStoredValue(statusKey, value, domain);
        EXPECT_EQ(enabled(), QStringList{mine});
        EXPECT_EQ(plist::Value(status()),
                  plist::Value(plist::Dictionary{{home.path(saver), false}}));
    }
}

TEST_F(Discovery, StoresAChoiceForManyAtOnce)
{
    choose({u"/other.qtz"_s}, false);
    const QList<QUrl> two{QUrl::fromLocalFile(u"/a b.qtz"_s), QUrl::fromLocalFile(u"/c%20d.qtz"_s)};
    storeStatus(preferences, domain, two, true);
    EXPECT_EQ(plist::Value(status()),
              plist::Value(plist::Dictionary{{home.path(u"/other.qtz"_s), false},
                                             {u"/a b.qtz"_s, true},
                                             {u"/c%20d.qtz"_s, true}}));
    preferences.control().setStoredValue(statusKey, 1, domain);
    storeStatus(preferences, domain, two, false);
    EXPECT_EQ(status().size(), 2) << "what is no list gives way";
}

} // namespace tarnwell::effects
