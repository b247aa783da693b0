#include "effects/FrameWorker.h"

#include "compositions/opengl/OffscreenDestination.h"
#include "foundation/BoundedFile.h"
#include "foundation/Logging.h"

#include <QElapsedTimer>
#include <QLocale>
#include <QTimeZone>

#include <new>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

using compositions::Evaluator;
using compositions::OffscreenDestination;

namespace {

qint64 residentBytes()
{
    const auto numbers = foundation::readBoundedFile(u"/proc/self/statm"_s, 4096);
    return numbers ? numbers->split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE) : 0;
}

} // namespace

FrameWorker::FrameWorker(qint64 mostGrowth)
    : m_mostGrowth(mostGrowth)
{}

FrameWorker::~FrameWorker() = default;

void FrameWorker::begin(const Performance &performance, const std::stop_token &stop)
{
    m_evaluator.reset();
    m_stop = stop;
    m_residentAtBegin = residentBytes();
    m_evaluator = std::make_unique<Evaluator>(
        performance.composition,
        compositions::EvaluatorOptions{.seed = 0,
                                       .locale = QLocale::system(),
                                       .timeZone = QTimeZone::systemTimeZone(),
                                       .stop = stop});
    for (const auto &[key, value] : performance.inputs)
        m_evaluator->setInput(key, value);
}

void FrameWorker::end()
{
    m_evaluator.reset();
}

void FrameWorker::finish()
{
    m_evaluator.reset();
    m_destination.reset();
}

void FrameWorker::makeFrame(const compositions::FrameRequest &request, quint64 number)
{
    QElapsedTimer timer;
    timer.start();
    const Result result = frame(request);
    if (!result.failure.isEmpty())
        m_evaluator.reset();
    Q_EMIT made(result.picture, result.failure, static_cast<double>(timer.nsecsElapsed()) / 1e9,
                number);
}

FrameWorker::Result FrameWorker::frame(const compositions::FrameRequest &request)
{
    const QString tooLarge = tr("This effect takes too much memory to be previewed.");
    try {
        Result result = drawnFrame(request);
        if (residentBytes() - m_residentAtBegin <= m_mostGrowth)
            return result;
        TARNWELL_SYSTEM_LOG(u"The preview ends: the effect takes more than %1 MiB."_s.arg(
            m_mostGrowth / (1024 * 1024)));
    } catch (const std::bad_alloc &) {
        // Nobody above would catch it on this thread, and the pane can do without a preview.
        TARNWELL_SYSTEM_LOG(u"There is not enough memory to preview this effect."_s);
    }
    return {{}, tooLarge};
}

FrameWorker::Result FrameWorker::drawnFrame(const compositions::FrameRequest &request)
{
    if (!m_evaluator)
        return {};
    if (const QString failure = prepareDestination(request.pixels); !failure.isEmpty())
        return {{}, failure};
    m_destination->draw(m_evaluator->evaluate(request), m_stop);
    if (m_stop.stop_requested())
        return {};
    QImage picture = m_destination->picture();
    if (picture.isNull())
        throw std::bad_alloc();
    // Nothing shines through, so nothing needs to be blended where it is painted.
    picture.reinterpretAsFormat(QImage::Format_RGBX8888);
    return {picture, {}};
}

QString FrameWorker::prepareDestination(QSize pixels)
{
    if (m_destination) {
        if (m_destination->pixels() != pixels && !m_destination->resize(pixels))
            throw std::bad_alloc();
        return {};
    }
    QString error;
    if (!m_isHopeless)
        m_destination = OffscreenDestination::create(pixels, &error);
    if (m_destination)
        return {};
    if (!m_isHopeless)
        TARNWELL_SYSTEM_LOG(u"Effects cannot be previewed: %1"_s.arg(error));
    m_isHopeless = true;
    return tr("Effects cannot be previewed on this computer: they need OpenGL 3.3.");
}

} // namespace tarnwell::effects
