#pragma once

#include "effects/FrameSource.h"

#include <stop_token>

namespace tarnwell::compositions {
class OffscreenDestination;
}

namespace tarnwell::effects {

/// Evaluates and draws frames, all on the one thread that it lives on.
class FrameWorker : public QObject
{
    Q_OBJECT

public:
    /// How many bytes a composition may make the process grow by: twice what its images may take,
    /// since they are textures, too, and half of that for the rest. What its parts may take alone
    /// is bounded, but not what many of them, or its scripts, put together in the course of time.
    static constexpr qint64 usualGrowth = 768LL * 1024 * 1024;

    explicit FrameWorker(qint64 mostGrowth = usualGrowth);
    ~FrameWorker() override;

    /// Takes a composition. As soon as somebody asks to stop, what it does ends, or nearly so.
    virtual void begin(const Performance &performance, const std::stop_token &stop);
    /// Lets go of the composition.
    void end();
    /// Lets go of everything.
    void finish();

    /// Makes a frame; made() tells what came of it.
    virtual void makeFrame(const compositions::FrameRequest &request, quint64 number);

Q_SIGNALS:
    /// The thread has come to a composition that was started, with that number.
    void reached(quint64 number);
    /// The picture is null when there is none, and then the failure says why, unless somebody asked
    /// to stop. The number is that of the request.
    void made(const QImage &picture, const QString &failure, double seconds, quint64 number);

private:
    struct Result
    {
        QImage picture;
        QString failure;
    };

    Result frame(const compositions::FrameRequest &request);
    Result drawnFrame(const compositions::FrameRequest &request);
    /// What went wrong, for the user; nothing when there is a place to draw into.
    QString prepareDestination(QSize pixels);

    std::unique_ptr<compositions::Evaluator> m_evaluator;
    std::unique_ptr<compositions::OffscreenDestination> m_destination;
    std::stop_token m_stop;
    const qint64 m_mostGrowth;
    qint64 m_residentAtBegin = 0;
    bool m_isHopeless = false;
};

} // namespace tarnwell::effects
