#include "desktop/LocalLockFiles.h"
#include "desktop/SystemClock.h"

#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

class LockFiles : public testing::Test
{
protected:
    QByteArray content(const QString &name) const
    {
        QFile file(disk.path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }

    TemporaryHome disk;
    desktop::LocalLockFiles locks;
};

TEST_F(LockFiles, AreMadeOnceAndRemoved)
{
    const QString folder = disk.path(u"/tmp/deep"_s);
    EXPECT_EQ(locks.createFolder(folder), 0);
    EXPECT_EQ(locks.createFolder(folder), 0);
    const QString lock = folder + u"/a.lock"_s;
    EXPECT_EQ(locks.create(lock), 0);
    EXPECT_EQ(QFileInfo(lock).size(), 0);
    EXPECT_EQ(desktop::LocalLockFiles().create(lock), -48);
    EXPECT_EQ(desktop::LocalLockFiles().remove(lock), -43) << "it is another's";
    EXPECT_EQ(locks.remove(lock), 0);
    EXPECT_FALSE(QFileInfo::exists(lock));
    EXPECT_EQ(locks.remove(lock), -43);
}

TEST_F(LockFiles, FollowNoLinks)
{
    disk.write(u"/precious"_s, "precious");
    disk.makeFolder(u"/tmp"_s);
    const QString lock = disk.path(u"/tmp/a.lock"_s);
    for (const QString &target : {disk.path(u"/precious"_s), disk.path(u"/not there"_s)}) {
        ASSERT_TRUE(QFile::link(target, lock));
        EXPECT_EQ(locks.create(lock), -48);
        EXPECT_EQ(locks.remove(lock), -43);
        EXPECT_TRUE(QFileInfo(lock).isSymLink());
        QFile::remove(lock);
    }
    EXPECT_EQ(content(u"/precious"_s), "precious");
    EXPECT_FALSE(QFileInfo::exists(disk.path(u"/not there"_s)));
}

TEST_F(LockFiles, LeaveALockThatTookThePlaceOfTheirs)
{
    disk.makeFolder(u"/tmp"_s);
    const QString lock = disk.path(u"/tmp/a.lock"_s);
    // Where the numbers of files are used again, the new file gets the one of the old.
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(locks.create(lock), 0);
        ASSERT_TRUE(QFile::remove(lock));
        disk.write(u"/tmp/a.lock"_s, "another's");
        EXPECT_EQ(locks.remove(lock), -43) << i;
        EXPECT_EQ(content(u"/tmp/a.lock"_s), "another's") << i;
        QFile::remove(lock);
    }
}

TEST_F(LockFiles, TellWhatStandsInTheWay)
{
    disk.makeFolder(u"/tmp/folder"_s);
    const QString name = disk.path(u"/tmp/a.lock"_s);
    EXPECT_FALSE(locks.find(name));
    EXPECT_FALSE(locks.find(disk.path(u"/tmp/folder"_s)));
    ASSERT_EQ(desktop::LocalLockFiles().create(name), 0);
    auto stands = locks.find(name);
    ASSERT_TRUE(stands);
    EXPECT_TRUE(stands->isOurs());
    EXPECT_EQ(stands->owner(), QFileInfo(name).owner());
    EXPECT_LT(std::abs(desktop::SystemClock().absoluteTime() - stands->madeAt()), 3600.0);
    // Another one takes its place.
    ASSERT_TRUE(QFile::remove(name));
    ASSERT_EQ(desktop::LocalLockFiles().create(name), 0);
    EXPECT_EQ(stands->remove(), -43);
    EXPECT_EQ(locks.find(name)->remove(), 0);
    EXPECT_FALSE(QFileInfo::exists(name));

    disk.write(u"/precious"_s, "precious");
    ASSERT_TRUE(QFile::link(disk.path(u"/precious"_s), name));
    EXPECT_EQ(locks.find(name)->remove(), 0) << "the link, not what it leads to";
    EXPECT_EQ(content(u"/precious"_s), "precious");
    ASSERT_EQ(::mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(QFile::encodeName(name).constData(), 54321, 54321), 0);
        EXPECT_FALSE(locks.find(name)->isOurs());
        EXPECT_EQ(locks.find(name)->owner(), u"54321"_s);
    }
    EXPECT_EQ(locks.find(name)->remove(), 0) << "without waiting for somebody to write";
}

TEST_F(LockFiles, SayWhyTheyCannotBeMade)
{
    const QString file = disk.write(u"/file"_s, "x");
    EXPECT_EQ(locks.createFolder(file + u"/below"_s), -120);
    EXPECT_EQ(locks.createFolder(file), -120);
    EXPECT_EQ(locks.create(file + u"/a.lock"_s), -120);
    EXPECT_EQ(locks.create(disk.path(u"/nowhere/a.lock"_s)), -120);
    EXPECT_EQ(locks.create(disk.path(u'/' + QString(300, u'x'))), -37);
    EXPECT_EQ(content(u"/file"_s), "x");
}

} // namespace tarnwell::tests
