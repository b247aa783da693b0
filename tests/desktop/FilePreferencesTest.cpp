#include "desktop/CapturedLog.h"
#include "desktop/ChildProcess.h"
#include "desktop/PreferencesHome.h"
#include "foundation/plist/Array.h"

#include <QElapsedTimer>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace tarnwell;
using namespace Qt::StringLiterals;
using desktop::FilePreferences;
using tests::CapturedLog;
using tests::ChildProcess;

namespace {

/// A limit on the size of files, which fails a write as a full disk does.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    rlimit m_before{};
};

class FilePreferencesTest : public tests::PreferencesHome
{};

mode_t modeOf(const QString &path)
{
    struct stat facts
    {};
    ::stat(QFile::encodeName(path).constData(), &facts);
    return facts.st_mode & 07777;
}

} // namespace

TEST_F(FilePreferencesTest, WritesStayPendingUntilSynchronised)
{
    FilePreferences writer(home(), clock);
    FilePreferences reader(home(), clock);
    writer.setAppValue(u"Disabled"_s, true, domain);
    EXPECT_EQ(writer.copyAppValue(u"Disabled"_s, domain), plist::Value(true));
    EXPECT_FALSE(QFile::exists(path()));
    EXPECT_TRUE(reader.copyAppValue(u"Disabled"_s, domain).isNull());

    ASSERT_TRUE(writer.appSynchronize(domain));
    EXPECT_TRUE(reader.copyAppValue(u"Disabled"_s, domain).isNull());
    ASSERT_TRUE(reader.appSynchronize(domain));
    EXPECT_EQ(reader.copyAppValue(u"Disabled"_s, domain), plist::Value(true));

    EXPECT_EQ(modeOf(path()), 0600u);
    EXPECT_EQ(modeOf(folder()), 0700u);
    EXPECT_EQ(filesInFolder(), QStringList{fileName()});
}

TEST_F(FilePreferencesTest, RemovesKeys)
{
    storeDomain({{u"Kept"_s, 1}, {u"Gone"_s, 2}});
    FilePreferences preferences(home(), clock);
    EXPECT_EQ(preferences.copyAppValue(u"Gone"_s, domain), plist::Value(2));
    preferences.setAppValue(u"Gone"_s, {}, domain);
    EXPECT_TRUE(preferences.copyAppValue(u"Gone"_s, domain).isNull());
    ASSERT_TRUE(preferences.appSynchronize(domain));
    EXPECT_EQ(storedDomain(), (plist::Dictionary{{u"Kept"_s, 1}}));
}

TEST_F(FilePreferencesTest, MergesWithWhatOthersStoredMeanwhile)
{
    FilePreferences ours(home(), clock);
    FilePreferences theirs(home(), clock);
    ours.setAppValue(u"Both"_s, 1, domain);
    ours.setAppValue(u"Ours"_s, 1, domain);
    ASSERT_TRUE(ours.appSynchronize(domain));
    theirs.setAppValue(u"Theirs"_s, 2, domain);
    theirs.setAppValue(u"Both"_s, 2, domain);
    ASSERT_TRUE(theirs.appSynchronize(domain));
    ours.setAppValue(u"Ours"_s, 3, domain);
    ASSERT_TRUE(ours.appSynchronize(domain));
    EXPECT_EQ(storedDomain(),
              (plist::Dictionary{{u"Both"_s, 2}, {u"Ours"_s, 3}, {u"Theirs"_s, 2}}));
}

TEST_F(FilePreferencesTest, DoesNotRewriteWhatIsStoredAlready)
{
    storeDomain({{u"Level"_s, 1}});
    FilePreferences preferences(home(), clock);
    struct stat first
    {
    }, second{}, third{};
    ::stat(QFile::encodeName(path()).constData(), &first);
    preferences.setAppValue(u"Level"_s, 1, domain);
    preferences.setAppValue(u"Absent"_s, {}, domain);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    ::stat(QFile::encodeName(path()).constData(), &second);
    EXPECT_EQ(first.st_ino, second.st_ino);

    // Equal as a number, but another type in the file.
    preferences.setAppValue(u"Level"_s, 1.0, domain);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    ::stat(QFile::encodeName(path()).constData(), &third);
    EXPECT_NE(first.st_ino, third.st_ino);
    EXPECT_TRUE(storedDomain().value(u"Level"_s).isReal());
}

