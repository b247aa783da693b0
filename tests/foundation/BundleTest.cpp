#include "foundation/Bundle.h"
#include "support/RowName.h"
#include "support/TemporaryHome.h"

#include <QLocale>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>

namespace tarnwell::foundation {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;
using tests::TemporaryHome;

class Language
{
public:
    explicit Language(const QString &name)
        : m_before(QLocale())
    {
        QLocale::setDefault(QLocale(name));
    }
    ~Language() { QLocale::setDefault(m_before); }

private:
    QLocale m_before;
};

// --- the forms of a bundle --------------------------------------------------------------------

struct FormRow
{
    const char *name;
    QString info;
    plist::Format format;
    QString executable; ///< where the file is
    QString resource;   ///< where "a.txt" is
};

class BundleForms : public testing::TestWithParam<FormRow>
{};

TEST_P(BundleForms, AnswerTheSame)
{
    const FormRow &row = GetParam();
    const TemporaryHome home;
    const QString path = home.path(u"/Pens.app"_s);
    home.writeInfo(
        u"/Pens.app"_s + row.info,
        {{u"CFBundleIdentifier"_s, u"org.example.pens"_s}, {u"CFBundleExecutable"_s, u"pens"_s}},
        row.format);
    const QString executable = home.write(u"/Pens.app"_s + row.executable, "x");
    const QString resource = home.write(u"/Pens.app"_s + row.resource, "x");

    const auto bundle = Bundle::open(path + u'/');
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->path(), path);
    EXPECT_EQ(bundle->identifier(), u"org.example.pens"_s);
    EXPECT_EQ(bundle->executablePath(), executable);
    EXPECT_EQ(bundle->resourcePath(u"a"_s, u"txt"_s), resource);
    EXPECT_EQ(bundle->resourcePaths(u"txt"_s), QStringList{resource});
    EXPECT_FALSE(bundle->isDesktopEntry());
    EXPECT_EQ(*bundle, *Bundle::open(path));
}

const FormRow formRows[] = {
    {"Contents", u"/Contents/Info.plist"_s, plist::Format::Xml, u"/Contents/Linux/pens"_s,
     u"/Contents/Resources/a.txt"_s},
    {"ContentsBinary", u"/Contents/Info.plist"_s, plist::Format::Binary, u"/Contents/MacOS/pens"_s,
     u"/Contents/Resources/a.txt"_s},
    {"Flat", u"/Info.plist"_s, plist::Format::Xml, u"/pens"_s, u"/a.txt"_s},
    {"FlatWithResources", u"/Info.plist"_s, plist::Format::Xml, u"/pens"_s, u"/Resources/a.txt"_s},
    {"InfoInResources", u"/Resources/Info.plist"_s, plist::Format::Xml, u"/pens"_s,
     u"/Resources/a.txt"_s},
};
INSTANTIATE_TEST_SUITE_P(Rows, BundleForms, testing::ValuesIn(formRows), RowName());

TEST(Bundle, PrefersTheExecutableForThisSystem)
{
    const TemporaryHome home;
    const QString path = home.makeApplication(u"/Pens.app"_s, u"org.example.pens"_s);
    home.write(u"/Pens.app/Contents/MacOS/run"_s, "x");
    EXPECT_EQ(Bundle::open(path)->executablePath(), path + "/Contents/Linux/run"_L1);
}

TEST(Bundle, LooksForResourcesInTheUsersLanguageFirst)
{
    const TemporaryHome home;
    const QString path = home.makeApplication(u"/Pens.app"_s, u"org.example.pens"_s);
    const QString common = home.write(u"/Pens.app/Contents/Resources/About.rtfd"_s, "x");
    const QString german = home.write(u"/Pens.app/Contents/Resources/de.lproj/About.rtfd"_s, "x");
    const auto about = [&](const QString &locale) {
        const Language language(locale);
        return Bundle::open(path)->resourcePath(u"About"_s, u"rtfd"_s);
    };
    EXPECT_EQ(about(u"de_AT"_s), german);
    EXPECT_EQ(about(u"fr_FR"_s), common);
}

TEST(Bundle, ListsEachResourceOnceInTheBestLanguage)
{
    const TemporaryHome home;
    const QString path = home.path(u"/Pens.app"_s);
    home.writeInfo(u"/Pens.app/Contents/Info.plist"_s, {{u"CFBundleDevelopmentRegion"_s, u"it"_s}});
    for (const QString &name :
         {u"ink.txt"_s, u"de.lproj/ink.txt"_s, u"de.lproj/blau.txt"_s, u"en.lproj/nib.txt"_s,
          u"fr.lproj/nib.txt"_s, u"fr.lproj/bleu.txt"_s, u"it.lproj/penna.txt"_s})
        home.write(u"/Pens.app/Contents/Resources/"_s + name, "x");
    const auto list = [&](const QString &locale) {
        const Language language(locale);
        QStringList names;
        for (const QString &resource : Bundle::open(path)->resourcePaths(u"txt"_s))
            names.append(resource.mid((path + "/Contents/Resources/"_L1).size()));
        return names.join(u' ');
    };
    EXPECT_EQ(list(u"de_AT"_s),
              u"de.lproj/blau.txt de.lproj/ink.txt en.lproj/nib.txt it.lproj/penna.txt"_s);
    EXPECT_EQ(list(u"fr_FR"_s), u"fr.lproj/bleu.txt ink.txt fr.lproj/nib.txt it.lproj/penna.txt"_s);
}

