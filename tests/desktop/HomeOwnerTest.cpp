// What root leaves behind in somebody else's home, and what that person can lead root to.

#include "desktop/HomeOwner.h"

#include "desktop/ApplicationLauncher.h"
#include "desktop/LocalFileStore.h"
#include "desktop/PreferencesHome.h"
#include "desktop/ProcessHttpFetcher.h"
#include "desktop/ProcessTasks.h"

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
        bool isReached = false;
        asRoot([&] { isReached = QFileInfo(home()).isReadable(); });
        if (!isReached)
            GTEST_SKIP() << "only root can enter the folder of temporary files";
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
    const QTemporaryDir roots;
    const QString secret = roots.filePath(u"secret.plist"_s);
    const QString empty = roots.filePath(u"empty"_s);
    QDir().mkdir(empty);
    const QByteArray bytes = plist::write(plist::Dictionary{{u"Key"_s, 1}}, plist::Format::Xml);
    const QString preferences = u"/Library/Preferences"_s;
    const QString stored = preferences + u'/' + fileName();
    struct Row
    {
        QString folders;     ///< that the owner made
        QString link;        ///< that the owner made, to:
        QString target;      ///< a second name if it lies in the home
        QString file;        ///< that root made
        QByteArray contents; ///< of that
        QString stays;       ///< root's, in the home; empty for none
    };
    const Row rows[] = {
        {{}, u"/Library"_s, empty, {}, {}, {}},
        {u"/Library"_s, preferences, empty, {}, {}, {}},
        {preferences, stored, secret, {}, {}, {}},
        {preferences, stored, home() + u"/other"_s, u"/other"_s, bytes, stored},
        {preferences, {}, {}, stored, "root's password", stored},
        {{}, {}, {}, u"/Library/key"_s, "root's key", u"/Library"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(qPrintable(row.link + row.file));
        QDir(home() + u"/Library"_s).removeRecursively();
        QFile::remove(home() + u"/Library"_s);
        writeFile(secret, bytes);
        ::chmod(QFile::encodeName(secret).constData(), 0600);
        if (!row.folders.isEmpty())
            QDir().mkpath(home() + row.folders);
        for (const QString &item : itemsOfRoot())
            give(home() + item);
        if (!row.file.isEmpty())
            writeFile(home() + row.file, row.contents);
        if (!row.link.isEmpty()) {
            const auto link = row.target.startsWith(home()) ? ::link : ::symlink;
            ASSERT_EQ(link(QFile::encodeName(row.target).constData(),
                           QFile::encodeName(home() + row.link).constData()),
                      0);
        }
        asRoot();
        if (!row.stays.isEmpty()) {
            EXPECT_TRUE(itemsOfRoot().contains(row.stays));
        }
        storesAsRoot();
        EXPECT_EQ(readFile(secret), bytes);
        EXPECT_TRUE(QDir(empty).isEmpty());
        for (const QString &place : {empty, secret})
            EXPECT_EQ(QFileInfo(place).ownerId(), 0U);
    }
}

TEST_F(HomeOwnerTest, StartsProgramsAsTheOwner)
{
    const QString contents = home() + u"/Ids.app/Contents/"_s;
    const QByteArray pipe = QFile::encodeName(home() + u"/pipe"_s);
    ASSERT_EQ(::mkfifo(pipe.constData(), 0622), 0);
    give(home() + u"/pipe"_s);
    writeFile(
        contents + u"Info.plist"_s,
        plist::write(plist::Dictionary{{u"CFBundleExecutable"_s, u"run"_s}}, plist::Format::Xml));
    writeFile(contents + u"Linux/run"_s,
              "#!/bin/sh\necho $(id -u) $(id -g) $(id -G) $HOME > '" + pipe + "'\n");
    ::chmod(QFile::encodeName(contents + u"Linux/run"_s).constData(), 0755);
    const QString fetcher = contents + u"Linux/fetch"_s;
    writeFile(fetcher, "#!/bin/sh\nid -u\n");
    ::chmod(QFile::encodeName(fetcher).constData(), 0755);
    int status = -1;
    asRoot([&] {
        EXPECT_EQ(desktop::ProcessHttpFetcher(fetcher).fetchList(QUrl(u"https://localhost/"_s)),
                  "4711\n");
        const auto program = foundation::Bundle::open(home() + u"/Ids.app"_s);
        status = program ? desktop::launchApplication({home(), {}}, *program, {}, nullptr) : -1;
    });
    ASSERT_EQ(status, 0);
    EXPECT_EQ(readFile(home() + u"/pipe"_s), "4711 4711 4711 " + QFile::encodeName(home()) + '\n');
    EXPECT_EQ(::geteuid(), 0U) << "the process itself stays root's";
}

TEST_F(HomeOwnerTest, ActsWithItsOwnIdsForAWhile)
{
    const QTemporaryDir roots;
    writeFile(roots.filePath(u"secret"_s), "x");
    const auto read = [&] { return readFile(roots.filePath(u"secret"_s)); };
    asRoot([&] {
        EXPECT_EQ((desktop::OwnIds(), read()), "x");
        EXPECT_EQ(read(), QByteArray());
    });
    EXPECT_EQ(read(), "x") << "other threads have their own ids";
}

TEST_F(HomeOwnerTest, KnowsWhoseAHomeIs)
{
    const QTemporaryDir roots;
    ASSERT_TRUE(QFile::link(roots.path(), home() + u"/link"_s));
    give(home() + u"/link"_s);
    QDir().mkdir(home() + u"/roots"_s);
    for (const char *name : {"", "/new/home", "/roots", "/link"})
        EXPECT_EQ(desktop::HomeOwner::ofHome(home() + QLatin1StringView(name)).user, user) << name;
    for (const QString &name : {roots.path(), u"/no/such/home"_s})
        EXPECT_EQ(desktop::HomeOwner::ofHome(name).user, 0U) << qPrintable(name);
}

} // namespace tarnwell::tests
