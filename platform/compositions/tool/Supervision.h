#pragma once

#include <QString>

#include <functional>

namespace tarnwell::compositions {

/// What a composition may take of the machine while it is drawn.
struct Allowance
{
    double secondsOfAFrame = 20.0; ///< of processor time; by the clock on the wall up to twice that
    qint64 bytes = 512LL * 1024 * 1024; ///< beyond what the process needs anyway
};

/// What the process that does the work tells the one that watches it.
class Progress
{
public:
    explicit Progress(int descriptor)
        : m_descriptor(descriptor)
    {}

    /// The time of the next frame starts.
    void frameIsDone() const;

private:
    int m_descriptor;
};

/// Does the work in a process of its own, so that a stranger's composition ends no more than that,
/// and returns its exit status. When the process dies, or is ended because it takes too long, one
/// sentence about the composition goes to standard error, and the result is `died`. To be called
/// before there is a second thread.
int runSupervised(const QString &composition, const Allowance &allowance, int died,
                  const std::function<int(const Progress &)> &work);

/// From here on this process gets so much more memory than it has now, and ends when that is used
/// up. Under the sanitizers, which take memory of their own, nothing is limited.
void limitMemory(qint64 bytes);

} // namespace tarnwell::compositions
