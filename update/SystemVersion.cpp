#include "update/SystemVersion.h"

#include "ports/SystemFacts.h"
#include "update/UpdateContext.h"

#include <algorithm>
#include <array>

namespace tarnwell::update {

namespace {

constexpr qint32 largestOfTwoDigits = 99;

quint32 twoDigits(qint32 number)
{
    const auto digits = quint32(std::max(number, 0));
    return digits / 10 << 4 | digits % 10;
}

quint32 packed(const std::array<qint32, 3> &numbers)
{
    if (std::ranges::max(numbers) <= largestOfTwoDigits)
        return twoDigits(numbers[0]) << 16 | twoDigits(numbers[1]) << 8 | twoDigits(numbers[2]);
    // The release of a distribution may be a date, and that of a kernel end in 226. What they are
    // packed for is to be told apart, which digits cut off could not be. Numbers below the base
    // never meet, nor do any that differ in the first one alone.
    constexpr quint32 base = 1021;
    constexpr quint32 mark = 1U << 30; // no six digits reach that far
    quint32 value = 0;
    for (const qint32 number : numbers)
        value = value * base + quint32(std::max(number, 0));
    return mark | (value & (mark - 1));
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
        state.systemVersion = packed({*major, *minor, *bugFix});
    } else if (const auto level = systemFacts.gestalt(ports::fourCharacterCode("sysv"))) {
        const auto bits = quint32(*level);
        state.systemVersion = (bits << 8 & 0xFF0000U) | (bits << 4 & 0xF00U) | (bits & 0xFU);
    }
    return state.systemVersion.value_or(0);
}

} // namespace tarnwell::update
