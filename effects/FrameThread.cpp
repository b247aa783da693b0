#include "effects/FrameThread.h"

#include "effects/FrameWorker.h"
#include "foundation/Logging.h"

#include <QDeadlineTimer>
#include <QPointer>
#include <QThread>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

namespace {

constexpr std::chrono::seconds usualPatience{2};
/// Each of them may take a processor for good.
constexpr int mostAbandoned = 3;

/// The code that a thread runs must not be unloaded with the pane.
void keepCodeLoaded()
{
    Dl_info place = {};
    if (::dladdr(reinterpret_cast<const void *>(&keepCodeLoaded), &place) != 0)
        ::dlopen(place.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
}

/// Lets the thread end as soon as it has nothing else to do.
void sendHome(FrameWorker *worker)
{
    // What was made on the thread has to go there, too.
    QMetaObject::invokeMethod(
        worker,
        [worker] {
            worker->finish();
            QThread::currentThread()->quit();
        },
        Qt::QueuedConnection);
}

} // namespace

FrameThread::FrameThread(QObject *parent)
    : FrameThread([] { return std::make_unique<FrameWorker>(); }, usualPatience)
{
    setParent(parent);
}

FrameThread::FrameThread(MakeWorker makeWorker, std::chrono::milliseconds patience)
    : m_makeWorker(std::move(makeWorker))
    , m_patience(patience)
{
    m_waiting.setSingleShot(true);
    m_waiting.setInterval(patience);
    connect(&m_waiting, &QTimer::timeout, this, &FrameThread::replaceThread);
}

FrameThread::~FrameThread()
{
    if (!m_thread)
        return;
    m_stop.request_stop();
    sendHome(m_worker);
    if (!m_thread->wait(QDeadlineTimer(m_patience))) {
        abandonThread();
        return;
    }
    delete m_worker;
    delete m_thread;
}

void FrameThread::start(const Performance &performance)
{
    m_stop.request_stop();
    m_stop = {};
    m_performance = performance;
    m_request.reset();
    m_started = ++m_number;
    if (!m_thread)
        makeThread();
    else if (!m_waiting.isActive())
        m_waiting.start();
    postStart();
}

void FrameThread::stop()
{
    m_stop.request_stop();
    m_performance = {};
    m_request.reset();
    ++m_number;
    if (m_worker)
        QMetaObject::invokeMethod(m_worker, &FrameWorker::end, Qt::QueuedConnection);
}

void FrameThread::requestFrame(const compositions::FrameRequest &request)
{
    if (!m_worker)
        return;
    m_request = request;
    ++m_number;
    postRequest();
}

void FrameThread::makeThread()
{
    m_worker = m_makeWorker().release();
    m_thread = new QThread;
    m_thread->setObjectName("Effect preview"_L1);
    m_worker->moveToThread(m_thread);
    connect(m_worker, &FrameWorker::reached, this, [this](quint64 number) {
        if (number == m_started)
            m_waiting.stop();
    });
    connect(m_worker, &FrameWorker::made, this, &FrameThread::take);
    m_thread->start(QThread::LowPriority);
}

void FrameThread::abandonThread()
{
    TARNWELL_SYSTEM_LOG(u"An effect does not come to an end, so its preview is left alone."_s);
    ++m_abandoned;
    keepCodeLoaded();
    disconnect(m_worker, nullptr, nullptr, nullptr);
    const QPointer<FrameWorker> worker = m_worker;
    connect(m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
    // It may have ended just now, before anybody listened.
    if (m_thread->isFinished()) {
        m_thread->wait();
        delete worker;
        m_thread->deleteLater();
    }
    m_worker = nullptr;
    m_thread = nullptr;
}

void FrameThread::replaceThread()
{
    if (m_abandoned >= mostAbandoned)
        return;
    m_stop.request_stop(); // else it would still do what the next thread does
    m_stop = {};
    sendHome(m_worker);
    abandonThread();
    makeThread();
    if (!m_performance.composition)
        return;
    postStart();
    if (m_request)
        postRequest();
}

void FrameThread::postStart()
{
    QMetaObject::invokeMethod(
        m_worker,
        [worker = m_worker, performance = m_performance, number = m_started,
         stop = m_stop.get_token()] {
            Q_EMIT worker->reached(number);
            // Whoever goes through a long list quickly waits for none of those in between.
            if (!stop.stop_requested())
                worker->begin(performance, stop);
        },
        Qt::QueuedConnection);
}

void FrameThread::postRequest()
{
    QMetaObject::invokeMethod(
        m_worker,
        [worker = m_worker, request = *m_request, number = m_number, stop = m_stop.get_token()] {
            if (!stop.stop_requested())
                worker->makeFrame(request, number);
        },
        Qt::QueuedConnection);
}

void FrameThread::take(const QImage &picture, const QString &failure, double seconds,
                       quint64 number)
{
    if (number != m_number)
        return;
    m_request.reset();
    if (failure.isEmpty())
        Q_EMIT frameReady(picture, seconds);
    else
        Q_EMIT failed(failure);
}

} // namespace tarnwell::effects
