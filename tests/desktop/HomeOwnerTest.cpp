// What root leaves behind in somebody else's home, and what that person can lead root to.

#include "desktop/HomeOwner.h"

#include "desktop/ApplicationLauncher.h"
#include "desktop/LocalFileStore.h"
#include "desktop/PreferencesHome.h"
#include "desktop/ProcessTasks.h"
#include "support/ArgumentReport.h"

#include <QDirIterator>

#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

class HomeOwnerTest : public PreferencesHome
{
protected:
    static constexpr uid_t user = 4711; ///< nobody's on any machine
    static constexpr auto settings = "/Library/Application Support/Varnit/Tarnwell";

    void SetUp() override
    {
        if (::geteuid() != 0)
            GTEST_SKIP() << "for root alone";
        give(home());
    }

    static void give(const QString &path)
    {
        ASSERT_EQ(::lchown(QFile::encodeName(path).constData(), user, user), 0);
    }

    /// Does what a pane does that root opens on this home. Its thread keeps the owner's ids, so it
    /// is a thread of its own.
    void asRoot(const std::function<void()> &work = [] {}) const
    {
        std::thread([&] {
            const desktop::HomeOwner owner(home());
            work();
        }).join();
    }

    bool storesAsRoot() const
    {
        bool isStored = false;
        asRoot([&] {
            desktop::FilePreferences preferences(home(), clock);
            preferences.setAppValue(u"New"_s, 2, domain);
            isStored = preferences.appSynchronize(domain);
        });
        return isStored;
    }

