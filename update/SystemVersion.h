#pragma once

#include <QtGlobal>

namespace tarnwell::ports {
class SystemFacts;
}

namespace tarnwell::update {

struct UpdateProcessState;

/// The version of the system as six binary-coded decimal digits, two each for its three numbers:
/// 10.6.8 is 0x100608. A version with a number above 99 becomes a number above 0x40000000 that only
/// tells it from others. The first version obtained is kept in the state; 0 as long as the system
/// names none.
quint32 QXSystemVersionBCD(const ports::SystemFacts &systemFacts, UpdateProcessState &state);

} // namespace tarnwell::update
