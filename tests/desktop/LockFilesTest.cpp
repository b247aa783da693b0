#include "desktop/LocalLockFiles.h"

#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

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
    ASSERT_EQ(locks.create(lock), 0);
    // Moved and not removed, so that the new file can't be given the number of the old one.
    disk.move(u"/tmp/a.lock"_s, u"/tmp/old"_s);
    disk.write(u"/tmp/a.lock"_s, "another's");
    EXPECT_EQ(locks.remove(lock), -43);
    EXPECT_EQ(content(u"/tmp/a.lock"_s), "another's");
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
