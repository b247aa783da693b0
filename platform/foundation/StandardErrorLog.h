#pragma once

#include <QString>

#include <memory>

namespace tarnwell::foundation {

/// Keeps the process alive whatever its standard streams are: a pipe that nobody reads any more
/// is an error of one write and no signal, and a stream that was closed is opened on nothing, so
/// that no file that is opened later takes its number and gets what was meant for the log. Call it
/// first in main().
void secureStandardStreams();

/// Writes lines to a stream from a thread of its own, so that a reader that stalls never holds up
/// the caller.
///
/// Lines that find no room are dropped and counted, and a line says how many once there is room.
/// Lines may be written from every thread.
class LineWriter
{
public:
    /// The descriptor is not closed. It must stay open until the process ends.
    explicit LineWriter(int descriptor);

    /// Waits for nothing: what is not written by then may be lost.
    ~LineWriter();
    Q_DISABLE_COPY_MOVE(LineWriter)

    /// Never waits.
    void write(const QString &line);

    /// Whether everything was written within so many milliseconds.
    bool flush(int milliseconds);

    /// What may wait, in bytes.
    static constexpr qsizetype capacity = qsizetype(256) * 1024;

private:
    struct Shared;

    static void run(const std::shared_ptr<Shared> &shared);

    std::shared_ptr<Shared> m_shared; ///< the thread's too, which a stalled reader may keep
};

/// Has everything that the process logs, the toolkit's own warnings too, written to its standard
/// error by a LineWriter while it lives: each message as one line, escaped and bounded as by
/// loggedText(). One at a time.
class StandardErrorLog
{
public:
    StandardErrorLog();
    ~StandardErrorLog();
    Q_DISABLE_COPY_MOVE(StandardErrorLog)
};

} // namespace tarnwell::foundation
