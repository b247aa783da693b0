#pragma once

#include "compositions/model/Value.h"
#include "foundation/plist/Value.h"

namespace tarnwell::compositions {

/// The value of a port as files store it. Data is a saved structure or nothing; numbers that are
/// none are 0.
Value decodeValue(const plist::Value &stored);

/// A structure from a keyed archive, which is a property list of its own. Null when it is none.
StructureRef decodeArchivedStructure(const plist::Value &archive);

} // namespace tarnwell::compositions
