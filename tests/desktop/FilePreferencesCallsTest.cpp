// Counts the system calls of a synchronise, and does something in the midst of them. The functions
// below stand before those of the C library, so that the store calls them.

#include "desktop/PreferencesHome.h"

#include <dlfcn.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cstdarg>
#include <fcntl.h>

using namespace tarnwell;
using namespace Qt::StringLiterals;
using desktop::FilePreferences;

namespace {

struct Calls
{
    int stats = 0;
    int others = 0;

    friend bool operator==(const Calls &, const Calls &) = default;
};

Calls calls;
std::function<void()> afterSync; ///< at the end of every fsync()

template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

Calls counted(const std::function<void()> &work)
{
    calls = {};
    work();
    return calls;
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

int stat(const char *path, struct stat *facts) noexcept
{
    ++calls.stats;
    return next<int(const char *, struct stat *)>("stat")(path, facts);
}

int lstat(const char *path, struct stat *facts) noexcept
{
    ++calls.stats;
    return next<int(const char *, struct stat *)>("lstat")(path, facts);
}

int fstat(int fd, struct stat *facts) noexcept
{
    ++calls.stats;
    return next<int(int, struct stat *)>("fstat")(fd, facts);
}

int fstatat(int folder, const char *path, struct stat *facts, int flags) noexcept
{
    ++calls.stats;
    return next<int(int, const char *, struct stat *, int)>("fstatat")(folder, path, facts, flags);
}

int open(const char *path, int flags, ...)
{
    ++calls.others;
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return next<int(const char *, int, ...)>("open")(path, flags, mode);
}

int openat(int folder, const char *path, int flags, ...)
{
    ++calls.others;
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return next<int(int, const char *, int, ...)>("openat")(folder, path, flags, mode);
}

ssize_t pread(int fd, void *bytes, size_t size, off_t offset)
{
    ++calls.others;
    return next<ssize_t(int, void *, size_t, off_t)>("pread")(fd, bytes, size, offset);
}

ssize_t readlink(const char *path, char *text, size_t size) noexcept
{
    ++calls.others;
    return next<ssize_t(const char *, char *, size_t)>("readlink")(path, text, size);
}

int flock(int fd, int operation) noexcept
{
    ++calls.others;
    return next<int(int, int)>("flock")(fd, operation);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    ++calls.others;
    return next<int(const char *, mode_t)>("mkdir")(path, mode);
}

int fsync(int fd)
{
    ++calls.others;
    const int result = next<int(int)>("fsync")(fd);
    if (afterSync)
        afterSync();
    return result;
}

} // extern "C"
#pragma GCC visibility pop

namespace {

class FilePreferencesCallsTest : public tests::PreferencesHome
{};

} // namespace

TEST_F(FilePreferencesCallsTest, AnUnchangedDomainCostsOneStat)
{
    const Calls oneStat{1, 0};
    FilePreferences preferences(home(), clock);
    const auto synchronize = [&] { ASSERT_TRUE(preferences.appSynchronize(domain)); };
    EXPECT_GT(counted(synchronize).others, 0) << "the counters must see the store";
    EXPECT_EQ(counted(synchronize), oneStat) << "no file";

    preferences.setAppValue(u"Key"_s, 1, domain);
    EXPECT_GT(counted(synchronize).others, 5);
    EXPECT_EQ(counted(synchronize), oneStat) << "our own write";
    preferences.setAppValue(u"Key"_s, 1, domain);
    EXPECT_EQ(counted(synchronize), oneStat) << "a write of what is there";

    storeDomain({{u"Key"_s, 2}});
    EXPECT_GT(counted(synchronize).others, 1);
    EXPECT_EQ(counted(synchronize), oneStat) << "another's write";
    const auto copy = [&] {
        EXPECT_EQ(preferences.copyAppValue(u"Key"_s, domain), plist::Value(2));
    };
    EXPECT_EQ(counted(copy), (Calls{0, 0}));

    writeFile(path(), "damage");
    EXPECT_GT(counted(synchronize).others, 1);
    EXPECT_EQ(counted(synchronize), oneStat) << "a damaged file";
}

TEST_F(FilePreferencesCallsTest, StartsAgainWhenAWriterWithoutTheLockWasFaster)
{
    struct Row
    {
        const char *name;
        int times;
        bool isStored;
    };
    for (const Row &row :
         {Row{"once", 1, true}, {"thrice", 3, true}, {"again and again", 99, false}}) {
        SCOPED_TRACE(row.name);
        storeDomain({{u"Theirs"_s, 0}});
        FilePreferences preferences(home(), clock);
        ASSERT_TRUE(preferences.appSynchronize(domain));
        int theirs = 0;
        afterSync = [&] {
            if (theirs < row.times)
                storeDomain({{u"Theirs"_s, ++theirs}});
        };
        preferences.setAppValue(u"Ours"_s, 1, domain);
        EXPECT_EQ(preferences.appSynchronize(domain), row.isStored);
        afterSync = nullptr;
        EXPECT_EQ(storedDomain().value(u"Theirs"_s), plist::Value(theirs));
        EXPECT_EQ(storedDomain().contains(u"Ours"_s), row.isStored);
        EXPECT_EQ(filesInFolder(), QStringList{fileName()});
        EXPECT_TRUE(preferences.appStorePending(domain));
        EXPECT_EQ(storedDomain(), (plist::Dictionary{{u"Theirs"_s, theirs}, {u"Ours"_s, 1}}));
    }
}
