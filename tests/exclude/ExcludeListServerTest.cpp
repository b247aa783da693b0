// The download against servers in processes of their own, into real files.

#include "desktop/BundleCache.h"
#include "desktop/ChildProcess.h"
#include "desktop/FilePreferences.h"
#include "desktop/LocalFileManager.h"
#include "desktop/ProcessHttpFetcher.h"
#include "desktop/ProcessTasks.h"
#include "exclude/ExcludeListDownload.h"
#include "fakes/FakeClock.h"
#include "foundation/plist/PropertyList.h"
#include "support/RowName.h"
#include "support/TemporaryHome.h"

#include <QElapsedTimer>
#include <QTest>

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

/// The server of all tests here, for as long as they run.
class Server
{
public:
    Server()
    {
        const QList<QByteArray> ports = m_process.readLine().split(' ');
        m_plain = ports.value(0).toInt();
        m_encrypted = ports.value(1).toInt();
    }

    /// Of a page at a host that is this machine.
    QUrl address(const QString &behaviour, bool encrypted = false,
                 const QString &host = u"localhost"_s) const
    {
        return QUrl(u"%1://%2:%3/%4/goto/excludelist/tarnwell/"_s.arg(
            encrypted ? u"https"_s : u"http"_s, host,
            QString::number(encrypted ? m_encrypted : m_plain), behaviour));
    }

private:
    ChildProcess m_process{{"python3", TARNWELL_HTTP_SERVER, TARNWELL_LOOPBACK_CERTIFICATE}};
    int m_plain = 0;
    int m_encrypted = 0;
};

const Server &server()
{
    static const Server it;
    return it;
}

desktop::ProcessHttpFetcher makeFetcher(const desktop::HttpLimits &limits = {})
{
    return desktop::ProcessHttpFetcher(QStringLiteral(TARNWELL_FETCH_LIST), limits,
                                       QStringLiteral(TARNWELL_LOOPBACK_CERTIFICATE));
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
        const exclude::DownloadServices services{m_preferences, m_clock, m_fileManager, m_tasks};
        if (exclude::isDownloadDue(services, domain))
            exclude::storeDownload(services, domain, fetcher.fetchList(address));
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
    {"ChunkOfFourGigabytes", "chunk", false, false},
    {"EndlessHeaders", "headers", false, false},
    {"EndlessHeader", "one-header", false, false},
    {"EndlessContinue", "continue", false, false},
    {"BytePerSecond", "slow", false, false, true},
    {"NoAnswer", "silent", false, false, true},
    {"ServerError", "error", false, false},
    {"RedirectToEncryption", "1", false, true},
    {"FiveRedirectsToTwoHosts", "5", true, true},
    {"SixRedirects", "6", true, false},
    {"RedirectLoop", "loop", true, false},
    {"RedirectToNoEncryption", "unencrypted", true, false},
};

} // namespace

class ServerAnswer : public testing::TestWithParam<Answer>
{};

TEST_P(ServerAnswer, IsTakenOrLeavesEverythingAsItWas)
{
    const Answer &row = GetParam();
    desktop::HttpLimits limits;
    if (row.endsByTime)
        limits.time = 300ms;
    auto fetcher = makeFetcher(limits);
    DueHome home;
    QElapsedTimer timer;
    timer.start();
    home.refresh(fetcher, server().address(QString::fromLatin1(row.behaviour), row.encrypted));
    EXPECT_LT(timer.elapsed(), std::chrono::milliseconds(desktop::HttpLimits().time).count());
    EXPECT_EQ(home.recordedTime(), row.taken ? nowSince1970 : longAgo);
    EXPECT_EQ(home.list(), row.taken ? served : plist::Value());
    EXPECT_EQ(QFile::exists(home.file()), row.taken);
}

TEST_P(ServerAnswer, KeepsNobodyWaitingInTheBackground)
{
    const Answer &row = GetParam();
    desktop::HttpLimits limits;
    if (row.endsByTime)
        limits.time = 300ms;
    auto fetcher = makeFetcher(limits);
    std::optional<std::optional<QByteArray>> told;
    const auto fetch = fetcher.startFetchingList(
        server().address(QString::fromLatin1(row.behaviour), row.encrypted),
        [&told](const std::optional<QByteArray> &list) { told = list; });
    EXPECT_FALSE(told) << "before the run loop had a turn";
    ASSERT_TRUE(QTest::qWaitFor([&told] { return told.has_value(); }));
    EXPECT_EQ(told->has_value(), row.taken);
}

INSTANTIATE_TEST_SUITE_P(ExcludeListServer, ServerAnswer, testing::ValuesIn(answers), RowName());

TEST(ExcludeListServer, IsGivenUpAtOnce)
{
    auto fetcher = makeFetcher();
    bool isTold = false;
    QElapsedTimer timer;
    auto fetch = fetcher.startFetchingList(server().address(u"silent"_s),
                                           [&isTold](const auto &) { isTold = true; });
    QCoreApplication::processEvents(); // which starts it
    timer.start();
    fetch.reset();
    EXPECT_LT(timer.elapsed(), std::chrono::milliseconds(desktop::HttpLimits().time).count());
    QCoreApplication::processEvents();
    EXPECT_FALSE(isTold);
}

TEST(ExcludeListServer, IsNotAskedWithoutAProgramOrAnAddressOrTrust)
{
    const QString program = QStringLiteral(TARNWELL_FETCH_LIST);
    const QUrl good = server().address(u"list"_s, true);
    const struct
    {
        const char *name;
        desktop::ProcessHttpFetcher fetcher;
        QUrl address;
    } rows[] = {
        {"an unknown authority", desktop::ProcessHttpFetcher(program), good},
        {"no program", desktop::ProcessHttpFetcher(u"/nonexistent"_s), good},
        {"nobody listening", makeFetcher(), QUrl(u"http://127.0.0.1:1/"_s)},
        {"no such host", makeFetcher(), QUrl(u"https://list.invalid/"_s)},
        {"a plain connection", makeFetcher(),
         server().address(u"list"_s, false, u"list.localhost"_s)},
        {"a file", makeFetcher(), QUrl::fromLocalFile(QStringLiteral(TARNWELL_HTTP_SERVER))},
        {"no address", makeFetcher(), QUrl()},
    };
    for (auto [name, fetcher, address] : rows) {
        EXPECT_EQ(fetcher.fetchList(address), std::nullopt) << name;
        int told = 0;
        const auto fetch = fetcher.startFetchingList(
            address, [&told](const auto &list) { told += list ? 100 : 1; });
        EXPECT_TRUE(QTest::qWaitFor([&told] { return told > 0; })) << name;
        EXPECT_EQ(told, 1) << name;
    }
}

TEST(ExcludeListServer, AFailedFetchKeepsTheListOfLastYear)
{
    auto fetcher = makeFetcher();
    DueHome home;
    const plist::Value old = listOf(u"old"_s);
    home.disk.write(DueHome::fileName, plist::write(old, plist::Format::Xml));
    home.refresh(fetcher, server().address(u"html"_s));
    EXPECT_EQ(home.list(), old);
    home.refresh(fetcher, server().address(u"list"_s));
    EXPECT_EQ(home.list(), served) << "the folder was there, and the file is replaced";
}

TEST(ExcludeListServer, AFileThatCannotBeWrittenStillCountsAsACheck)
{
    auto fetcher = makeFetcher();
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
        home.refresh(fetcher, server().address(u"list"_s));
        EXPECT_EQ(home.recordedTime(), nowSince1970);
    }
}

} // namespace tarnwell::tests
