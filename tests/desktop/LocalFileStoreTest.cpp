// The pane's own files: what is read of odd ones, and when a written one is on the disk.

#include "desktop/LocalFileStore.h"
#include "support/TemporaryHome.h"

#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QStringList flushed; ///< what was flushed, oldest first
int flushError = 0;  ///< an errno value that the next flushes fail with

} // namespace

// Stands before the function of the C library, so that the store calls it.
#pragma GCC visibility push(default)
extern "C" int fsync(int fd)
{
    flushed.append(QFile::symLinkTarget(u"/proc/self/fd/"_s + QString::number(fd)));
    errno = flushError;
    return flushError == 0 ? int(::syscall(SYS_fsync, fd)) : -1;
}
#pragma GCC visibility pop

namespace tarnwell::tests {

TEST(LocalFileStore, SaysWhyAFileIsNotRead)
{
    const TemporaryHome home;
    home.write(u"/plain"_s, "0123456789");
    ASSERT_EQ(::mkfifo(QFile::encodeName(home.path(u"/pipe"_s)).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(home.path(u"/pipe"_s), home.path(u"/to pipe"_s)));
    const std::pair<QString, QString> rows[] = {
        {u"/plain"_s, u"It is larger than 1 MB."_s},
        {u"/to pipe"_s, u"It is a pipe, a socket or a device, and not a file."_s},
        {u"/"_s, u"It is a folder."_s},
        {u"/absent"_s, u"It does not exist."_s},
    };
    const desktop::LocalFileStore store;
    QString message;
    for (const auto &[name, expected] : rows) {
        EXPECT_FALSE(store.readFile(home.path(name), 9, &message)) << qPrintable(name);
        EXPECT_EQ(message, expected);
    }
    EXPECT_EQ(store.filesInFolder(home.root()), QStringList(u"plain"_s));
}

TEST(LocalFileStore, HasWrittenToTheDiskWhenItReturns)
{
    const TemporaryHome home;
    const QString path = home.path(u"/new/folders/file"_s);
    desktop::LocalFileStore store;
    QString message;
    flushed.clear();
    ASSERT_TRUE(store.writeFile(path, "first", &message)) << qPrintable(message);
    ASSERT_EQ(flushed.size(), 4);
    EXPECT_NE(flushed.first(), path) << "before it takes its place";
    EXPECT_TRUE(flushed.first().startsWith(home.root()));
    EXPECT_EQ(flushed.mid(1),
              (QStringList{home.path(u"/new/folders"_s), home.path(u"/new"_s), home.root()}));
    flushed.clear();
    ASSERT_TRUE(store.writeFile(path, "second", &message));
    EXPECT_EQ(flushed.mid(1), QStringList(home.path(u"/new/folders"_s)));

    flushError = EIO;
    EXPECT_FALSE(store.writeFile(path, "third", &message));
    flushError = 0;
    EXPECT_TRUE(message.startsWith(u"It did not reach the disk"_s));
    EXPECT_EQ(store.readFile(path, 10, &message), "second");
    EXPECT_EQ(QDir(home.path(u"/new/folders"_s)).entryList(QDir::Files | QDir::Hidden),
              QStringList(u"file"_s));
}

} // namespace tarnwell::tests
