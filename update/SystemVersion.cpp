#include "update/SystemVersion.h"

#include "ports/SystemFacts.h"
#include "update/UpdateContext.h"

#include <algorithm>

namespace tarnwell::update {

namespace {

quint32 twoDigits(qint32 number)
{
    const auto digits = quint32(std::clamp(number, 0, 99));
    return digits / 10 << 4 | digits % 10;
}

} // namespace

quint32 QXSystemVersionBCD(const ports::SystemFacts &systemFacts, UpdateProcessState &state)
{
    if (state.systemVersion)
        return *state.systemVersion;
    const auto major = systemFacts.gestalt(ports::fourCharacterCode("sys1"));
    const auto minor = systemFacts.gestalt(ports::fourCharacterCode("sys2"));
    const auto bugFix = systemFacts.gestalt(ports::fourCharacterCode("sys3"));
    if (major && minor && bugFix) {
        state.systemVersion = twoDigits(*major) << 16 | twoDigits(*minor) << 8 | twoDigits(*bugFix);
    } else if (const auto level = systemFacts.gestalt(ports::fourCharacterCode("sysv"))) {
        const auto packed = quint32(*level);
        state.systemVersion = (packed << 8 & 0xFF0000U) | (packed << 4 & 0xF00U) | (packed & 0xFU);
    }
    return state.systemVersion.value_or(0);
}

} // namespace tarnwell::update
