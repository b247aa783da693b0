#pragma once

#include "compositions/evaluator/Evaluator.h"

#include <QJsonObject>

namespace tarnwell::compositions {

/// A class of patches that something drawn needs and nothing here can do.
struct UnsupportedClass
{
    QString className;
    QString identifier; ///< which variant of the class; empty for most
    int nodes = 0;

    friend bool operator==(const UnsupportedClass &, const UnsupportedClass &) = default;
};

/// Classes that are not supported and that something that draws depends on, or that would draw
/// themselves. Sorted by name.
std::vector<UnsupportedClass> findUnsupportedClasses(const Network &network);

/// Whether a composition draws at all, or would if all its classes were supported.
bool hasConsumers(const Network &network);

/// Ports that the file speaks of, of classes that are supported, but that nothing here knows: what
/// they do is left out. "Class.port", sorted; only of nodes that something drawn depends on.
QStringList findUnknownPorts(const Network &network);

/// All about a composition that can be said without drawing it: attributes, published inputs with
/// type and value, classes used, and what is not supported.
QJsonObject describe(const Evaluator &evaluator);

/// A value in JSON; images show their size.
QJsonValue toJson(const Value &value);
/// The reverse, for values given by hand: objects with red, green and blue are colours.
Value fromJson(const QJsonValue &json);

/// A description attribute without the markup that templates leave in it.
QString withoutMarkup(const QString &text);

} // namespace tarnwell::compositions