    QStringList itemsOfRoot() const
    {
        QStringList items;
        QDirIterator all(home(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
        while (all.hasNext()) {
            all.next();
            if (all.fileInfo().ownerId() != user || all.fileInfo().groupId() != user)
                items.append(all.filePath().mid(home().size()));
        }
        items.sort();
        return items;
    }
};

TEST_F(HomeOwnerTest, WhatRootMakesIsTheOwners)
{
    QString error;
    const QString downloads = home() + u"/Library/Downloads/List"_s;
    EXPECT_TRUE(storesAsRoot());
    asRoot([&] {
        EXPECT_TRUE(desktop::LocalFileStore().writeFile(
            home() + QLatin1StringView(settings) + u"/Backups/x"_s, "x", &error));
        EXPECT_EQ(desktop::ProcessTasks().runAndWait(u"mkdir"_s, {u"-p"_s, downloads}), 0);
    });
    EXPECT_TRUE(QFileInfo(downloads).isDir());
    EXPECT_EQ(storedDomain().value(u"New"_s), plist::Value(2));
    EXPECT_EQ(itemsOfRoot(), QStringList());
}

TEST_F(HomeOwnerTest, GivesBackWhatAnEarlierRunMadeRoots)
{
    storeDomain({{u"Old"_s, 1}});
    writeFile(folder() + u"/."_s + fileName() + u".lock"_s, {});
    const QString ours = home() + QLatin1StringView(settings);
    writeFile(ours + u"/Backups/Shortcuts 2025.plist"_s, "kept, though damaged");
    writeFile(ours + u"/HardcodedExcludeList.plist"_s, "<plist version=\"1.0\"><array/></plist>");
    for (const QString &name : {u"/Library"_s, u"/Library/Preferences"_s})
        ::chmod(QFile::encodeName(home() + name).constData(), 0700);
    asRoot();
    EXPECT_EQ(itemsOfRoot(), QStringList());

    // A file of root's in a folder that was the user's all along.
    ASSERT_EQ(::chown(QFile::encodeName(path()).constData(), 0, 0), 0);
    EXPECT_TRUE(storesAsRoot());
    EXPECT_EQ(itemsOfRoot(), QStringList());
    EXPECT_EQ(storedDomain(), (plist::Dictionary{{u"Old"_s, 1}, {u"New"_s, 2}}));
}

TEST_F(HomeOwnerTest, IsNotLedToWhatIsRoots)
{
    QTemporaryDir roots;
    const QString secret = roots.filePath(u"secret.plist"_s);
    const QByteArray bytes = plist::write(plist::Dictionary{{u"Key"_s, 1}}, plist::Format::Xml);
    const auto link = [](const QString &target, const QString &name) {
        ASSERT_TRUE(QFile::link(target, name));
        give(name);
    };
    const auto makeFolders = [&](const QString &name) {
        QString path = home();
        for (const QString &part : name.split(u'/', Qt::SkipEmptyParts)) {
            path += u'/' + part;
            QDir().mkdir(path);
            give(path);
        }
    };
    struct Row
    {
        const char *name;
        std::function<void()> plant;
        QString place; ///< what stays root's, below the home; nothing for what lies elsewhere
    };
    const Row rows[] = {
        {"Library is a link to a folder", [&] { link(roots.path(), home() + u"/Library"_s); }, {}},
        {"Preferences is a link to a folder",
         [&] {
             makeFolders(u"/Library"_s);
             link(roots.path(), folder());
         },
         {}},
        {"the domain is a link",
         [&] {
             makeFolders(u"/Library/Preferences"_s);
             link(secret, path());
         },
         {}},
        {"the domain is another name of a file",
         [&] {
             makeFolders(u"/Library/Preferences"_s);
             writeFile(home() + u"/other"_s, bytes);
             ASSERT_EQ(::link(QFile::encodeName(home() + u"/other"_s).constData(),
                              QFile::encodeName(path()).constData()),
                       0);
         },
         u"/Library/Preferences/"_s + fileName()},
        {"a file of another kind has the domain's name",
         [&] {
             makeFolders(u"/Library/Preferences"_s);
             writeFile(path(), "root's password");
         },
         u"/Library/Preferences/"_s + fileName()},
        {"a folder with other things is called Library",
         [&] { writeFile(home() + u"/Library/key"_s, "root's key"); }, u"/Library"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QDir(home() + u"/Library"_s).removeRecursively();
        QFile::remove(home() + u"/Library"_s);
        writeFile(secret, bytes);
        ::chmod(QFile::encodeName(secret).constData(), 0600);
        row.plant();
        asRoot();
        if (!row.place.isEmpty()) {
            EXPECT_TRUE(itemsOfRoot().contains(row.place));
        }
        storesAsRoot();
        EXPECT_EQ(readFile(secret), bytes);
        EXPECT_EQ(QDir(roots.path()).entryList(QDir::Files | QDir::Hidden),
                  QStringList(u"secret.plist"_s));
        for (const QString &place : {roots.path(), secret})
            EXPECT_EQ(QFileInfo(place).ownerId(), 0U);
    }
}

TEST_F(HomeOwnerTest, StartsProgramsAsTheOwner)
{
    const TemporaryHome machine;
    const ArgumentReport report(machine);
    const QString place = machine.path(u"/report-x"_s);
    for (const QString &path : {QFileInfo(machine.home()).path(), machine.root(), place})
        give(path);
    machine.makeApplication(u"/Ids.app"_s, u"com.example.ids"_s);
    const QString program =
        machine.write(u"/Ids.app/Contents/Linux/run"_s,
                      "#!/bin/sh\necho \"$(id -u) $(id -g) $(id -G) $HOME\" > '" +
                          QFile::encodeName(place) + "'\n");
    ::chmod(QFile::encodeName(program).constData(), 0755);
    const auto application = foundation::Bundle::open(machine.path(u"/Ids.app"_s));
    ASSERT_TRUE(application);
    const desktop::Places places(home(), machine.root());
    int status = -1;
    asRoot([&] { status = desktop::launchApplication(places, *application, {}); });
    ASSERT_EQ(status, 0);
    EXPECT_EQ(report.read(), "4711 4711 4711 " + QFile::encodeName(home()) + '\n');
    EXPECT_EQ(::geteuid(), 0U) << "the process itself stays root's";
}

TEST_F(HomeOwnerTest, ActsWithItsOwnIdsForAWhile)
{
    QTemporaryDir roots;
    const QString secret = roots.filePath(u"secret"_s);
    writeFile(secret, "x");
    asRoot([&] {
        EXPECT_EQ(readFile(secret), QByteArray());
        {
            const desktop::OwnIds own;
            EXPECT_EQ(readFile(secret), "x");
        }
        EXPECT_EQ(readFile(secret), QByteArray());
    });
    EXPECT_FALSE(desktop::actsForSomebodyElse()) << "other threads have their own ids";
}

TEST_F(HomeOwnerTest, KnowsWhoseAHomeIs)
{
    QTemporaryDir roots;
    ASSERT_TRUE(QFile::link(roots.path(), home() + u"/link"_s));
    give(home() + u"/link"_s);
    QDir().mkdir(home() + u"/roots"_s);
    struct Row
    {
        QString home;
        uid_t owner;
    };
    const Row rows[] = {{home(), user},
                        {home() + u"/new/home"_s, user},
                        {home() + u"/roots"_s, user},
                        {home() + u"/link"_s, user},
                        {roots.path(), 0},
                        {u"/no/such/home"_s, 0}};
    for (const Row &row : rows)
        EXPECT_EQ(desktop::HomeOwner::ofHome(row.home).user, row.owner) << qPrintable(row.home);
}

} // namespace tarnwell::tests
