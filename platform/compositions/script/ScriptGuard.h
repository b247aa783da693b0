#pragma once

#include <QObject>

class QJSEngine;

namespace tarnwell::compositions {

/// Answers the questions that an engine's own functions ask before they do something that no
/// interruption reaches. Scripts never get hold of it.
class ScriptGuard final : public QObject
{
    Q_OBJECT

public:
    /// Bounds the functions of a fresh engine. False when the engine can't be bounded.
    static bool protect(QJSEngine &engine);

    Q_INVOKABLE bool allowsScript(const QString &script) const;
    Q_INVOKABLE bool allowsPattern(const QString &pattern) const;
    Q_INVOKABLE bool allowsMatch(const QString &pattern, double textLength) const;

private:
    using QObject::QObject;
};

} // namespace tarnwell::compositions
