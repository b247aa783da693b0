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

// Functions of the language that do unbounded work in one step, where no interruption reaches:
// they get bounds before any script runs. Buffers of raw memory have no use in a composition.
constexpr auto boundaries = R"js(
(function (world) {
    'use strict';
    var most = 1000000;
    var source = Object.getOwnPropertyDescriptor(RegExp.prototype, 'source').get;
    ['ArrayBuffer', 'SharedArrayBuffer', 'Atomics', 'DataView', 'Int8Array', 'Uint8Array',
     'Uint8ClampedArray', 'Int16Array', 'Uint16Array', 'Int32Array', 'Uint32Array', 'Float32Array',
     'Float64Array'].forEach(function (name) { delete world[name]; });

    function replace(owner, name, isAllowed) {
        var original = owner[name];
        if (typeof original !== 'function') {
            return;
        }
        Object.defineProperty(owner, name, { configurable: false, writable: false,
            value: function () {
                if (!isAllowed(this, arguments)) {
                    throw new RangeError(name + ' is too large');
                }
                return original.apply(this, arguments);
            } });
    }
    function hasLength(object) { return Number(object === null || object === undefined ? 0 : object.length) <= most; }

    Object.getOwnPropertyNames(Array.prototype).forEach(function (name) {
        if (name !== 'constructor' && name !== 'length') {
            replace(Array.prototype, name, function (self, given) {
                for (var i = 0; i < given.length; ++i) {
                    if (Array.isArray(given[i]) && !hasLength(given[i])) {
                        return false;
                    }
                }
                return hasLength(self);
            });
        }
    });
    replace(Array, 'from', function (self, given) { return hasLength(given[0]); });
    replace(String.prototype, 'repeat', function (self, given) {
        return String(self).length * Number(given[0]) <= most;
    });
    ['padStart', 'padEnd'].forEach(function (name) {
        replace(String.prototype, name, function (self, given) { return !(Number(given[0]) > most); });
    });
    ['replace', 'replaceAll', 'split', 'match', 'search', 'concat', 'toUpperCase', 'toLowerCase'].forEach(function (name) {
        replace(String.prototype, name, function (self, given) {
            return String(self).length <= most
                && (!(given[0] instanceof RegExp) || isHarmless(source.call(given[0]), self));
        });
    });

    // A repeated group that itself repeats, or that has alternatives, can take time without end.
    function isHarmless(expression, text) {
        return String(text).length <= 20 || !/\([^()]*[*+|{][^()]*\)\s*[*+{]|\)\)+\s*[*+{]|\\[1-9]/.test(expression);
    }
    var exec = RegExp.prototype.exec;
    var inner = false;
    function guarded(original, name) {
        return function () {
            if (!inner) {
                inner = true;
                var harmless = true;
                try {
                    harmless = isHarmless(source.call(this), arguments[0]);
                } finally {
                    inner = false;
                }
                if (!harmless) {
                    throw new RangeError('the expression may take too long');
                }
            }
            return original.apply(this, arguments);
        };
    }
    ['exec', 'test', Symbol.match, Symbol.replace, Symbol.search, Symbol.split].forEach(function (name) {
        var original = RegExp.prototype[name];
        if (typeof original === 'function') {
            Object.defineProperty(RegExp.prototype, name,
                { configurable: false, writable: false, value: guarded(original, name) });
        }
    });
    world._testMode = false;
})(this);
)js"_L1;

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
    const QJSValue result = engine->evaluate(QString(boundaries));
    if (result.isError()) {
        TARNWELL_SYSTEM_LOG(u"The script engine cannot be bounded: "_s + result.toString());
        return {};
    }
    return engine;
}

// Whatever a script throws counts as an error, a plain text too.
QJSValue ScriptHost::evaluate(QJSEngine &engine, const QString &script)
{
    return supervise(engine, [&] {
        QStringList trace;
        const QJSValue result = engine.evaluate(script, u"composition"_s, 1, &trace);
        return trace.isEmpty() || result.isError()
                   ? result
                   : engine.newErrorObject(QJSValue::GenericError, result.toString());
    });
}

QJSValue ScriptHost::call(QJSEngine &engine, QJSValue function, const QJSValueList &arguments)
{
    return supervise(engine, [&] {
        const QJSManagedValue callee(std::move(function), &engine);
        const QJSValue result = callee.call(arguments);
        if (!engine.hasError()) {
            return result;
        }
        const QJSValue thrown = engine.catchError();
        return thrown.isError() ? thrown
                                : engine.newErrorObject(QJSValue::GenericError, thrown.toString());
    });
}

template <typename Run>
QJSValue ScriptHost::supervise(QJSEngine &engine, const Run &run)
{
    const auto fail = [&engine](const QString &reason) {
        if (!engine.property("hasFailed").toBool()) {
            engine.setProperty("hasFailed", true);
            TARNWELL_SYSTEM_LOG(u"A script of a composition gives nothing: "_s + reason);
        }
        return engine.newErrorObject(QJSValue::GenericError, reason);
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
    const QJSValue result = run();
    m_watchdog->release();
    m_nanosecondsLeft -= timer.nsecsElapsed();
    if (engine.isInterrupted()) {
        engine.setInterrupted(false);
        m_nanosecondsLeft = 0;
        return fail(u"it took too long"_s);
    }
    return result.isError() ? fail(result.toString()) : result;
}

} // namespace tarnwell::compositions
