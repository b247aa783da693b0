#pragma once

#include "compositions/model/Value.h"

#include <QJSValue>

class QJSEngine;

namespace tarnwell::compositions {

/// Structures become arrays or plain objects, colours objects with their components; images pass
/// through unseen.
QJSValue toScript(QJSEngine &engine, const Value &value);
/// The reverse. What a script cannot mean, such as functions, is no value; the depth is that of
/// structures. At most so many members are read, and taken off. To look at a value may run code of
/// its engine.
Value fromScript(const QJSValue &value, qint64 &membersLeft);

} // namespace tarnwell::compositions
