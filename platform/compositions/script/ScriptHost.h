#pragma once

#include <QJSValue>
#include <QString>

#include <functional>
#include <memory>

class QJSEngine;

namespace tarnwell::compositions {

/// Runs the scripts of one composition, each in an engine of its own, and stops whatever takes
/// longer than the time that all of them together have in a frame, if the engine lets itself be
/// interrupted: within its own functions it does not, and memory it takes without limit. Whoever
/// runs strangers' scripts therefore does it in a process that may end. No script reaches a file,
/// the network or a timer: engines have nothing but the language.
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

    /// Does something that may run code of an engine, as even looking at an object does. False when
    /// the result is an error or when it was stopped; one line in the log says so, once for each
    /// engine.
    bool supervise(QJSEngine &engine, const std::function<QJSValue()> &work);

    /// Runs a text in an engine, or calls a function of one, under supervision. The result is an
    /// error when the script failed.
    static QJSValue evaluate(QJSEngine &engine, const QString &script);
    static QJSValue call(QJSEngine &engine, QJSValue function, const QJSValueList &arguments);

private:
    class Watchdog;

    std::unique_ptr<Watchdog> m_watchdog; ///< a thread, made when the first script runs
    int m_enginesLeft;
    qint64 m_nanosecondsLeft = 0;
};

} // namespace tarnwell::compositions
