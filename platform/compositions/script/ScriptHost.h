#pragma once

#include <QJSValue>
#include <QString>

#include <memory>

class QJSEngine;

namespace tarnwell::compositions {

/// Runs the scripts of one composition, each in an engine of its own, and stops whatever takes
/// longer than the time that all of them together have in a frame. No script reaches a file, the
/// network or a timer: engines have nothing but the language.
class ScriptHost
{
public:
    ScriptHost();
    ~ScriptHost();
    Q_DISABLE_COPY_MOVE(ScriptHost)

    /// The time of the next frame starts.
    void beginFrame();

    /// A fresh engine; null when the composition already has more than it may.
    std::unique_ptr<QJSEngine> makeEngine();

    /// Runs a text in an engine, or calls a function of one. The result is an error when the script
    /// failed or was stopped; one line in the log says so, once for each engine.
    QJSValue evaluate(QJSEngine &engine, const QString &script);
    QJSValue call(QJSEngine &engine, QJSValue function, const QJSValueList &arguments);

private:
    class Watchdog;
    template <typename Run>
    QJSValue supervise(QJSEngine &engine, const Run &run);

    std::unique_ptr<Watchdog> m_watchdog; ///< a thread, made when the first script runs
    int m_enginesLeft;
    qint64 m_nanosecondsLeft = 0;
};

} // namespace tarnwell::compositions
