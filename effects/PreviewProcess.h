#pragma once

#include "compositions/preview/Messages.h"
#include "compositions/preview/SharedMemory.h"
#include "effects/FrameSource.h"

#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>

#include <optional>

class QProcess;

namespace tarnwell::effects {

/// What is too long.
struct PreviewDeadlines
{
    /// What a frame may take of the processor, the first one of a composition and the others;
    /// by the clock it is twice as much.
    std::chrono::milliseconds firstFrame{5000};
    std::chrono::milliseconds laterFrame{1000};
    /// By the clock, for leaving a frame that nobody wants any more.
    std::chrono::milliseconds change{300};
};

/// Has a process of its own make the frames: a composition is a stranger's program, and drivers of
/// graphics cards crash. Whatever happens there, the pane goes on, and the next composition plays.
///
/// What takes too long is killed. A process that ended is replaced at once, but does not play what
/// ended the one before it.
class PreviewProcess final : public FrameSource
{
    Q_OBJECT

public:
    /// The program is the player's, by its path.
    explicit PreviewProcess(const QString &program, const PreviewDeadlines &deadlines = {},
                            QObject *parent = nullptr);
    ~PreviewProcess() override;

    void prepare() override;
    void release() override;
    void start(const Performance &performance) override;
    void stop() override;
    void requestFrame(const compositions::FrameRequest &request) override;

    /// The process that plays; 0 for none.
    qint64 processId() const;

private:
    using Reply = compositions::preview::Reply;
    using Request = compositions::preview::Request;

    void launch();
    void discard();
    void giveUpPlaying(const QString &reason);
    bool send(const Request &request, std::span<const int> descriptors = {});
    void sendStart();
    void sendFrame();
    bool makeMemory(QSize pixels);
    void receive();
    /// False when it makes no sense.
    bool take(const Reply &reply);
    bool takeFrame(const Reply &reply);
    void processEnded(const QString &how, bool isOutOfMemory);
    void logErrors();
    void watch();
    void checkDeadlines();
    std::chrono::nanoseconds processorTime() const;
    /// Replaces the process, and gives up what it played.
    void fail(const QString &reason);

    const QString m_program;
    const PreviewDeadlines m_deadlines;
    QProcess *m_process = nullptr; ///< a child
    foundation::UniqueFd m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
    bool m_isReady = false; ///< the process said that it waits
    QString m_obstacle;     ///< why nothing can be played here; empty as long as it may work
    int m_logLinesLeft = 0;
    std::optional<compositions::preview::FrameMemory> m_memory;

    std::optional<Performance> m_performance; ///< that was started last and did not fail
    quint64 m_number = 0;                     ///< of the last start or request
    quint64 m_started = 0;                    ///< of the last start
    bool m_isTaken = true;                    ///< the process has come to the last start
    bool m_isFirstFrame = true;
    std::optional<compositions::FrameRequest> m_request; ///< that was not answered yet

    QTimer m_deadlineTimer;
    QElapsedTimer m_sinceChange; ///< since the process was to leave what it is busy with
    QElapsedTimer m_sinceRequest;
    std::chrono::nanoseconds m_processorTimeAtRequest{0};
};

} // namespace tarnwell::effects
