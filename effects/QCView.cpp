#include "effects/QCView.h"

#include "compositions/reader/CompositionReader.h"
#include "foundation/BoundedFile.h"
#include "ports/Clock.h"
#include "ports/Timers.h"

#include <QPainter>

namespace tarnwell::effects {

namespace {

/// Compositions with many pictures take a few megabytes. They are read while the user waits.
constexpr qint64 largestFile = 16LL * 1024 * 1024;
/// How long what played before is seen while the first frame is made. Most are there sooner, and
/// then nothing flickers.
constexpr double longestRest = 0.3;

} // namespace

QCView::QCView(const ports::Clock &clock, ports::Timers &timers, MakeSource makeSource,
               QWidget *parent)
    : QWidget(parent)
    , m_clock(clock)
    , m_timers(timers)
    , m_makeSource(std::move(makeSource))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QCView::~QCView() = default;

bool QCView::loadCompositionFromFile(const QString &path)
{
    stopRendering();
    m_performance = {};
    if (const auto bytes = foundation::readBoundedFile(path, largestFile)) {
        m_performance.composition = compositions::readComposition(*bytes);
        m_performance.file = *bytes;
    }
    return m_performance.composition != nullptr;
}

const compositions::Composition *QCView::composition() const
{
    return m_performance.composition.get();
}

QStringList QCView::inputKeys() const
{
    QStringList keys;
    if (composition() && composition()->root.graph) {
        for (const compositions::PublishedPort &port : composition()->root.graph->inputs)
            keys.append(port.key);
    }
    return keys;
}

void QCView::setValue(const compositions::Value &value, const QString &forInputKey)
{
    m_performance.inputs.emplace_back(forInputKey, value);
}

void QCView::makeSource()
{
    if (m_source)
        return;
    m_source = m_makeSource();
    connect(m_source.get(), &FrameSource::frameReady, this, &QCView::takeFrame);
    connect(m_source.get(), &FrameSource::failed, this, &QCView::giveUp);
    connect(m_source.get(), &FrameSource::playable, this, &QCView::playable);
}

void QCView::prepare()
{
    makeSource();
    m_source->prepare();
}

void QCView::release()
{
    if (m_source && !m_isRendering)
        m_source->release();
}

void QCView::startRendering()
{
    stopRendering();
    if (!composition())
        return;
    makeSource();
    m_source->start(m_performance);
    m_isRendering = true;
    m_pacing = {};
    m_playedTime = 0.0;
    m_lastRequest.reset();
    if (!m_picture.isNull())
        m_pictureTimer = m_timers.scheduleOnce(longestRest, [this] { clearPicture(); });
    update();
}

void QCView::stopRendering()
{
    if (!m_isRendering)
        return;
    m_isRendering = false;
    m_isWaiting = false;
    m_timer.reset();
    m_pictureTimer.reset();
    m_source->stop();
}

QSize QCView::sizeHint() const
{
    return {320, 200};
}

void QCView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_picture.isNull())
        painter.fillRect(rect(), palette().color(QPalette::Mid));
    else
        painter.drawImage(rect(), m_picture);
    scheduleFrame();
}

void QCView::hideEvent(QHideEvent *event)
{
    m_timer.reset();
    QWidget::hideEvent(event);
}

void QCView::scheduleFrame()
{
    if (!m_isRendering || m_isWaiting || m_timer || window()->isMinimized())
        return;
    const double sinceLast =
        m_lastRequest ? m_clock.absoluteTime() - *m_lastRequest : m_pacing.interval();
    m_timer = m_timers.scheduleOnce(m_pacing.interval() - sinceLast, [this] { requestFrame(); });
}

void QCView::requestFrame()
{
    m_timer.reset();
    const QSize pixels = (QSizeF(size()) * devicePixelRatio()).toSize();
    if (pixels.isEmpty())
        return;
    const double now = m_clock.absoluteTime();
    if (m_lastRequest)
        m_playedTime += FramePacing::timeStep(now - *m_lastRequest);
    m_lastRequest = now;
    m_isWaiting = true;
    m_source->requestFrame({.time = m_playedTime, .systemTime = now, .pixels = pixels});
}

void QCView::takeFrame(const QImage &picture, std::chrono::nanoseconds took)
{
    m_isWaiting = false;
    m_pictureTimer.reset();
    m_pacing.frameTook(std::chrono::duration<double>(took).count());
    m_picture = picture;
    update();
}

void QCView::giveUp(const QString &reason)
{
    stopRendering();
    clearPicture();
    Q_EMIT failed(reason);
}

void QCView::clearPicture()
{
    m_picture = {};
    update();
}

} // namespace tarnwell::effects
