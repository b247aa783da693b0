#pragma once

#include "effects/FrameSource.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>

class QThread;

namespace tarnwell::effects {

class FrameWorker;

/// Makes frames on a thread of its own, so that whatever a composition takes, the pane goes on. The
/// thread and its OpenGL context begin with the first composition.
///
/// What a composition does ends as soon as another one is started. Should it be in the middle of
/// something that cannot be ended, its thread is left alone after a while: another one goes on, and
/// the first one tidies up if it ever comes back.
class FrameThread final : public FrameSource
{
    Q_OBJECT

public:
    using MakeWorker = std::function<std::unique_ptr<FrameWorker>()>;

    explicit FrameThread(QObject *parent = nullptr);
    FrameThread(MakeWorker makeWorker, std::chrono::milliseconds patience);
    /// Waits for the end of a frame that is being made, but no longer than for a while.
    ~FrameThread() override;

    void start(const Performance &performance) override;
    void stop() override;
    void requestFrame(const compositions::FrameRequest &request) override;

private:
    void makeThread();
    /// Leaves the thread alone, as it doesn't end.
    void abandonThread();
    /// Goes on with another thread.
    void replaceThread();
    void postStart();
    void postRequest();
    void take(const QImage &picture, const QString &failure, double seconds, quint64 number);

    MakeWorker m_makeWorker;
    std::chrono::milliseconds m_patience;
    QThread *m_thread = nullptr;
    FrameWorker *m_worker = nullptr; ///< lives on the thread
    int m_abandoned = 0;

    Performance m_performance;                           ///< that was started last
    std::stop_source m_stop;                             ///< for it
    std::optional<compositions::FrameRequest> m_request; ///< that was not answered yet
    quint64 m_number = 0;  ///< of the last start, stop or request; earlier frames are of no use
    quint64 m_started = 0; ///< the last start
    QTimer m_waiting;      ///< for the thread to come to what was started last
};

} // namespace tarnwell::effects
