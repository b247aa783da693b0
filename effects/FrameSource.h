#pragma once

#include "compositions/model/Composition.h"
#include "compositions/model/FrameRequest.h"

#include <QByteArray>
#include <QImage>
#include <QObject>

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

namespace tarnwell::effects {

/// A composition with the values that go into its inputs.
struct Performance
{
    std::shared_ptr<const compositions::Composition> composition;
    QByteArray file; ///< that it was read from
    std::vector<std::pair<QString, compositions::Value>> inputs;
};

/// Makes the frames of one composition after the other. None of its functions waits.
class FrameSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Gets ready, so that the first frame comes soon when something is started; playable() tells
    /// in the end whether anything can be played here.
    virtual void prepare() {}
    /// Lets go of all that was got ready; whatever plays ends.
    virtual void release() {}

    /// Begins with a composition, and forgets the one before. No frame of that one comes any more.
    virtual void start(const Performance &performance) = 0;
    /// Ends, and lets go of all that the composition needed.
    virtual void stop() = 0;

    /// Asks for a frame of what was started; frameReady() or failed() answers. One at a time.
    virtual void requestFrame(const compositions::FrameRequest &request) = 0;

Q_SIGNALS:
    /// A frame is there, and took so long.
    void frameReady(const QImage &picture, std::chrono::nanoseconds took);
    /// No more frames can be made of what was started; the reason is for the user.
    void failed(const QString &reason);
    /// Whether this computer can play compositions.
    void playable(bool canPlay);
};

} // namespace tarnwell::effects
