#include "desktop/ProcessHttpFetcher.h"

#include "desktop/FileSystemIds.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QTimer>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

bool mayBeFetched(const QUrl &url)
{
    const QString host = url.host();
    if (!url.isValid() || host.isEmpty())
        return false;
    const bool isThisMachine = host == "localhost"_L1 || host == "127.0.0.1"_L1 || host == "::1"_L1;
    return url.scheme() == "https"_L1 || (url.scheme() == "http"_L1 && isThisMachine);
}

/// One run of the program, which never outlives this object.
class Run
{
public:
    explicit Run(qint64 sizeLimit)
        : m_sizeLimit(sizeLimit)
    {
        process.setStandardInputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        // What strangers send is the last thing that root should read for somebody else.
        if (actsForSomebodyElse())
            process.setChildProcessModifier(becomeFileUser);
    }
    ~Run()
    {
        process.disconnect();
        end();
    }
    Q_DISABLE_COPY_MOVE(Run)

    /// Takes up what has been printed.
    void take()
    {
        m_list += process.readAllStandardOutput();
        if (m_list.size() > m_sizeLimit)
            process.kill();
    }

    void end()
    {
        process.kill();
        process.waitForFinished();
    }

    /// The list, once the program is over.
    std::optional<QByteArray> result()
    {
        take();
        const bool isComplete = process.error() != QProcess::FailedToStart &&
                                process.exitStatus() == QProcess::NormalExit &&
                                process.exitCode() == 0 && m_list.size() <= m_sizeLimit;
        return isComplete ? std::optional(m_list) : std::nullopt;
    }

    QProcess process;

private:
    qint64 m_sizeLimit;
    QByteArray m_list;
};

class BackgroundFetch final : public QObject, public ports::ListFetch
{
public:
    /// Without a program there is nothing to run.
    BackgroundFetch(const QString &program, const QStringList &arguments, const HttpLimits &limits,
                    ports::HttpFetcher::Fetched fetched)
        : m_fetched(std::move(fetched))
        , m_run(limits.size)
    {
        QProcess *process = &m_run.process;
        connect(process, &QProcess::readyReadStandardOutput, this, [this] { m_run.take(); });
        connect(process, &QProcess::finished, this, [this] { m_fetched(m_run.result()); });
        connect(process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                m_fetched(std::nullopt);
        });
        QTimer::singleShot(0, this, [this, program, arguments, time = limits.time] {
            if (program.isEmpty()) {
                m_fetched(std::nullopt);
                return;
            }
            QTimer::singleShot(time, this, [this] { m_run.process.kill(); });
            m_run.process.start(program, arguments);
        });
    }

private:
    ports::HttpFetcher::Fetched m_fetched;
    Run m_run;
};

} // namespace

QStringList ProcessHttpFetcher::arguments(const QUrl &url) const
{
    QStringList result{QString::fromLatin1(url.toEncoded()), QString::number(m_limits.time.count()),
                       QString::number(m_limits.size), QString::number(m_limits.headerSize),
                       QString::number(m_limits.redirects)};
    if (!m_authorities.isEmpty())
        result.append(m_authorities);
    return result;
}

std::optional<QByteArray> ProcessHttpFetcher::fetchList(const QUrl &url)
{
    if (!mayBeFetched(url))
        return std::nullopt;
    const QDeadlineTimer deadline(m_limits.time);
    Run run(m_limits.size);
    run.process.start(m_program, arguments(url));
    while (run.process.waitForReadyRead(int(deadline.remainingTime())))
        run.take();
    // The output ends before the program does.
    if (!run.process.waitForFinished(int(deadline.remainingTime())))
        run.end();
    return run.result();
}

std::unique_ptr<ports::ListFetch> ProcessHttpFetcher::startFetchingList(const QUrl &url,
                                                                        Fetched fetched)
{
    return std::make_unique<BackgroundFetch>(mayBeFetched(url) ? m_program : QString(),
                                             arguments(url), m_limits, std::move(fetched));
}

} // namespace tarnwell::desktop
