#include "effects/FrameThread.h"

#include "compositions/opengl/OffscreenDestination.h"
#include "foundation/Logging.h"

#include <QElapsedTimer>
#include <QLocale>
#include <QTimeZone>

#include <new>

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

using compositions::Evaluator;
using compositions::OffscreenDestination;

/// What lives on the thread, and is used there alone.
class FrameThread::Worker : public QObject
{
public:
    void begin(const Performance &performance)
    {
        m_evaluator = std::make_unique<Evaluator>(
            performance.composition,
            compositions::EvaluatorOptions{
                .seed = 0, .locale = QLocale::system(), .timeZone = QTimeZone::systemTimeZone()});
        for (const auto &[key, value] : performance.inputs)
            m_evaluator->setInput(key, value);
    }

    void end() { m_evaluator.reset(); }

    void finish()
    {
        m_evaluator.reset();
        m_destination.reset();
    }

    QImage makeFrame(const compositions::FrameRequest &request)
    {
        try {
            return drawnFrame(request);
        } catch (const std::bad_alloc &) {
            // Nobody above would catch it on this thread, and the pane can do without a preview.
            TARNWELL_SYSTEM_LOG(u"There is not enough memory to preview this effect."_s);
            m_evaluator.reset();
            return {};
        }
    }

private:
    QImage drawnFrame(const compositions::FrameRequest &request)
    {
        if (!m_evaluator || !prepareDestination(request.pixels))
            return {};
        m_destination->draw(m_evaluator->evaluate(request));
        QImage picture = m_destination->picture();
        // Nothing shines through, so nothing needs to be blended where it is painted.
        picture.reinterpretAsFormat(QImage::Format_RGBX8888);
        return picture;
    }

    bool prepareDestination(QSize pixels)
    {
        if (m_destination)
            return m_destination->pixels() == pixels || m_destination->resize(pixels);
        if (m_isHopeless)
            return false;
        QString error;
        m_destination = OffscreenDestination::create(pixels, &error);
        if (!m_destination) {
            m_isHopeless = true;
            TARNWELL_SYSTEM_LOG(u"Effects cannot be previewed: %1"_s.arg(error));
        }
        return m_destination != nullptr;
    }

    std::unique_ptr<Evaluator> m_evaluator;
    std::unique_ptr<OffscreenDestination> m_destination;
    bool m_isHopeless = false;
};

FrameThread::FrameThread(QObject *parent)
    : FrameSource(parent)
{
    m_thread.setObjectName("Effect preview"_L1);
}

FrameThread::~FrameThread()
{
    if (!m_worker)
        return;
    ++m_current;
    // What was made on the thread has to go there, too.
    QMetaObject::invokeMethod(
        m_worker.get(),
        [this] {
            m_worker->finish();
            m_thread.quit();
        },
        Qt::QueuedConnection);
    m_thread.wait();
}

void FrameThread::start(const Performance &performance)
{
    if (!m_worker) {
        m_worker = std::make_unique<Worker>();
        m_worker->moveToThread(&m_thread);
        m_thread.start(QThread::LowPriority);
    }
    ++m_current;
    post([performance](Worker &worker) { worker.begin(performance); });
}

void FrameThread::stop()
{
    ++m_current;
    if (m_worker)
        post([](Worker &worker) { worker.end(); });
}

void FrameThread::requestFrame(const compositions::FrameRequest &request)
{
    if (!m_worker)
        return;
    const quint64 number = m_current;
    post([this, request, number](Worker &worker) {
        QElapsedTimer timer;
        timer.start();
        const QImage picture = worker.makeFrame(request);
        const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
        QMetaObject::invokeMethod(
            this,
            [this, picture, seconds, number] {
                if (number == m_current)
                    Q_EMIT frameReady(picture, seconds);
            },
            Qt::QueuedConnection);
    });
}

void FrameThread::post(std::function<void(Worker &)> work)
{
    QMetaObject::invokeMethod(
        m_worker.get(),
        [this, work = std::move(work), number = m_current.load()] {
            // Whoever goes through a long list quickly waits for none of the frames in between.
            if (number == m_current)
                work(*m_worker);
        },
        Qt::QueuedConnection);
}

} // namespace tarnwell::effects
