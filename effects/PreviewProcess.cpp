#include "effects/PreviewProcess.h"

#include "compositions/model/Structure.h"
#include "foundation/FileUser.h"
#include "foundation/Logging.h"
#include "foundation/plist/Dictionary.h"
#include "foundation/plist/PropertyList.h"

#include <QFileInfo>
#include <QProcess>

#include <array>
#include <ctime>
#include <fcntl.h>

namespace tarnwell::effects {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
namespace preview = compositions::preview;

namespace {

constexpr auto deadlineCheck = 50ms;
constexpr int mostLogLines = 20;
constexpr qint64 longestLogLine = 1000;

/// An input as a property list holds it. Inputs of a preview are texts, numbers and lists of them.
plist::Value storedInput(const compositions::Value &value)
{
    switch (value.type()) {
    case compositions::PortType::Boolean:
        return value.toBoolean();
    case compositions::PortType::Structure: {
        plist::Array members;
        for (const compositions::Value &member : value.toStructure()->members())
            members.append(storedInput(member));
        return plist::Value(members);
    }
    case compositions::PortType::Number:
    case compositions::PortType::Index:
        return value.toNumber();
    default:
        return value.toString();
    }
}

std::chrono::nanoseconds elapsed(const QElapsedTimer &timer)
{
    return std::chrono::nanoseconds(timer.nsecsElapsed());
}

} // namespace

PreviewProcess::PreviewProcess(const QString &program, const PreviewDeadlines &deadlines,
                               QObject *parent)
    : FrameSource(parent)
    , m_program(program)
    , m_deadlines(deadlines)
{
    m_deadlineTimer.setInterval(std::min(deadlineCheck, deadlines.change));
    connect(&m_deadlineTimer, &QTimer::timeout, this, &PreviewProcess::checkDeadlines);
}

PreviewProcess::~PreviewProcess()
{
    discard();
    // Killed ones are gone in a moment, and would be told as running still.
    for (QProcess *const process : findChildren<QProcess *>())
        process->waitForFinished();
}

qint64 PreviewProcess::processId() const
{
    return m_process ? m_process->processId() : 0;
}

void PreviewProcess::prepare()
{
    if (!m_process && m_obstacle.isEmpty())
        launch();
}

void PreviewProcess::release()
{
    m_performance.reset();
    m_request.reset();
    discard();
    m_obstacle.clear();
}

void PreviewProcess::start(const Performance &performance)
{
    prepare();
    const bool wasBusy = m_request || !m_isTaken;
    m_performance = performance;
    m_request.reset();
    m_isFirstFrame = true;
    m_started = ++m_number;
    if (!m_obstacle.isEmpty()) {
        // Not at once: nobody who calls this expects an answer before it returns.
        QMetaObject::invokeMethod(
            this,
            [this, started = m_started, reason = m_obstacle] {
                if (started == m_started)
                    giveUpPlaying(reason);
            },
            Qt::QueuedConnection);
        return;
    }
    // Whoever goes through a long list quickly does not put the end off.
    if (wasBusy && m_isTaken)
        m_sinceChange.start();
    m_isTaken = !wasBusy;
    sendStart();
    watch();
}

void PreviewProcess::stop()
{
    if (!m_performance)
        return;
    if (m_request && m_isTaken)
        m_sinceChange.start();
    m_isTaken = m_isTaken && !m_request;
    m_performance.reset();
    m_request.reset();
    m_started = ++m_number;
    send({.kind = Request::Kind::Stop, .number = m_started});
    watch();
}

void PreviewProcess::requestFrame(const compositions::FrameRequest &request)
{
    if (!m_performance || !m_process)
        return;
    m_request = request;
    ++m_number;
    sendFrame();
    watch();
}

void PreviewProcess::launch()
{
    auto connection = preview::makeConnection();
    if (!connection || !QFileInfo(m_program).isExecutable()) {
        TARNWELL_SYSTEM_LOG(u"Effects cannot be previewed: %1 cannot be started."_s.arg(m_program));
        m_obstacle = tr("The program that plays effects is missing.");
        return;
    }
    m_socket = std::move(connection->first);
    const int theirs = connection->second.get();
    m_process = new QProcess(this);
    m_process->setProgram(m_program);
    m_process->setArguments({u"--serve"_s, QString::number(theirs)});
    m_process->setStandardInputFile(QProcess::nullDevice());
    m_process->setStandardOutputFile(QProcess::nullDevice());
    // Only this one child inherits its end, whatever else is started meanwhile.
    m_process->setChildProcessModifier([theirs] {
        foundation::becomeFileUser();
        ::fcntl(theirs, F_SETFD, 0);
    });
    m_logLinesLeft = mostLogLines;
    connect(m_process, &QProcess::readyReadStandardError, this, &PreviewProcess::logErrors);
    connect(m_process, &QProcess::finished, this, [this](int status, QProcess::ExitStatus how) {
        const bool hasCrashed = how == QProcess::CrashExit;
        processEnded(u"%1 %2"_s.arg(hasCrashed ? u"by signal"_s : u"with status"_s).arg(status),
                     !hasCrashed && status == preview::exitOutOfMemory);
    });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            processEnded(m_process->errorString(), false);
    });
    m_isReady = false;
    m_isTaken = true;
    m_notifier = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &PreviewProcess::receive);
    m_process->start();
}

