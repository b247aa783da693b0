#pragma once

#include "compositions/model/Value.h"

#include <QJSValue>

class QJSEngine;

namespace tarnwell::compositions {

/// Structures become arrays or plain objects, colours objects with their components; images pass
/// through unseen.
QJSValue toScript(QJSEngine &engine, const Value &value);
/// The reverse. What a script cannot mean, such as functions, is no value; depth and size are those
/// of structures.
Value fromScript(const QJSValue &value);

} // namespace tarnwell::compositions
