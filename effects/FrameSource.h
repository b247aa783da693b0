#pragma once

#include "compositions/evaluator/Evaluator.h"

#include <QImage>
#include <QObject>

#include <memory>
#include <utility>
#include <vector>

namespace tarnwell::effects {

/// A composition with the values that go into its inputs.
struct Performance
{
    std::shared_ptr<const compositions::Composition> composition;
    std::vector<std::pair<QString, compositions::Value>> inputs;
};

/// Makes the frames of one composition after the other. None of its functions waits.
class FrameSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Begins with a composition, and forgets the one before. No frame of that one comes any more.
    virtual void start(const Performance &performance) = 0;
    /// Ends, and lets go of all that the composition needed.
    virtual void stop() = 0;

    /// Asks for a frame of what was started; frameReady() or failed() answers. One at a time.
    virtual void requestFrame(const compositions::FrameRequest &request) = 0;

Q_SIGNALS:
    /// A frame is there, and took so many seconds.
    void frameReady(const QImage &picture, double seconds);
    /// No more frames can be made of what was started; the reason is for the user.
    void failed(const QString &reason);
};

} // namespace tarnwell::effects
