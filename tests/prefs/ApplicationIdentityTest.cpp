#include "IdentityFixture.h"
#include "support/RowName.h"

namespace tarnwell::prefs {
namespace {

using namespace Qt::StringLiterals;
using fakes::FakeItem;
using tests::IdentityFixture;
using tests::RowName;

constexpr quint32 pens = 0x50656e73;
constexpr quint32 inkx = 0x496e6b58;
constexpr quint32 unclaimed = 0x3f3f3f3f;

// --- the order of the rules -------------------------------------------------------------------

struct RuleRow
{
    const char *name;
    QString identifier; ///< of the bundle
    quint32 bundleCreator;
    quint32 executableCreator;
    std::optional<FakeItem> launched; ///< its path is "/opt/tool"
    QString expected;
    QString expectedName;
};

FakeItem launchedItem(bool executable, bool container = false, quint32 creator = 0)
{
    FakeItem item;
    item.path = u"/opt/tool"_s;
    item.displayName = u"The Tool"_s;
    item.isOwnerExecutable = executable;
    item.isContainer = container;
    item.creator = creator;
    return item;
}

class IdentityRules : public IdentityFixture, public testing::WithParamInterface<RuleRow>
{};

TEST_P(IdentityRules, ApplyInTheirOrder)
{
    const RuleRow &row = GetParam();
    const foundation::Bundle bundle = makeBundle(u"Pens.app"_s, row.identifier, row.bundleCreator);
    home.addFile(bundle.executablePath(), true).creator = row.executableCreator;
    std::optional<QString> path;
    if (row.launched) {
        path = row.launched->path;
        home.add(*row.launched);
    }
    EXPECT_EQ(idOf(bundle, path), row.expected);
    EXPECT_EQ(cache.displayNames.value(row.expected), row.expectedName);
    EXPECT_EQ(cache.aliasData.value(row.expected), bookmarks.bookmarkForPath(bundle.path()));
}

const QString id = u"org.example.pens"_s;
const QString byCreator = u"com.unknown.by-creator.0x4150504C.0x50656E73"_s;
const QString byPath = u"com.unknown.by-path./opt/tool"_s;

const RuleRow ruleRows[] = {
    {"BundleIdentifier", id, 0, 0, {}, id, u"The Pens.app"_s},
    {"CreatorBeatsTheBundleIdentifier", id, pens, 0, {}, byCreator, u"The Pens.app"_s},
    {"UnclaimedCreatorDoesNotCount", id, unclaimed, 0, {}, id, u"The Pens.app"_s},
    {"CreatorOfTheExecutable",
     id,
     0,
     inkx,
     {},
     u"com.unknown.by-creator.0x00000000.0x496E6B58"_s,
     u"The Pens.app"_s},
    {"CreatorOfTheBundleFirst", id, pens, inkx, {}, byCreator, u"The Pens.app"_s},
    {"NameWhenNothingElse",
     {},
     unclaimed,
     0,
     {},
     u"com.unknown.by-name.Pens.app"_s,
     u"The Pens.app"_s},
    {"ExecutableByPath", id, 0, 0, launchedItem(true), byPath, u"tool"_s},
    {"ExecutableByPathBeatsCreators", id, pens, inkx, launchedItem(true, false, inkx), byPath,
     u"tool"_s},
    {"PlainFileIsNoApplication", id, 0, 0, launchedItem(false), id, u"The Tool"_s},
    {"CreatorOfTheLaunchedFile", id, pens, 0, launchedItem(false, false, inkx),
     u"com.unknown.by-creator.0x00000000.0x496E6B58"_s, u"The Tool"_s},
    {"ContainerIsNoExecutable", id, 0, 0, launchedItem(true, true), id, u"The Tool"_s},
};
INSTANTIATE_TEST_SUITE_P(Rows, IdentityRules, testing::ValuesIn(ruleRows), RowName());

TEST_F(IdentityFixture, APathThatIsTooLongIsPassedOver)
{
    const foundation::Bundle bundle = makeBundle(u"Pens.app"_s, id);
    const QString longest = u'/' + QString(16383, u'x');
    home.addFile(longest, true);
    home.addFile(longest + u'x', true);
    EXPECT_EQ(idOf(bundle, longest), u"com.unknown.by-path."_s + longest);
    EXPECT_EQ(idOf(bundle, longest + u'x'), id);
}

TEST_F(IdentityFixture, AnApplicationThatTheRegistryDoesNotKnowHasAnIdentifier)
{
    const QString path = disk.makeApplication(u"/Strange.app"_s, {});
    EXPECT_EQ(idOf(*foundation::Bundle::open(path), u"/no/such/tool"_s),
              u"com.unknown.by-name.Strange.app"_s);
    EXPECT_TRUE(cache.displayNames.isEmpty());
    EXPECT_TRUE(cache.aliasData.isEmpty());
}

// --- what is remembered -----------------------------------------------------------------------

TEST_F(IdentityFixture, ABundleKeepsItsFirstIdentifier)
{
    const foundation::Bundle bundle = makeBundle(u"Pens.app"_s, id);
    EXPECT_EQ(idOf(bundle), id);
    home.addApplication(bundle.path(), id, u"Quills"_s, pens);
    EXPECT_EQ(idOf(bundle), id);
    EXPECT_EQ(idOf(*foundation::Bundle::open(bundle.path() + u'/')), id);
    EXPECT_EQ(cache.displayNames.value(id), u"The Pens.app"_s);
}

TEST_F(IdentityFixture, ANewPathOfAKnownBundleIsLookedAt)
{
    const foundation::Bundle bundle = makeBundle(u"Pens.app"_s, id);
    home.addFile(u"/opt/tool"_s, true);
    EXPECT_EQ(idOf(bundle), id);
    EXPECT_EQ(idOf(bundle, u"/opt/tool"_s), byPath);
    // The last answer is now that of the bundle, too.
    EXPECT_EQ(idOf(bundle), byPath);
    home.remove(u"/opt/tool"_s);
    EXPECT_EQ(idOf(bundle, u"/opt/tool"_s), byPath);
}

TEST_F(IdentityFixture, AKnownPathSaysNothingOfAnUnknownBundle)
{
    home.addFile(u"/opt/tool"_s, false);
    EXPECT_EQ(idOf(makeBundle(u"Pens.app"_s, id), u"/opt/tool"_s), id);
    const QString other = u"org.example.ink"_s;
    const foundation::Bundle ink = makeBundle(u"Ink.app"_s, other);
    EXPECT_EQ(idOf(ink, u"/opt/tool"_s), other);
    // Both are known now: the path's last answer counts for either.
    EXPECT_EQ(idOf(*foundation::Bundle::open(disk.path(u"/Pens.app"_s)), u"/opt/tool"_s), other);
}

TEST_F(IdentityFixture, ThisProcessKeepsItsIdentifierWhateverPathComesWithIt)
{
    home.addFile(u"/opt/tool"_s, true);
    const auto self = ApplicationReference::mainBundle();
    EXPECT_EQ(idOf(self), u"org.example.settings"_s);
    EXPECT_EQ(idOf(self, u"/opt/tool"_s), u"org.example.settings"_s);
    EXPECT_EQ(idOf(*foundation::Bundle::open(systemFacts.mainBundlePath()), u"/opt/tool"_s),
              u"org.example.settings"_s);
    EXPECT_FALSE(cache.identifierOfPath.contains(u"/opt/tool"_s));
}

TEST_F(IdentityFixture, AProcessWithoutABundleGoesByItsName)
{
    systemFacts.control().mainBundlePath = disk.write(u"/bin/settings"_s, "x", true);
    EXPECT_EQ(idOf(ApplicationReference::mainBundle()), u"com.unknown.by-name.settings"_s);
}

TEST_F(IdentityFixture, TheGlobalLevelIsNobody)
{
    const ApplicationIdentifier answer =
        GetApplicationID(context, ApplicationReference::global(), u"/opt/tool"_s);
    EXPECT_TRUE(answer.isGlobal());
    EXPECT_NE(answer, ApplicationIdentifier(QString()));
    EXPECT_TRUE(cache.identifierOfBundle.isEmpty());
}

TEST_F(IdentityFixture, NoAliasIsNoData)
{
    const foundation::Bundle bundle = makeBundle(u"Pens.app"_s, id);
    EXPECT_TRUE(CopyAliasDataForBundle(bookmarks, bundle));
    bookmarks.control().refused.insert(bundle.path());
    EXPECT_FALSE(CopyAliasDataForBundle(bookmarks, bundle));
    EXPECT_EQ(idOf(bundle), id);
    EXPECT_TRUE(cache.aliasData.isEmpty());
}

// --- and back ---------------------------------------------------------------------------------

struct UrlRow
{
    const char *name;
    QString identifier;
    QString path;
};

class IdentifierUrls : public testing::TestWithParam<UrlRow>
{};

TEST_P(IdentifierUrls, LeadToTheApplication)
{
    fakes::FakeHome home;
    home.addApplication(u"/Applications/Pens.app"_s, u"org.example.Pens"_s, {}, pens);
    home.addApplication(u"/Applications/Ink.app"_s, {}, {}, inkx);
    home.addApplication(u"/Applications/Odd.app"_s,
                        u"com.unknown.by-creator.0x4150504C.0x496E6B58"_s);
    home.addApplication(u"/Applications/Max.app"_s, {}, {}, 0xffffffff);
    const fakes::FakeApplications applications(home);
    const QUrl url = UrlForAppID(applications, GetParam().identifier);
    EXPECT_EQ(url.toLocalFile(), GetParam().path);
    EXPECT_EQ(url.isEmpty(), GetParam().path.isEmpty());
}

const UrlRow urlRows[] = {
    {"Identifier", u"ORG.example.pens"_s, u"/Applications/Pens.app"_s},
    {"Creator", byCreator, u"/Applications/Pens.app"_s},
    {"CreatorNotFileType", u"com.unknown.by-creator.0x496E6B58.0x50656E73"_s,
     u"/Applications/Pens.app"_s},
    {"CreatorWithoutPrefix", u"com.unknown.by-creator.0.50656e73 and more"_s,
     u"/Applications/Pens.app"_s},
    {"IdentifierBeforeCreator", u"com.unknown.by-creator.0x4150504C.0x496E6B58"_s,
     u"/Applications/Odd.app"_s},
    {"NoNumber", u"com.unknown.by-creator.0x4150504C.xyz"_s, {}},
    {"NothingAfterTheDot", u"com.unknown.by-creator."_s, {}},
    {"TooManyDigits", u"com.unknown.by-creator.0x0.0x150656E73"_s, u"/Applications/Max.app"_s},
    {"UnknownCreator", u"com.unknown.by-creator.0x4150504C.0x41414141"_s, {}},
    {"ByPath", byPath, {}},
    {"ByName", u"com.unknown.by-name.Pens.app"_s, {}},
    {"Empty", {}, {}},
};
INSTANTIATE_TEST_SUITE_P(Rows, IdentifierUrls, testing::ValuesIn(urlRows), RowName());

} // namespace
} // namespace tarnwell::prefs