TEST_F(FilePreferencesTest, SeesAFileThatIsRemoved)
{
    storeDomain({{u"Level"_s, 1}});
    FilePreferences preferences(home(), clock);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    ASSERT_TRUE(QFile::remove(path()));
    ASSERT_TRUE(preferences.appSynchronize(domain));
    EXPECT_TRUE(preferences.copyAppValue(u"Level"_s, domain).isNull());
}

TEST_F(FilePreferencesTest, RefusesNamesThatAreNoDomains)
{
    FilePreferences preferences(home(), clock);
    const QString names[] = {u""_s,  u"a/b"_s,     u"../a"_s,
                             u"."_s, u".hidden"_s, QString(u"a"_s + QChar() + u"b"_s)};
    for (const QString &name : names) {
        SCOPED_TRACE(name.toStdString());
        preferences.setAppValue(u"Key"_s, 1, name);
        EXPECT_FALSE(preferences.appSynchronize(name));
        EXPECT_TRUE(preferences.copyAppValue(u"Key"_s, name).isNull());
    }
    EXPECT_FALSE(QFile::exists(home() + u"/Library"_s));
}

TEST_F(FilePreferencesTest, SetsADamagedFileAside)
{
    struct Row
    {
        const char *name;
        QByteArray bytes;
    };
    const Row rows[] = {
        {"nothing in it", ""},
        {"cut binary",
         plist::write(plist::Dictionary{{u"A"_s, 1}}, plist::Format::Binary).chopped(3)},
        {"cut XML", "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>A</key>"},
        {"something else", "\x7f"
                           "ELF"},
        {"an array at the root", plist::write(plist::Array{1, 2}, plist::Format::Binary)},
    };
    clock.control().absoluteTime = 0.0;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QDir(folder()).removeRecursively();
        const CapturedLog log;
        ports::Preferences::StoreState state;
        // The second one of the same second must not replace the first.
        for (const QString &ending : {u""_s, u"-2"_s}) {
            writeFile(path(), row.bytes);
            FilePreferences preferences(home(), clock);
            preferences.setStoreHandler([&state](const QString &, const auto &s) { state = s; });
            ASSERT_TRUE(preferences.appSynchronize(domain));
            EXPECT_EQ(readFile(path()), row.bytes) << "only a write needs the place";
            preferences.setAppValue(u"New"_s, 1, domain);
            EXPECT_FALSE(preferences.appSynchronize(domain));
            EXPECT_EQ(readFile(path()), row.bytes) << "it may be in the making";
            EXPECT_EQ(state, (ports::Preferences::StoreState{{}, false, {}, true}));
            clock.control().steadyTime += 0.5;
            ASSERT_TRUE(preferences.appStorePending(domain));
            EXPECT_EQ(storedDomain(), (plist::Dictionary{{u"New"_s, 1}}));
            const QString aside = path() + u".damaged-20010101T000000Z"_s + ending;
            ASSERT_TRUE(QFile::exists(aside));
            EXPECT_EQ(readFile(aside), row.bytes);
            EXPECT_EQ(state, (ports::Preferences::StoreState{{}, false, aside, false}));
        }
        EXPECT_EQ(log.containing(u"are damaged"_s).size(), 2);
        EXPECT_EQ(log.containing(u"are kept as"_s).size(), 2);
    }
}

