// What only real processes show: lost writes, kills in mid-write, files of other programs.

#include "desktop/ChildProcess.h"
#include "desktop/PreferencesHome.h"
#include "foundation/plist/Array.h"

#include <QProcess>

#include <random>

using namespace tarnwell;
using namespace Qt::StringLiterals;
using desktop::FilePreferences;
using tests::ChildProcess;

namespace {

class FilePreferencesProcessesTest : public tests::PreferencesHome
{
protected:
    QByteArray homeName() const { return QFile::encodeName(home()); }
    QByteArray domainName() const { return QFile::encodeName(domain); }

    /// Runs a Python program that finds the domain's path in sys.argv[1]; its output.
    QByteArray python(const QString &program) const
    {
        QDir().mkpath(folder());
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(u"python3"_s, {u"-c"_s, program, path()});
        EXPECT_TRUE(process.waitForFinished(60000) && process.exitCode() == 0);
        return process.readAllStandardOutput().trimmed();
    }
};

} // namespace

TEST_F(FilePreferencesProcessesTest, TwoWritersLoseNothing)
{
    constexpr int count = 1000;
    ChildProcess first({TARNWELL_PREFERENCES_PEER, "add", homeName(), domainName(), "a", "1000"});
    ChildProcess second({TARNWELL_PREFERENCES_PEER, "add", homeName(), domainName(), "b", "1000"});
    ASSERT_EQ(first.wait(), 0);
    ASSERT_EQ(second.wait(), 0);

    const plist::Dictionary stored = storedDomain();
    EXPECT_EQ(stored.size(), 2 * (count + 1));
    for (const QString &prefix : {u"a"_s, u"b"_s}) {
        EXPECT_EQ(stored.value(prefix), plist::Value(count));
        for (int i = 1; i <= count; ++i)
            EXPECT_EQ(stored.value(prefix + QString::number(i)), plist::Value(i));
    }
    EXPECT_EQ(filesInFolder(), QStringList{fileName()});
}

TEST_F(FilePreferencesProcessesTest, AKillLeavesTheLastOrTheInterruptedWrite)
{
    std::minstd_rand random(20010101);
    int stored = 0;
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        ChildProcess writer({TARNWELL_PREFERENCES_PEER, "pair", homeName(), domainName(),
                             QByteArray::number(stored + 1)});
        const int reports = 1 + int(random() % 3);
        int reported = 0;
        for (int i = 0; i < reports; ++i)
            reported = writer.readLine().toInt();
        volatile unsigned spin = unsigned(random() % 3'000'000);
        while (spin > 0)
            spin = spin - 1;
        writer.kill();
        for (QByteArray line = writer.readLine(); !line.isEmpty(); line = writer.readLine())
            reported = line.toInt();

        const plist::Value root = plist::read(readFile(path()));
        ASSERT_TRUE(root.isDictionary());
        stored = int(root.toDictionary().value(u"number"_s).toInteger());
        ASSERT_TRUE(stored == reported || stored == reported + 1) << stored << " " << reported;
        ASSERT_EQ(root.toDictionary().value(u"text"_s).toString(),
                  QString::number(stored).repeated(20000));
    }
    // Whatever the last of them left lies about until the next one writes.
    FilePreferences preferences(home(), clock);
    preferences.setAppValue(u"number"_s, 0, domain);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    EXPECT_EQ(filesInFolder(), QStringList{fileName()});
}

TEST_F(FilePreferencesProcessesTest, ReadsDomainsOfOtherPrograms)
{
    for (const QString &format : {u"FMT_BINARY"_s, u"FMT_XML"_s}) {
        SCOPED_TRACE(format.toStdString());
        python(u"import plistlib, sys, datetime\n"
               "plistlib.dump({'Disabled': True, 'Level': 3, 'Share': 0.25, 'Name': 'Zo\\u00eb "
               "\\U0001f600',"
               " 'Data': b'\\x00\\xff', 'When': datetime.datetime(2001, 1, 1, 0, 1, 0),"
               " 'List': [1, 'two', {}]}, open(sys.argv[1], 'wb'), fmt=plistlib.%1)"_s.arg(format));
        FilePreferences preferences(home(), clock);
        const auto value = [&](const QString &key) {
            return preferences.copyAppValue(key, domain);
        };
        EXPECT_EQ(value(u"Disabled"_s), plist::Value(true));
        EXPECT_EQ(value(u"Level"_s), plist::Value(3));
        EXPECT_EQ(value(u"Share"_s), plist::Value(0.25));
        EXPECT_EQ(value(u"Name"_s), plist::Value(u"Zoë 😀"_s));
        EXPECT_EQ(value(u"Data"_s), plist::Value(QByteArray("\0\xff", 2)));
        EXPECT_EQ(value(u"When"_s), plist::Value(plist::Date{60.0}));
        EXPECT_EQ(value(u"List"_s), plist::Value(plist::Array{1, u"two"_s, plist::Dictionary()}));
    }
}

TEST_F(FilePreferencesProcessesTest, LeavesUnknownKeysAsTheyWere)
{
    const QString foreign =
        u"{'A': True, 'B': False, 'C': 1, 'D': 1.0, 'E': 2**63 - 1, 'F': -2**63,"
        " 'G': 2**64 - 1, 'H': 1e300, 'I': b'', 'J': bytes(range(256)) * 20,"
        " 'K': '', 'L': 'Zo\\u00eb \\U0001f600\\n\\t<&>', 'M': [], 'N': {},"
        " 'O': [[{'deep': [b'x', '']}]], 'P': datetime.datetime(1999, 12, 31, 23, 59, 58),"
        " '': 'empty key', 'Q': plistlib.UID(7)}"_s;
    python(u"import plistlib, sys, datetime\n"
           "plistlib.dump(%1, open(sys.argv[1], 'wb'), fmt=plistlib.FMT_BINARY)"_s.arg(foreign));
    FilePreferences preferences(home(), clock);
    preferences.setAppValue(u"Ours"_s, 1, domain);
    ASSERT_TRUE(preferences.appSynchronize(domain));
    EXPECT_EQ(
        python(u"import plistlib, sys, datetime\n"
               "expected = %1\n"
               "expected['Ours'] = 1\n"
               "found = plistlib.load(open(sys.argv[1], 'rb'))\n"
               "same = lambda a, b: type(a) is type(b) and a == b\n"
               "print(sorted(set(expected) ^ set(found)),"
               " [k for k in expected if k in found and not same(expected[k], found[k])])"_s.arg(
                   foreign)),
        "[] []");
}