// --- names ------------------------------------------------------------------------------------

struct NameRow
{
    const char *name;
    plist::Dictionary info;
    QString stringsFile;
    QByteArray strings;
    QString expected;
};

class BundleNames : public testing::TestWithParam<NameRow>
{};

TEST_P(BundleNames, AreShownInTheUsersLanguage)
{
    const NameRow &row = GetParam();
    const Language language(u"de_DE"_s);
    const TemporaryHome home;
    home.writeInfo(u"/Pens.app/Contents/Info.plist"_s, row.info);
    if (!row.stringsFile.isEmpty())
        home.write(u"/Pens.app/Contents/Resources/"_s + row.stringsFile, row.strings);
    EXPECT_EQ(Bundle::open(home.path(u"/Pens.app"_s))->displayName(), row.expected);
}

QByteArray utf16(const QString &text)
{
    const QString marked = QChar(QChar::ByteOrderMark) + text;
    return QByteArray(reinterpret_cast<const char *>(marked.utf16()), marked.size() * 2);
}

const plist::Dictionary bothNames{{u"CFBundleName"_s, u"Pens"_s},
                                  {u"CFBundleDisplayName"_s, u"Fine Pens"_s}};
const NameRow nameRows[] = {
    {"DisplayName", bothNames, {}, {}, u"Fine Pens"_s},
    {"Name", {{u"CFBundleName"_s, u"Pens"_s}}, {}, {}, u"Pens"_s},
    {"FileName", {{u"Other"_s, 1}}, {}, {}, u"Pens"_s},
    {"MistypedName", {{u"CFBundleName"_s, 7}}, {}, {}, u"Pens"_s},
    {"Localised", bothNames, u"de.lproj/InfoPlist.strings"_s,
     "/* name */ CFBundleDisplayName = \"Feine \\\"Stifte\\\"\"; // more\n", u"Feine \"Stifte\""_s},
    {"LocalisedUtf16", bothNames, u"German.lproj/InfoPlist.strings"_s,
     utf16(u"\"CFBundleDisplayName\" = \"Füller\";"_s), u"Füller"_s},
    {"LocalisedPropertyList", bothNames, u"de_DE.lproj/InfoPlist.strings"_s,
     plist::write(plist::Dictionary{{u"CFBundleName"_s, u"Stifte"_s}}, plist::Format::Binary),
     u"Stifte"_s},
    {"OtherLanguage", bothNames, u"fr.lproj/InfoPlist.strings"_s,
     "CFBundleDisplayName = \"Stylos\";", u"Fine Pens"_s},
    {"DamagedStrings", bothNames, u"de.lproj/InfoPlist.strings"_s, "CFBundleDisplayName = \"Stift",
     u"Fine Pens"_s},
    {"PairsBeforeTheDamage", bothNames, u"de.lproj/InfoPlist.strings"_s,
     "CFBundleName = Stifte;\n\"a\" = ;\nCFBundleName = Falsch;", u"Stifte"_s},
};
INSTANTIATE_TEST_SUITE_P(Rows, BundleNames, testing::ValuesIn(nameRows), RowName());

// --- type and creator -------------------------------------------------------------------------

struct CreatorRow
{
    const char *name;
    plist::Dictionary info;
    QByteArray pkgInfo;
    quint32 type;
    quint32 creator;
};

class BundleCreators : public testing::TestWithParam<CreatorRow>
{};

TEST_P(BundleCreators, ComeFromPkgInfoThenFromInfo)
{
    const CreatorRow &row = GetParam();
    const TemporaryHome home;
    home.writeInfo(u"/Pens.app/Contents/Info.plist"_s, row.info);
    if (!row.pkgInfo.isNull())
        home.write(u"/Pens.app/Contents/PkgInfo"_s, row.pkgInfo);
    const auto bundle = Bundle::open(home.path(u"/Pens.app"_s));
    EXPECT_EQ(bundle->packageType(), row.type);
    EXPECT_EQ(bundle->signature(), row.creator);
}

const plist::Dictionary declared{{u"CFBundlePackageType"_s, u"APPL"_s},
                                 {u"CFBundleSignature"_s, u"Pens"_s}};
