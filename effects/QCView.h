#pragma once

#include "compositions/model/Composition.h"
#include "effects/FramePacing.h"
#include "effects/FrameSource.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace tarnwell::ports {
class Clock;
class Timer;
class Timers;
} // namespace tarnwell::ports

namespace tarnwell::effects {

/// Shows a composition at play.
///
/// It is painted like any other widget, with pictures that are made elsewhere. One painting asks
/// for the next picture, so a view that nobody sees, because it or its window is hidden, is still.
class QCView final : public QWidget
{
    Q_OBJECT

public:
    using MakeSource = std::function<std::unique_ptr<FrameSource>()>;

    /// The services outlive the view. The source is made when the first composition is to be
    /// played.
    QCView(const ports::Clock &clock, ports::Timers &timers, MakeSource makeSource,
           QWidget *parent = nullptr);
    ~QCView() override;

    /// Takes another composition, which does not play yet. False when the file holds none or can't
    /// be read, and then there is none.
    bool loadCompositionFromFile(const QString &path);
    /// What was loaded; null when nothing was.
    const compositions::Composition *composition() const;

    QStringList inputKeys() const;
    /// Takes effect when the composition is started.
    void setValue(const compositions::Value &value, const QString &forInputKey);

    /// Gets ready to play; playable() tells whether anything can be played here.
    void prepare();
    /// Lets go of what was got ready, unless something plays.
    void release();

    /// Plays what was loaded, from its beginning.
    void startRendering();
    /// The last picture stays.
    void stopRendering();
    bool isRendering() const { return m_isRendering; }

    QSize sizeHint() const override;

Q_SIGNALS:
    /// What was started cannot be shown, and is stopped; the reason is for the user.
    void failed(const QString &reason);
    void playable(bool canPlay);

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void scheduleFrame();
    void requestFrame();
    void takeFrame(const QImage &picture, std::chrono::nanoseconds took);
    void makeSource();
    void giveUp(const QString &reason);
    void clearPicture();

    const ports::Clock &m_clock;
    ports::Timers &m_timers;
    MakeSource m_makeSource;
    std::unique_ptr<FrameSource> m_source;
    Performance m_performance;
    bool m_isRendering = false;

    std::unique_ptr<ports::Timer> m_timer; ///< for the next request
    bool m_isWaiting = false;              ///< for the frame that was requested
    FramePacing m_pacing;
    double m_playedTime = 0.0;
    std::optional<double> m_lastRequest; ///< as the clock has it; nothing before the first one
    QImage m_picture;
    std::unique_ptr<ports::Timer> m_pictureTimer; ///< until the picture of what played before goes
};

} // namespace tarnwell::effects
