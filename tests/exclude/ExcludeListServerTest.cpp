// The download against servers in processes of their own, into real files.

#include "desktop/BundleCache.h"
#include "desktop/ChildProcess.h"
#include "desktop/FilePreferences.h"
#include "desktop/LocalFileManager.h"
#include "desktop/ProcessTasks.h"
#include "desktop/QtHttpFetcher.h"
#include "exclude/ExcludeListDownload.h"
#include "fakes/FakeClock.h"
#include "foundation/plist/PropertyList.h"
#include "support/RowName.h"
#include "support/TemporaryHome.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarnwell::tests {

namespace {

constexpr QLatin1StringView domain{"com.varnit.tarnwell"};
constexpr QLatin1StringView timeKey{"ExcludeListLastInternetCheck"};
constexpr double now = 700000000.0; ///< since 2001
constexpr qint64 nowSince1970 = 1678307200;
constexpr qint64 longAgo = nowSince1970 - 40000000;

/// A server, killed with this object.
class Server
{
public:
    explicit Server(bool encrypted)
        : m_scheme(encrypted ? u"https"_s : u"http"_s)
        , m_process(encrypted ? QList<QByteArray>{"python3", TARNWELL_HTTP_SERVER,
                                                  TARNWELL_LOOPBACK_CERTIFICATE}
                              : QList<QByteArray>{"python3", TARNWELL_HTTP_SERVER})
        , m_port(m_process.readLine().toInt())
    {}