TEST_F(FilePreferencesTest, WaitsForAWriterThatRewritesTheFile)
{
    const QByteArray whole =
        plist::write(plist::Dictionary{{u"Old"_s, 1}, {u"Theirs"_s, 2}}, plist::Format::Binary);
    struct Step
    {
        double time;
        qsizetype length; ///< of what is there of the file by then; -1 for all
    };
    struct Row
    {
        const char *name;
        QList<Step> steps;
        bool isProblemSeen;
    };
    const Row rows[] = {
        {"emptied", {{0.0, 0}, {0.1, -1}}, false},
        {"at the last moment", {{0.0, 0}, {0.49, -1}}, false},
        {"in slow pieces", {{0.0, 0}, {0.4, 10}, {0.8, 20}, {1.2, -1}}, true},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QDir(folder()).removeRecursively();
        storeDomain({{u"Old"_s, 1}});
        const CapturedLog log;
        FilePreferences preferences(home(), clock);
        ports::Preferences::StoreState state;
        bool isProblemSeen = false;
        preferences.setStoreHandler([&](const QString &, const auto &latest) {
            state = latest;
            isProblemSeen = isProblemSeen || !latest.problem.isEmpty();
        });
        ASSERT_TRUE(preferences.appSynchronize(domain));
        preferences.setAppValue(u"Ours"_s, 3, domain);
        const double start = clock.control().steadyTime;
        for (const Step &step : row.steps) {
            EXPECT_EQ(preferences.copyAppValue(u"Old"_s, domain), plist::Value(1));
            clock.control().steadyTime = start + step.time;
            writeFile(path(), step.length < 0 ? whole : whole.first(step.length));
            EXPECT_EQ(preferences.appStorePending(domain), step.length < 0);
        }
        EXPECT_EQ(storedDomain(),
                  (plist::Dictionary{{u"Old"_s, 1}, {u"Theirs"_s, 2}, {u"Ours"_s, 3}}));
        EXPECT_EQ(filesInFolder(), QStringList{fileName()});
        EXPECT_EQ(state, ports::Preferences::StoreState());
        EXPECT_EQ(isProblemSeen, row.isProblemSeen);
        EXPECT_EQ(log.lines().size(), row.isProblemSeen ? 1 : 0);
    }
}

TEST_F(FilePreferencesTest, KeepsWhatWasSeenBeforeTheDamage)
{
    storeDomain({{u"Old"_s, 1}});
    const CapturedLog log;
    FilePreferences preferences(home(), clock);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    writeFile(path(), "damage");
    ASSERT_TRUE(preferences.appSynchronize(domain));
    EXPECT_EQ(log.lines().size(), 0);
    clock.control().advance(0.5);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    ASSERT_TRUE(preferences.appSynchronize(domain));
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_EQ(preferences.copyAppValue(u"Old"_s, domain), plist::Value(1));
    preferences.setAppValue(u"New"_s, 2, domain);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    EXPECT_EQ(storedDomain(), (plist::Dictionary{{u"Old"_s, 1}, {u"New"_s, 2}}));
}

TEST_F(FilePreferencesTest, FailsOnAFullDiskAndKeepsTheOldFile)
{
    storeDomain({{u"Old"_s, 1}});
    const QByteArray before = readFile(path());
    const CapturedLog log;
    FilePreferences preferences(home(), clock);
    preferences.setAppValue(u"Long"_s, u"x"_s.repeated(100000), domain);
    {
        const FullDisk disk(4096);
        EXPECT_FALSE(preferences.appSynchronize(domain));
        EXPECT_FALSE(preferences.appSynchronize(domain));
    }
    EXPECT_EQ(log.lines().size(), 1) << "the same failure is said once";
    EXPECT_EQ(readFile(path()), before);
    EXPECT_EQ(filesInFolder(), QStringList{fileName()});
    EXPECT_EQ(preferences.copyAppValue(u"Long"_s, domain).toString().size(), 100000);

    EXPECT_TRUE(preferences.appStorePending(domain)) << "once there is room again";
    EXPECT_EQ(storedDomain().value(u"Long"_s).toString().size(), 100000);
}

