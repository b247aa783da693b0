#include "compositions/script/ScriptHost.h"

#include "compositions/Limits.h"
#include "foundation/Logging.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJSEngine>
#include <QJSManagedValue>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostEngines = 64;

} // namespace

/// Interrupts an engine from a thread of its own when its time is over.
class ScriptHost::Watchdog
{
public:
    Watchdog()
        : m_thread([this] { watch(); })
    {}
    ~Watchdog()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
        }
        m_condition.notify_all();
        m_thread.join();
    }
    Q_DISABLE_COPY_MOVE(Watchdog)

    void guard(QJSEngine *engine, std::chrono::nanoseconds time)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_engine = engine;
            m_deadline = std::chrono::steady_clock::now() + time;
        }
        m_condition.notify_all();
    }

    void release()
    {
        const std::lock_guard lock(m_mutex);
        m_engine = nullptr;
    }

private:
    void watch()
    {
        std::unique_lock lock(m_mutex);
        while (!m_isEnding) {
            if (m_engine == nullptr) {
                m_condition.wait(lock);
            } else if (std::chrono::steady_clock::now() >= m_deadline) {
                m_engine->setInterrupted(true);
                m_engine = nullptr;
            } else {
                m_condition.wait_until(lock, m_deadline);
            }
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_condition;
    QJSEngine *m_engine = nullptr;
    std::chrono::steady_clock::time_point m_deadline;
    bool m_isEnding = false;
    std::thread m_thread; // last, so that it starts when everything else is there
};

ScriptHost::ScriptHost()
    : m_enginesLeft(mostEngines)
{}

ScriptHost::~ScriptHost() = default;

void ScriptHost::beginFrame()
{
    m_nanosecondsLeft = qint64(limits::scriptMilliseconds) * 1'000'000;
}

std::unique_ptr<QJSEngine> ScriptHost::makeEngine()
{
    if (m_enginesLeft <= 0 || QCoreApplication::instance() == nullptr) {
        return {};
    }
    --m_enginesLeft;
    auto engine = std::make_unique<QJSEngine>();
    // With some thousand keys they make the engine crash, in harmless scripts, too.
    for (const auto &name : {u"WeakMap"_s, u"WeakSet"_s}) {
        engine->globalObject().deleteProperty(name);
    }
    // True only for authors at work on a composition.
    engine->globalObject().setProperty(u"_testMode"_s, false);
    return engine;
}

// Whatever a script throws counts as an error, a plain text too.
QJSValue ScriptHost::evaluate(QJSEngine &engine, const QString &script)
{
    QStringList trace;
    const QJSValue result = engine.evaluate(script, u"composition"_s, 1, &trace);
    return trace.isEmpty() || result.isError()
               ? result
               : engine.newErrorObject(QJSValue::GenericError, result.toString());
}

QJSValue ScriptHost::call(QJSEngine &engine, QJSValue function, const QJSValueList &arguments)
{
    const QJSManagedValue callee(std::move(function), &engine);
    const QJSValue result = callee.call(arguments);
    if (!engine.hasError()) {
        return result;
    }
    const QJSValue thrown = engine.catchError();
    return thrown.isError() ? thrown
                            : engine.newErrorObject(QJSValue::GenericError, thrown.toString());
}

bool ScriptHost::supervise(QJSEngine &engine, const std::function<QJSValue()> &work)
{
    const auto fail = [&engine](const QString &reason) {
        if (!engine.property("hasFailed").toBool()) {
            engine.setProperty("hasFailed", true);
            TARNWELL_SYSTEM_LOG(u"A script of a composition gives nothing: "_s + reason);
        }
        return false;
    };
    if (m_nanosecondsLeft <= 0) {
        return fail(u"the time of the frame is used up"_s);
    }
    if (!m_watchdog) {
        m_watchdog = std::make_unique<Watchdog>();
    }
    engine.setInterrupted(false);
    QElapsedTimer timer;
    timer.start();
    m_watchdog->guard(&engine, std::chrono::nanoseconds(m_nanosecondsLeft));
    const QJSValue result = work();
    m_watchdog->release();
    m_nanosecondsLeft -= timer.nsecsElapsed();
    if (engine.hasError()) {
        engine.catchError();
    }
    if (engine.isInterrupted()) {
        engine.setInterrupted(false);
        m_nanosecondsLeft = 0;
        return fail(u"it took too long"_s);
    }
    return !result.isError() || fail(result.toString());
}

} // namespace tarnwell::compositions