    QUrl address(const QString &behaviour) const
    {
        return QUrl(
            u"%1://127.0.0.1:%2/%3/goto/excludelist/tarnwell/"_s.arg(m_scheme).arg(m_port).arg(
                behaviour));
    }

private:
    QString m_scheme;
    ChildProcess m_process;
    int m_port;
};

QByteArray certificate()
{
    QFile file(QStringLiteral(TARNWELL_LOOPBACK_CERTIFICATE));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A home whose last download is due for another.
class DueHome
{
public:
    static constexpr QLatin1StringView fileName{
        "~/Library/Application Support/Varnit/Tarnwell/HardcodedExcludeList.plist"};

    DueHome()
    {
        m_clock.control().absoluteTime = now;
        m_preferences.setAppValue(timeKey, longAgo, domain);
        m_preferences.appSynchronize(domain);
    }

    void refresh(ports::HttpFetcher &fetcher, const QUrl &address)
    {
        exclude::refreshPredefinedList({m_preferences, m_clock, m_fileManager, fetcher, m_tasks},
                                       domain, address);
    }

    qint64 recordedTime()
    {
        m_preferences.appSynchronize(domain);
        return m_preferences.appIntegerValue(timeKey, domain);
    }
    QString file() const { return disk.path(fileName); }
    /// What is in the file; null without one.
    plist::Value list() const
    {
        QFile list(file());
        return list.open(QIODevice::ReadOnly) ? plist::read(list.readAll()) : plist::Value();
    }

    TemporaryHome disk;

private:
    fakes::FakeClock m_clock;
    desktop::FilePreferences m_preferences{disk.home(), m_clock};
    desktop::BundleCache m_bundles;
    desktop::LocalFileManager m_fileManager{{disk.home(), disk.root()}, m_bundles};
    desktop::ProcessTasks m_tasks;
};

plist::Value listOf(const QString &identifier)
{
    return plist::Array{plist::Dictionary{{u"ID"_s, identifier}}};
}

const plist::Value served = listOf(u"com.example.scribe"_s);

struct Answer
{
    const char *name;
    const char *behaviour;
    bool encrypted;
    bool taken;
    bool endsByTime = false;
};

const Answer answers[] = {
    {"List", "list", false, true},
    {"ListOverTls", "list", true, true},
    {"BinaryList", "binary", false, true},
    {"Html", "html", false, false},
    {"BrokenOffConnection", "broken-off", false, false},
    {"Dictionary", "dictionary", false, false},
    {"TooMuchIsAnnounced", "large", false, false},
    {"TooMuchIsStreamed", "endless", false, false},
    {"BytePerSecond", "slow", false, false, true},
    {"NoAnswer", "silent", false, false, true},
    {"ServerError", "error", false, false},
    {"RedirectLoop", "loop", true, false},
    {"RedirectToTheSameHost", "moved", true, true},
    {"RedirectToAnotherHost", "elsewhere", true, false},
    {"RedirectToNoEncryption", "unencrypted", true, false},
};

} // namespace

class ServerAnswer : public testing::TestWithParam<Answer>
{};

TEST_P(ServerAnswer, IsTakenOrLeavesEverythingAsItWas)
{
    const Answer &row = GetParam();
    const Server server(row.encrypted);
    desktop::HttpLimits limits;
    if (row.endsByTime)
        limits.time = 300ms;
    desktop::QtHttpFetcher fetcher(limits, certificate());
    DueHome home;
    QElapsedTimer timer;
    timer.start();
    home.refresh(fetcher, server.address(QString::fromLatin1(row.behaviour)));
    EXPECT_LT(timer.elapsed(), std::chrono::milliseconds(desktop::HttpLimits().time).count());
    EXPECT_EQ(home.recordedTime(), row.taken ? nowSince1970 : longAgo);
    EXPECT_EQ(home.list(), row.taken ? served : plist::Value());
    EXPECT_EQ(QFile::exists(home.file()), row.taken);
}

INSTANTIATE_TEST_SUITE_P(ExcludeListServer, ServerAnswer, testing::ValuesIn(answers), RowName());

TEST(ExcludeListServer, IsNotTrustedWithoutAKnownCertificate)
{
    const Server server(true);
    desktop::QtHttpFetcher fetcher;
    EXPECT_EQ(fetcher.fetch(server.address(u"list"_s)), std::nullopt);
}

TEST(ExcludeListServer, NobodyListeningAndAddressesOfOtherKindsAreNothing)
{
    int port = 0;
    {
        const Server gone(false);
        port = gone.address(u"list"_s).port();
    }
    desktop::QtHttpFetcher fetcher;
    for (const QString &address :
         {u"http://127.0.0.1:%1/"_s.arg(port), u"https://list.invalid/"_s,
          QUrl::fromLocalFile(QStringLiteral(TARNWELL_HTTP_SERVER)).toString(), u"data:,x"_s,
          QString()})
        EXPECT_EQ(fetcher.fetch(QUrl(address)), std::nullopt) << address.toStdString();
}

TEST(ExcludeListServer, AFailedFetchKeepsTheListOfLastYear)
{
    const Server server(false);
    desktop::QtHttpFetcher fetcher;
    DueHome home;
    const plist::Value old = listOf(u"old"_s);
    home.disk.write(DueHome::fileName, plist::write(old, plist::Format::Xml));
    home.refresh(fetcher, server.address(u"html"_s));
    EXPECT_EQ(home.list(), old);
    home.refresh(fetcher, server.address(u"list"_s));
    EXPECT_EQ(home.list(), served) << "the folder was there, and the file is replaced";
}

TEST(ExcludeListServer, AFileThatCannotBeWrittenStillCountsAsACheck)
{
    const Server server(false);
    desktop::QtHttpFetcher fetcher;
    const struct
    {
        const char *name;
        void (*obstruct)(const DueHome &);
    } rows[] = {
        {"a file where the folder should be",
         [](const DueHome &home) {
             home.disk.write(u"~/Library/Application Support/Varnit"_s, "in the way");
         }},
        {"a folder in its place", [](const DueHome &home) { QDir().mkpath(home.file()); }},
        {"a pipe in its place",
         [](const DueHome &home) {
             QDir().mkpath(QFileInfo(home.file()).path());
             EXPECT_EQ(::mkfifo(QFile::encodeName(home.file()).constData(), 0600), 0);
         }},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        DueHome home;
        row.obstruct(home);
        home.refresh(fetcher, server.address(u"list"_s));
        EXPECT_EQ(home.recordedTime(), nowSince1970);
    }
}

} // namespace tarnwell::tests
