// A domain whose file is a symbolic link.

#include "desktop/CapturedLog.h"
#include "desktop/PreferencesHome.h"

#include <sys/stat.h>
#include <unistd.h>

using namespace tarnwell;
using namespace Qt::StringLiterals;
using desktop::FilePreferences;
using tests::CapturedLog;

namespace {

class FilePreferencesLinksTest : public tests::PreferencesHome
{};

} // namespace

TEST_F(FilePreferencesLinksTest, WritesThroughASymbolicLink)
{
    const QString target = home() + u"/dotfiles/prefs"_s;
    struct Row
    {
        const char *name;
        QString linkText;
        bool exists;
    };
    const Row rows[] = {
        {"absolute", target, true},
        {"relative", u"../../dotfiles/prefs"_s, true},
        {"to a file still to be made", target, false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QDir(home()).removeRecursively();
        ASSERT_TRUE(QDir().mkpath(folder()) && QDir().mkpath(home() + u"/dotfiles"_s));
        if (row.exists)
            writeFile(target, plist::write(plist::Dictionary{{u"Old"_s, 1}}, plist::Format::Xml));
        ASSERT_EQ(::symlink(QFile::encodeName(row.linkText).constData(),
                            QFile::encodeName(path()).constData()),
                  0);
        FilePreferences preferences(home(), clock);
        preferences.setAppValue(u"New"_s, 2, domain);
        ASSERT_TRUE(preferences.appSynchronize(domain));
        EXPECT_TRUE(QFileInfo(path()).isSymLink());
        const plist::Dictionary stored = plist::read(readFile(target)).toDictionary();
        EXPECT_EQ(stored.value(u"New"_s), plist::Value(2));
        EXPECT_EQ(stored.contains(u"Old"_s), row.exists);
        EXPECT_EQ(filesInFolder(), QStringList{fileName()});
    }
}

TEST_F(FilePreferencesLinksTest, ReplacesALinkToADamagedFile)
{
    const QString target = home() + u"/dotfiles/notes"_s;
    writeFile(target, "of another program");
    ASSERT_TRUE(QDir().mkpath(folder()) && QFile::link(target, path()));
    const CapturedLog log;
    FilePreferences preferences(home(), clock);
    ports::Preferences::StoreState state;
    preferences.setStoreHandler([&state](const QString &, const auto &latest) { state = latest; });
    ASSERT_TRUE(preferences.appSynchronize(domain));
    clock.control().advance(0.5);
    preferences.setAppValue(u"New"_s, 1, domain);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    EXPECT_FALSE(QFileInfo(path()).isSymLink());
    EXPECT_EQ(storedDomain(), (plist::Dictionary{{u"New"_s, 1}}));
    EXPECT_EQ(filesInFolder(), QStringList{fileName()});
    EXPECT_EQ(readFile(target), "of another program");
    EXPECT_EQ(QDir(home() + u"/dotfiles"_s).entryList(QDir::Files), QStringList{u"notes"_s});
    EXPECT_EQ(state.setAside, target);
    EXPECT_EQ(log.containing(u"stay as %1"_s.arg(target)).size(), 1);
}

TEST_F(FilePreferencesLinksTest, FollowsNoLinkThatAStrangerPut)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "for root alone, who can make files of others";
    constexpr uid_t stranger = 4711;
    struct Row
    {
        const char *name;
        uid_t ownerOfLink;
        mode_t folder;
        uid_t ownerOfFolder;
        bool isFollowed;
    };
    const Row rows[] = {
        {"ours", 0, 0777, 0, true},
        {"a stranger's, in our folder", stranger, 0755, 0, true},
        {"a stranger's, where all may write", stranger, 0777, 0, false},
        {"a stranger's, where the group may write", stranger, 0770, 0, false},
        {"a stranger's, in the stranger's folder", stranger, 0700, stranger, false},
    };
    const QString target = home() + u"/secret"_s;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QDir(folder()).removeRecursively();
        writeFile(target, plist::write(plist::Dictionary{{u"Old"_s, 1}}, plist::Format::Binary));
        const QByteArray before = readFile(target);
        ASSERT_TRUE(QDir().mkpath(folder()) && QFile::link(target, path()));
        const QByteArray folderName = QFile::encodeName(folder());
        ASSERT_EQ(::chmod(folderName.constData(), row.folder), 0);
        ASSERT_EQ(::chown(folderName.constData(), row.ownerOfFolder, 0), 0);
        ASSERT_EQ(::lchown(QFile::encodeName(path()).constData(), row.ownerOfLink, 0), 0);
        FilePreferences preferences(home(), clock);
        EXPECT_EQ(preferences.copyAppValue(u"Old"_s, domain).isNull(), !row.isFollowed);
        preferences.setAppValue(u"New"_s, 2, domain);
        ASSERT_TRUE(preferences.appSynchronize(domain));
        EXPECT_EQ(QFileInfo(path()).isSymLink(), row.isFollowed);
        EXPECT_EQ(storedDomain().contains(u"Old"_s), row.isFollowed);
        EXPECT_EQ(storedDomain().value(u"New"_s), plist::Value(2));
        EXPECT_EQ(readFile(target) == before, !row.isFollowed);
    }
}
