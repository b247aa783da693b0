#pragma once

#include "effects/FrameSource.h"

#include <QThread>

#include <atomic>

namespace tarnwell::effects {

/// Makes frames on a thread of its own, so that whatever a composition takes, the pane goes on. The
/// thread and its OpenGL context begin with the first composition.
class FrameThread final : public FrameSource
{
    Q_OBJECT

public:
    explicit FrameThread(QObject *parent = nullptr);
    /// Waits for the frame that is being made.
    ~FrameThread() override;

    void start(const Performance &performance) override;
    void stop() override;
    void requestFrame(const compositions::FrameRequest &request) override;

private:
    class Worker;

    /// Runs something on the thread, unless something else was started by then.
    void post(std::function<void(Worker &)> work);

    QThread m_thread;
    std::unique_ptr<Worker> m_worker;
    /// The number of the composition that was started last.
    std::atomic<quint64> m_current = 0;
};

} // namespace tarnwell::effects
