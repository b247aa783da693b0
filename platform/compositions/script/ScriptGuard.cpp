#include "compositions/script/ScriptGuard.h"

#include "compositions/script/PatternCost.h"
#include "foundation/Logging.h"

#include <QJSEngine>

#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

/// What a match may take; the engine does some hundred million a second.
constexpr double mostSteps = 3e8;

// Functions of the language that do unbounded work in one step, where no interruption reaches: they
// get bounds before any script runs. Whatever a script could replace is kept in variables, and what
// is looked at is looked at once: an object may turn into another text each time it is asked.
// Buffers of raw memory, and objects that pretend to be others, have no use in a composition. The
// engine crashes when it collects weak collections of some thousand members.
constexpr auto boundaries = R"js(
(function (world, guard) {
    'use strict';
    var most = 1000000;
    var mostComparisons = 100000000;
    var apply = Reflect.apply, construct = Reflect.construct;
    var define = Object.defineProperty, descriptorOf = Object.getOwnPropertyDescriptor;
    var isArray = Array.isArray, Failure = RangeError, Proxy = world.Proxy;
    var source = descriptorOf(RegExp.prototype, 'source').get;
    ['ArrayBuffer', 'SharedArrayBuffer', 'Atomics', 'DataView', 'Int8Array', 'Uint8Array',
     'Uint8ClampedArray', 'Int16Array', 'Uint16Array', 'Int32Array', 'Uint32Array', 'Float32Array',
     'Float64Array', 'Proxy', 'WeakMap', 'WeakSet'].forEach(function (name) { delete world[name]; });

    function check(isAllowed, name) {
        if (!isAllowed) {
            throw new Failure(name + ' may take too long');
        }
    }
    function fix(owner, name, value) {
        define(owner, name, { configurable: false, writable: false, value: value });
    }
    function replace(owner, name, makeNew) {
        if (typeof owner[name] === 'function') {
            fix(owner, name, makeNew(owner[name], String(name)));
        }
    }
    function patternOf(object) {
        try {
            return apply(source, object, []);
        } catch (error) {
            return undefined; // no regular expression
        }
    }
    function isShort(object) {
        if (object === null || (typeof object !== 'object' && typeof object !== 'function')) {
            return true;
        }
        var length = descriptorOf(object, 'length');
        return length === undefined
            ? !('length' in object)
            : length.get === undefined && typeof length.value === 'number' && length.value <= most;
    }

    Object.getOwnPropertyNames(Array.prototype).forEach(function (name) {
        if (name !== 'constructor' && name !== 'length') {
            replace(Array.prototype, name, function (original) {
                return function () {
                    for (var i = 0; i < arguments.length; ++i) {
                        check(isShort(arguments[i]), name);
                    }
                    check(isShort(this), name);
                    return apply(original, this, arguments);
                };
            });
        }
    });
    replace(Array, 'from', function (original, name) {
        return function (object, map, self) {
            check(isShort(object), name);
            return apply(original, this, map === undefined ? [object] : [object, map, self]);
        };
    });
    ['repeat', 'padStart', 'padEnd'].forEach(function (method) {
        replace(String.prototype, method, function (original, name) {
            return function (count, filler) {
                var text = `${this}`, number = +count;
                check(!((name === 'repeat' ? text.length * number : number) > most), name);
                return apply(original, text, filler === undefined ? [number] : [number, filler]);
            };
        });
    });
    ['concat', 'toUpperCase', 'toLowerCase'].forEach(function (method) {
        replace(String.prototype, method, function (original, name) {
            return function () {
                var text = `${this}`;
                check(text.length <= most, name);
                return apply(original, text, arguments);
            };
        });
    });
    ['replace', 'replaceAll', 'split', 'match', 'matchAll', 'search', 'indexOf', 'lastIndexOf',
     'includes'].forEach(function (method) {
        replace(String.prototype, method, function (original, name) {
            var makesPattern = name === 'match' || name === 'matchAll' || name === 'search';
            return function (what, second) {
                var text = `${this}`, pattern = patternOf(what);
                if (what !== undefined && pattern === undefined) {
                    what = `${what}`;
                    check(what.length * text.length <= mostComparisons, name);
                    pattern = makesPattern ? what : undefined;
                }
                check(text.length <= most &&
                      (pattern === undefined || guard.allowsMatch(pattern, text.length)), name);
                return apply(original, text, arguments.length < 2 ? [what] : [what, second]);
            };
        });
    });
    ['exec', 'test', Symbol.match, Symbol.replace, Symbol.search, Symbol.split].forEach(function (method) {
        replace(RegExp.prototype, method, function (original, name) {
            return function (object, second) {
                var text = `${object}`;
                check(guard.allowsMatch(apply(source, this, []), text.length), name);
                return apply(original, this, arguments.length < 2 ? [text] : [text, second]);
            };
        });
    });

    // Instead of a constructor, one that asks first; it goes by the same name and prototype.
    function guarded(original, make) {
        var handler = Object.create(null);
        handler.apply = function (target, self, given) { return make(given[0], given[1]); };
        handler.construct = function (target, given) { return make(given[0], given[1]); };
        var result = new Proxy(original, handler);
        fix(original.prototype, 'constructor', result);
        return result;
    }
    delete RegExp.prototype.compile;
    var Expression = RegExp;
    fix(world, 'RegExp', guarded(Expression, function (object, flags) {
        var pattern = patternOf(object);
        var what = pattern !== undefined ? object : object === undefined ? '' : `${object}`;
        check(guard.allowsPattern(pattern !== undefined ? pattern : what), 'RegExp');
        return construct(Expression, [what, flags]);
    }));
    function refuse() { check(false, 'Function'); }
    guarded(Object.getPrototypeOf(function* () {}).constructor, refuse);
    fix(world, 'Function', guarded(Function, refuse));
    var evaluate = world.eval;
    fix(world, 'eval', function (script) {
        check(typeof script !== 'string' || guard.allowsScript(script), 'eval');
        return evaluate(script);
    });
    world._testMode = false;
})
)js"_L1;

} // namespace

bool ScriptGuard::protect(QJSEngine &engine)
{
    auto *guard = new ScriptGuard(&engine);
    const QJSValue result = engine.evaluate(QString(boundaries))
                                .call({engine.globalObject(), engine.newQObject(guard)});
    if (result.isError())
        TARNWELL_SYSTEM_LOG(u"The script engine cannot be bounded: "_s + result.toString());
    return !result.isError();
}

bool ScriptGuard::allowsScript(const QString &script) const
{
    return !mayHoldHugePattern(script);
}

bool ScriptGuard::allowsPattern(const QString &pattern) const
{
    return std::isfinite(matchingSteps(pattern, 0.0));
}

bool ScriptGuard::allowsMatch(const QString &pattern, double textLength) const
{
    return matchingSteps(pattern, textLength) <= mostSteps;
}

} // namespace tarnwell::compositions