/// Ends the process at once; nothing of it is heard any more.
void PreviewProcess::discard()
{
    m_deadlineTimer.stop();
    if (m_notifier) {
        // It may be what called.
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater();
    }
    m_socket = {};
    m_memory.reset();
    QProcess *const process = std::exchange(m_process, nullptr);
    if (!process)
        return;
    process->disconnect(this);
    process->kill();
    if (process->state() == QProcess::NotRunning)
        process->deleteLater();
    else
        connect(process, &QProcess::finished, process, &QObject::deleteLater);
}

bool PreviewProcess::send(const Request &request, std::span<const int> descriptors)
{
    return m_socket && preview::send(m_socket.get(), request, descriptors);
}

void PreviewProcess::sendStart()
{
    plist::Dictionary inputs;
    for (const auto &[key, value] : m_performance->inputs)
        inputs.insert(key, storedInput(value));
    const foundation::UniqueFd file = preview::sealedFile(m_performance->file);
    const foundation::UniqueFd values =
        preview::sealedFile(plist::write(inputs, plist::Format::Binary));
    const std::array descriptors{file.get(), values.get()};
    if (!file || !values ||
        !send({.kind = Request::Kind::Start, .number = m_started}, descriptors)) {
        m_isTaken = false; // the deadline deals with it
    }
}

bool PreviewProcess::makeMemory(QSize pixels)
{
    const qint64 wanted = preview::frameBytes(pixels);
    if (m_memory && wanted <= m_memory->slotSize())
        return true;
    m_memory = wanted > 0 ? preview::FrameMemory::create(wanted) : std::nullopt;
    const std::array descriptors{m_memory ? m_memory->descriptor() : -1};
    return m_memory &&
           send({.kind = Request::Kind::Memory, .size = quint64(m_memory->size())}, descriptors);
}

void PreviewProcess::sendFrame()
{
    m_sinceRequest.start();
    m_processorTimeAtRequest = processorTime();
    const QSize pixels = m_request->pixels;
    if (!makeMemory(pixels))
        return; // the deadline deals with it
    send({.kind = Request::Kind::Frame,
          .width = pixels.width(),
          .height = pixels.height(),
          .number = m_number,
          .time = m_request->time,
          .systemTime = m_request->systemTime});
}

void PreviewProcess::receive()
{
    for (;;) {
        Reply reply;
        std::vector<foundation::UniqueFd> descriptors;
        const auto received = preview::receive(m_socket.get(), &reply, &descriptors);
        if (received == preview::Received::Nothing)
            return;
        if (received == preview::Received::End) {
            m_notifier->setEnabled(false); // how it ended is told by the process
            return;
        }
        if (received == preview::Received::Nonsense || !take(reply)) {
            TARNWELL_SYSTEM_LOG(u"The player of effects answered with nonsense."_s);
            fail(tr("This effect stopped the program that plays it."));
            return;
        }
        if (!m_notifier)
            return;
    }
}

bool PreviewProcess::take(const Reply &reply)
{
    switch (reply.kind) {
    case Reply::Kind::Ready:
        if (m_isReady || reply.number != preview::protocolVersion)
            return false;
        m_isReady = true;
        if (reply.detail & Reply::NoOpenGL) {
            m_obstacle = tr("Effects cannot be previewed on this computer: they need OpenGL 3.3.");
            fail(m_obstacle);
        }
        Q_EMIT playable(m_obstacle.isEmpty());
        return true;
    case Reply::Kind::Taken:
        m_isTaken = m_isTaken || reply.number == m_started;
        return reply.number <= m_started;
    case Reply::Kind::Failed:
        if (reply.number < m_started || !m_performance)
            return reply.number <= m_number;
        giveUpPlaying(reply.detail == quint32(Reply::Failure::NoMemory)
                          ? tr("This effect takes too much memory to be previewed.")
                          : tr("This effect cannot be read by the program that plays it."));
        return true;
    case Reply::Kind::Frame:
        return takeFrame(reply);
    }
    return false;
}