TEST_F(FilePreferencesTest, AWriteThatWaitedTakesNothingAway)
{
    const plist::Value two(plist::Dictionary{{u"A"_s, 1}, {u"B"_s, 2}});
    const plist::Value one(plist::Dictionary{{u"A"_s, 1}});
    const plist::Value news(plist::Dictionary{{u"A"_s, 1}, {u"B"_s, 2}, {u"C"_s, 3}});
    struct Row
    {
        const char *name;
        plist::Value seen;
        plist::Value written;
        plist::Value meanwhile;
        bool isLost;
    };
    const Row rows[] = {
        {"a dictionary with more in it", two, one, news, true},
        {"an array with more in it", plist::Array{1}, plist::Array{}, plist::Array{1, 2}, true},
        {"the removal of one", two, {}, news, true},
        {"one that was removed", two, one, {}, true},
        {"one that is as it was", two, one, two, false},
        {"one with the same change", two, one, one, false},
        {"a single value", 1, 2, 3, true},
        {"a single value of another type", 1, 2, 1.0, true},
        {"a single value that was removed", 1, 2, {}, true},
        {"a removal", 1, {}, 3, true},
        {"a new value", {}, 2, 3, true},
        {"a single value that is as it was", 1, 2, 1, false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QDir(folder()).removeRecursively();
        storeDomain({{u"Key"_s, row.seen}});
        FilePreferences ours(home(), clock);
        ports::Preferences::StoreState state;
        ours.setStoreHandler([&state](const QString &, const auto &latest) { state = latest; });
        ASSERT_TRUE(ours.appSynchronize(domain));
        ours.setAppValue(u"Key"_s, row.written, domain);
        ours.setAppValue(u"Other"_s, 1, domain);
        {
            const FullDisk disk(1);
            EXPECT_FALSE(ours.appSynchronize(domain));
        }
        EXPECT_FALSE(state.problem.isEmpty());
        storeDomain({{u"Key"_s, row.meanwhile}});
        const QByteArray theirs = readFile(path());
        EXPECT_FALSE(ours.appSynchronize(domain));
        EXPECT_EQ(readFile(path()), theirs) << "without a new write, nothing is stored";
        EXPECT_EQ(state.isOvertaken, row.isLost);
        EXPECT_TRUE(ours.appStorePending(domain));
        const plist::Value &expected = row.isLost ? row.meanwhile : row.written;
        EXPECT_EQ(storedDomain().value(u"Key"_s), expected);
        EXPECT_EQ(ours.copyAppValue(u"Key"_s, domain), expected);
        EXPECT_EQ(storedDomain().value(u"Other"_s), plist::Value(1));
        EXPECT_EQ(state, (ports::Preferences::StoreState{{}, row.isLost, {}}));
        ours.setAppValue(u"Other"_s, 2, domain);
        ASSERT_TRUE(ours.appSynchronize(domain));
        EXPECT_FALSE(state.isOvertaken);
    }
}

TEST_F(FilePreferencesTest, AListMadeWithoutTheStoredOneDoesNotReplaceIt)
{
    storeDomain({{u"List"_s, plist::Array{1, 2}}});
    const QString away = path() + u".away"_s;
    ASSERT_TRUE(QFile::rename(path(), away));
    ASSERT_TRUE(QFile::link(path(), path())); // cannot be read
    FilePreferences preferences(home(), clock);
    preferences.setAppValue(u"List"_s, plist::Array{3}, domain);
    preferences.setAppValue(u"Level"_s, 4, domain);
    EXPECT_FALSE(preferences.appSynchronize(domain));
    ASSERT_TRUE(QFile::remove(path()) && QFile::rename(away, path()));
    EXPECT_FALSE(preferences.appStorePending(domain));
    EXPECT_EQ(storedDomain(),
              (plist::Dictionary{{u"List"_s, plist::Array{1, 2}}, {u"Level"_s, 4}}));
}

TEST_F(FilePreferencesTest, AnUpdateStartsAgainFromWhatOthersStored)
{
    FilePreferences ours(home(), clock);
    FilePreferences theirs(home(), clock);
    const auto add = [](int number) {
        return [number](const plist::Value &present) -> std::optional<plist::Value> {
            plist::Array list = present.toArray();
            list.append(number);
            return list;
        };
    };
    int asked = 0;
    EXPECT_TRUE(ours.updateAppValue(u"List"_s, domain, [&](const plist::Value &present) {
        if (++asked <= 2)
            theirs.updateAppValue(u"List"_s, domain, add(asked));
        return add(9)(present);
    }));
    EXPECT_EQ(storedDomain().value(u"List"_s), plist::Value(plist::Array{1, 2, 9}));
    EXPECT_TRUE(
        ours.updateAppValue(u"List"_s, domain, [](const plist::Value &) { return std::nullopt; }));
}

// Obstacles that stop the superuser, too.
TEST_F(FilePreferencesTest, FailsWhereNothingCanBeWritten)
{
    struct Row
    {
        const char *name;
        std::function<void()> prepare;
    };
    const auto mkdir = [](const QString &name) { ASSERT_TRUE(QDir().mkpath(name)); };
    const Row rows[] = {
        {"the Library folder is a file", [&] { writeFile(home() + u"/Library"_s, "plain"); }},
        {"the preferences folder is a file", [&] { writeFile(folder(), "plain"); }},
        {"the preferences folder is a dangling link",
         [&] {
             mkdir(home() + u"/Library"_s);
             ASSERT_TRUE(QFile::link(home() + u"/nowhere"_s, folder()));
         }},
        {"a folder has the file's name", [&] { mkdir(path()); }},
        {"a pipe has the file's name",
         [&] {
             mkdir(folder());
             ASSERT_EQ(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
         }},
        {"the file links to itself",
         [&] {
             mkdir(folder());
             ASSERT_TRUE(QFile::link(path(), path()));
         }},
        {"the lock is a link",
         [&] {
             mkdir(folder());
             ASSERT_TRUE(QFile::link(home() + u"/elsewhere"_s,
                                     folder() + u"/."_s + fileName() + u".lock"_s));
         }},
        {"the home folder is missing", [&] { QDir(home()).removeRecursively(); }},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const CapturedLog log;
        QDir(home()).removeRecursively();
        mkdir(home());
        row.prepare();
        const QStringList before = QDir(home()).entryList();
        FilePreferences preferences(home(), clock);
        EXPECT_TRUE(preferences.copyAppValue(u"Key"_s, domain).isNull());
        preferences.setAppValue(u"Key"_s, 1, domain);
        EXPECT_FALSE(preferences.appSynchronize(domain));
        EXPECT_EQ(preferences.copyAppValue(u"Key"_s, domain), plist::Value(1));
        EXPECT_EQ(QDir(home()).entryList(), before);
        EXPECT_EQ(log.lines().size(), 1);
    }
}

TEST_F(FilePreferencesTest, GivesUpOnALockThatIsNotLetGo)
{
    storeDomain({{u"Old"_s, 1}});
    const QByteArray before = readFile(path());
    const CapturedLog log;
    FilePreferences preferences(home(), clock);
    preferences.setAppValue(u"New"_s, 2, domain);
    {
        ChildProcess holder({TARNWELL_PREFERENCES_PEER, "hold", QFile::encodeName(path())});
        ASSERT_EQ(holder.readLine(), "0");
        QElapsedTimer time;
        time.start();
        EXPECT_FALSE(preferences.appSynchronize(domain));
        EXPECT_FALSE(preferences.appStorePending(domain));
        // Far more than it may take, so that a busy machine does not matter.
        EXPECT_LT(time.elapsed(), 2000);
        EXPECT_EQ(readFile(path()), before);
        EXPECT_EQ(log.lines().size(), 1);
    }
    EXPECT_TRUE(preferences.appStorePending(domain));
    EXPECT_EQ(storedDomain().value(u"New"_s), plist::Value(2));
}

TEST_F(FilePreferencesTest, ClearsAwayWhatADeadWriterLeft)
{
    const QString abandoned = u'.' + fileName() + u".tmp-123-abc"_s;
    const QString foreign = u".com.varnit.tarnwell.other.plist.tmp-123-abc"_s;
    writeFile(folder() + u'/' + abandoned, "half");
    writeFile(folder() + u'/' + foreign, "half");
    FilePreferences preferences(home(), clock);
    preferences.setAppValue(u"New"_s, 2, domain);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    EXPECT_EQ(filesInFolder(), (QStringList{foreign, fileName()}));
}