const CreatorRow creatorRows[] = {
    {"PkgInfo", declared, "BNDLInk\xe9", 0x424e444c, 0x496e6be9},
    {"Info", declared, {}, 0x4150504c, 0x50656e73},
    {"ShortPkgInfo", declared, "APPL", 0x4150504c, 0x50656e73},
    {"Unclaimed", declared, "APPL????\n", 0x4150504c, 0x3f3f3f3f},
    {"Mistyped", {{u"CFBundleSignature"_s, 5}, {u"CFBundlePackageType"_s, u"APPLE"_s}}, {}, 0, 0},
};
INSTANTIATE_TEST_SUITE_P(Rows, BundleCreators, testing::ValuesIn(creatorRows), RowName());

// --- what a stranger may put there --------------------------------------------------------------

struct HostileRow
{
    const char *name;
    std::function<void(const TemporaryHome &)> make; ///< makes "/X.app"
    bool opens;
};

class HostileBundles : public testing::TestWithParam<HostileRow>
{};

TEST_P(HostileBundles, GiveNothingOrPartOfIt)
{
    const HostileRow &row = GetParam();
    const TemporaryHome home;
    row.make(home);
    const auto bundle = Bundle::open(home.path(u"/X.app"_s));
    ASSERT_EQ(bundle.has_value(), row.opens);
    if (!bundle)
        return;
    EXPECT_EQ(bundle->displayName(), u"X"_s);
    EXPECT_EQ(bundle->executablePath(), QString());
    EXPECT_EQ(bundle->signature(), 0u);
    EXPECT_EQ(bundle->resourcePath(u"../Info"_s, u"plist"_s), QString());
    EXPECT_EQ(bundle->resourcePath(u"/etc/hosts"_s, {}), QString());
}

void infoOf(const TemporaryHome &home, const QByteArray &bytes)
{
    home.write(u"/X.app/Contents/Info.plist"_s, bytes);
}

void link(const TemporaryHome &home, const QString &target, const QString &name)
{
    QDir().mkpath(QFileInfo(home.path(name)).path());
    ASSERT_TRUE(QFile::link(target, home.path(name)));
}

const HostileRow hostileRows[] = {
    {"Nothing", [](auto &) {}, false},
    {"EmptyFolder", [](auto &home) { home.makeFolder(u"/X.app"_s); }, false},
    {"PlainFile", [](auto &home) { home.write(u"/X.app"_s, "x"); }, false},
    {"EmptyInfo", [](auto &home) { infoOf(home, {}); }, false},
    {"TornInfo", [](auto &home) { infoOf(home, "bplist00\xd1\x01"); }, false},
    {"InfoIsAnArray",
     [](auto &home) { infoOf(home, plist::write(plist::Array{1}, plist::Format::Binary)); }, false},
    {"InfoIsAFolder", [](auto &home) { home.makeFolder(u"/X.app/Contents/Info.plist"_s); }, false},
    {"InfoIsHuge", [](auto &home) { infoOf(home, QByteArray(5 * 1024 * 1024, ' ')); }, false},
    {"InfoIsAPipe",
     [](auto &home) {
         home.makeFolder(u"/X.app/Contents"_s);
         const QString pipe = home.path(u"/X.app/Contents/Info.plist"_s);
         ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
     },
     false},
    {"InfoIsEndless", [](auto &home) { link(home, u"/dev/zero"_s, u"/X.app/Info.plist"_s); },
     false},
    {"LinkToItself", [](auto &home) { link(home, u"X.app"_s, u"/X.app"_s); }, false},
    {"ContentsLinkToTheBundle",
     [](auto &home) {
         home.makeFolder(u"/X.app"_s);
         link(home, u"."_s, u"/X.app/Contents"_s);
     },
     false},
    {"ExecutableOutside",
     [](auto &home) {
         home.write(u"/run"_s, "x", true);
         home.writeInfo(u"/X.app/Contents/Info.plist"_s,
                        {{u"CFBundleExecutable"_s, u"../../../run"_s}});
     },
     true},
    {"ExecutableIsAFolder",
     [](auto &home) {
         home.makeFolder(u"/X.app/Contents/Linux/run"_s);
         home.writeInfo(u"/X.app/Contents/Info.plist"_s, {{u"CFBundleExecutable"_s, u"run"_s}});
     },
     true},
    {"PartsAreFolders",
     [](auto &home) {
         home.makeFolder(u"/X.app/Contents/PkgInfo"_s);
         home.makeFolder(u"/X.app/Contents/Resources/en.lproj/InfoPlist.strings"_s);
         home.writeInfo(u"/X.app/Contents/Info.plist"_s, {{u"CFBundleName"_s, QString()}});
     },
     true},
};
INSTANTIATE_TEST_SUITE_P(Rows, HostileBundles, testing::ValuesIn(hostileRows), RowName());

TEST(Bundle, DoesNotOpenWhatItMayNotRead)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may read everything";
    const TemporaryHome home;
    const QString path = home.makeApplication(u"/X.app"_s, u"org.example.x"_s);
    QFile::setPermissions(path + "/Contents/Info.plist"_L1, {});
    EXPECT_FALSE(Bundle::open(path));
}

} // namespace
} // namespace tarnwell::foundation
