// The identifiers of listed applications, on real folders with the real registry.

#include "desktop/ApplicationRegistry.h"
#include "desktop/BundleCache.h"
#include "desktop/FileBookmarks.h"
#include "desktop/LocalFileManager.h"
#include "exclude/ExcludeStore.h"
#include "fakes/FakePreferences.h"
#include "fakes/FakeSystemFacts.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

constexpr QLatin1StringView domain{"com.varnit.tarnwell"};

/// The desktop as a process finds it when it starts.
struct FreshProcess
{
    explicit FreshProcess(const TemporaryHome &disk)
        : places(disk.home(), disk.root())
    {}

    const prefs::IdentityContext context()
    {
        return {applications, fileManager, bookmarks, systemFacts, cache};
    }

    desktop::Places places;
    desktop::BundleCache bundles;
    desktop::ApplicationRegistry applications{places, bundles};
    desktop::LocalFileManager fileManager{places, bundles};
    desktop::FileBookmarks bookmarks{places, bundles};
    fakes::FakeSystemFacts systemFacts;
    prefs::ApplicationIdentityCache cache;
};

struct Listed
{
    const char *name;
    QString path;
    QString movedTo;
    /// What the identifier must be; %1 stands for the path.
    QString identifier;
    bool isFoundAfterMoving; ///< as a bundle; by its identifier every one is
};

} // namespace

TEST(ExcludeIdentity, FollowsTheRulesAndFindsMovedApplicationsAgain)
{
    TemporaryHome disk;
    disk.makeApplication(u"/Applications/Pens.app"_s, u"com.example.pens"_s);
    disk.makeApplication(u"/Applications/Inks.app"_s, u"com.example.inks"_s, "APPLInks");
    disk.makeApplication(u"/Applications/Nibs.app"_s, QString());
    disk.write(u"/usr/share/applications/org.example.Quill.desktop"_s,
               "[Desktop Entry]\nType=Application\nName=Quill\nExec=quill %U\n");
    disk.write(u"/usr/bin/blotter"_s, "#!/bin/sh\n", true);
    const Listed rows[] = {
        {"folder bundle", u"/Applications/Pens.app"_s, u"~/Applications/Pencils.app"_s,
         u"com.example.pens"_s, true},
        {"creator code", u"/Applications/Inks.app"_s, u"~/Applications/Colours.app"_s,
         u"com.unknown.by-creator.0x4150504C.0x496E6B73"_s, true},
        {"no identifier", u"/Applications/Nibs.app"_s, u"~/Applications/Nibs.app"_s,
         u"com.unknown.by-name.Nibs.app"_s, true},
        {"desktop entry", u"/usr/share/applications/org.example.Quill.desktop"_s,
         u"~/.local/share/applications/org.example.Quill.desktop"_s, u"org.example.Quill"_s, true},
        {"program", u"/usr/bin/blotter"_s, u"/opt/blotter"_s, u"com.unknown.by-path.%1"_s, false},
    };
    const auto bundleOf = [](const QString &path) {
        const auto bundle = foundation::Bundle::open(path);
        return bundle ? *bundle : *foundation::Bundle::ofPlainFolder(QFileInfo(path).path());
    };
    fakes::FakePreferences preferences;
    FreshProcess process(disk);
    QStringList identifiers;
    for (const Listed &row : rows) {
        const QString path = disk.path(row.path);
        exclude::AddBundleToExcludeList(process.context(), preferences, domain, bundleOf(path),
                                        path, std::nullopt, false);
        identifiers.append(row.identifier.contains(u"%1") ? row.identifier.arg(path)
                                                          : row.identifier);
    }
    const plist::Array list = exclude::CopyExcludeList(preferences, domain).value();
    ASSERT_EQ(list.size(), identifiers.size());
    for (qsizetype i = 0; i < list.size(); ++i) {
        SCOPED_TRACE(rows[i].name);
        const plist::Dictionary record = list.at(i).toDictionary();
        EXPECT_EQ(record.value(u"ID").toString(), identifiers.at(i));
        EXPECT_EQ(record.value(u"Path").toString(), disk.path(rows[i].path));
        EXPECT_TRUE(record.value(u"AliasRecord").isData());
        EXPECT_TRUE(record.value(u"DisplayName").isString());

        disk.move(rows[i].path, rows[i].movedTo);
        const QString moved = disk.path(rows[i].movedTo);
        FreshProcess later(disk);
        EXPECT_EQ(
            exclude::IsBundleExcluded(later.context(), preferences, domain, bundleOf(moved), moved),
            rows[i].isFoundAfterMoving);
        if (rows[i].isFoundAfterMoving)
            exclude::RemoveBundleFromExcludeList(later.context(), preferences, domain,
                                                 bundleOf(moved), moved);
        else
            exclude::RemoveAppIDFromExcludeList(preferences, domain, identifiers.at(i));
        EXPECT_FALSE(exclude::IsAppIDExcluded(preferences, domain, identifiers.at(i)));
    }
    EXPECT_EQ(exclude::CopyExcludeList(preferences, domain), plist::Array());
}

} // namespace tarnwell::tests
