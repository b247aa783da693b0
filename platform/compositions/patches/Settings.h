#pragma once

#include "compositions/Limits.h"
#include "compositions/evaluator/PatchDefinition.h"

#include <algorithm>
#include <memory>

namespace tarnwell::compositions {

/// A number of ports that a setting asks for, held within the limit.
inline int countSetting(const NodeDescription &description, QLatin1StringView name,
                        int fallback = 0)
{
    const plist::Value &value = description.setting(name);
    return value.isNull() ? fallback
                          : int(std::clamp<qint64>(value.toInteger(), 0, limits::countedPorts));
}

/// Booleans are stored as such or as numbers.
inline bool flagSetting(const NodeDescription &description, QLatin1StringView name,
                        bool fallback = false)
{
    const plist::Value &value = description.setting(name);
    return value.isNull() ? fallback
                          : (value.isNumber() ? value.toDouble() != 0.0 : value.toBool());
}

/// For the tables: makes a patch that needs its settings, or one that does not.
template <typename T>
std::unique_ptr<Patch> makePatch(const NodeDescription &description)
{
    if constexpr (std::is_constructible_v<T, const NodeDescription &>) {
        return std::make_unique<T>(description);
    } else {
        return std::make_unique<T>();
    }
}

} // namespace tarnwell::compositions
