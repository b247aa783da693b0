#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace tarnwell::ports {
class Clock;
class NotificationCenter;
class Observation;
class Preferences;
class Timer;
class Timers;
} // namespace tarnwell::ports

namespace tarnwell::samples {

/// A check for updates that looks like one and contacts nobody: it says what it would do, step by
/// step, notes the result in the module's settings, and says that it is over. A cancel cuts it
/// short.
class Check
{
public:
    Check(ports::Preferences &preferences, ports::NotificationCenter &center, ports::Timers &timers,
          const ports::Clock &clock, QString moduleID);
    ~Check();
    Q_DISABLE_COPY_MOVE(Check)

    /// Begins; each step takes that many seconds. The function is called once, at the end.
    void start(double secondsPerStep, std::function<void()> ended);

private:
    void takeStep();
    void report(const QString &status);
    void finish(const QString &result);

    ports::Preferences &m_preferences;
    ports::NotificationCenter &m_center;
    ports::Timers &m_timers;
    const ports::Clock &m_clock;
    QString m_moduleID;
    double m_secondsPerStep = 0.0;
    int m_step = 0;
    std::function<void()> m_ended;
    std::unique_ptr<ports::Timer> m_timer;
    std::unique_ptr<ports::Observation> m_cancelObservation;
};

} // namespace tarnwell::samples
