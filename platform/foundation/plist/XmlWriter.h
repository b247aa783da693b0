#pragma once

#include "foundation/plist/Value.h"

#include <QByteArray>

namespace tarnwell::plist::detail {

/// The text of an XML property list, in UTF-8. The value is not null, not deeper than maximumDepth
/// and not without end when spread out.
QByteArray writeXml(const Value &value);

} // namespace tarnwell::plist::detail