bool PreviewProcess::takeFrame(const Reply &reply)
{
    if (reply.number < m_number || !m_request)
        return reply.number <= m_number; // of what nobody wants to see any more
    const QSize pixels = m_request->pixels;
    if (reply.number != m_number || reply.width != pixels.width() ||
        reply.height != pixels.height() || reply.detail >= preview::FrameMemory::slotCount ||
        reply.nanoseconds < 0 || !m_memory)
        return false;
    const QImage shared(m_memory->slot(int(reply.detail)), pixels.width(), pixels.height(),
                        pixels.width() * 4, QImage::Format_RGBA8888_Premultiplied);
    QImage picture = shared.copy();
    // Nothing shines through a preview, so nothing needs to be blended where it is painted.
    picture.reinterpretAsFormat(QImage::Format_RGBX8888);
    m_request.reset();
    m_isFirstFrame = false;
    Q_EMIT frameReady(picture, std::chrono::nanoseconds(reply.nanoseconds));
    return true;
}

void PreviewProcess::processEnded(const QString &how, bool isOutOfMemory)
{
    logErrors();
    TARNWELL_SYSTEM_LOG(u"The player of effects ended: %1"_s.arg(how));
    if (!m_isReady) {
        // It would be started for ever.
        m_obstacle = tr("The program that plays effects cannot be started.");
        fail(m_obstacle);
        Q_EMIT playable(false);
        return;
    }
    fail(isOutOfMemory ? tr("This effect takes too much memory to be previewed.")
                       : tr("This effect stopped the program that plays it."));
}

void PreviewProcess::logErrors()
{
    if (!m_process)
        return;
    m_process->setReadChannel(QProcess::StandardError);
    while (m_process->bytesAvailable() > 0) {
        const QByteArray line = m_process->readLine(longestLogLine).trimmed();
        if (m_logLinesLeft > 0 && !line.isEmpty()) {
            --m_logLinesLeft;
            TARNWELL_SYSTEM_LOG(u"Effect preview: %1"_s.arg(QString::fromUtf8(line)));
        }
    }
}

void PreviewProcess::watch()
{
    // Not begun anew: what is asked for often would put its deadline off.
    if ((m_request || !m_isTaken) && !m_deadlineTimer.isActive())
        m_deadlineTimer.start();
}

void PreviewProcess::checkDeadlines()
{
    if (!m_isTaken && m_isReady && elapsed(m_sinceChange) > m_deadlines.change) {
        // It is busy with what nobody wants to see any more.
        discard();
        launch();
        if (m_performance)
            sendStart();
        if (m_request)
            sendFrame();
        watch();
        return;
    }
    // Nor is one waited for any longer that does not even begin.
    if (m_request && (m_isTaken || !m_isReady)) {
        const std::chrono::nanoseconds limit =
            m_isFirstFrame ? m_deadlines.firstFrame : m_deadlines.laterFrame;
        if (processorTime() - m_processorTimeAtRequest > limit ||
            elapsed(m_sinceRequest) > 2 * limit)
            fail(tr("This effect takes too long to be previewed."));
    }
    if (!m_request && m_isTaken)
        m_deadlineTimer.stop();
}

std::chrono::nanoseconds PreviewProcess::processorTime() const
{
    clockid_t clock = 0;
    timespec time{};
    if (!m_process || m_process->processId() <= 0 ||
        ::clock_getcpuclockid(pid_t(m_process->processId()), &clock) != 0 ||
        ::clock_gettime(clock, &time) != 0)
        return 0ns;
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void PreviewProcess::fail(const QString &reason)
{
    discard();
    prepare();
    giveUpPlaying(reason);
}

void PreviewProcess::giveUpPlaying(const QString &reason)
{
    m_request.reset();
    if (!std::exchange(m_performance, std::nullopt))
        return;
    Q_EMIT failed(reason);
}

} // namespace tarnwell::effects
