#include "compositions/model/Composition.h"

namespace tarnwell::compositions {

const plist::Value &NodeDescription::setting(QLatin1StringView name) const
{
    return settings.value(name);
}

} // namespace tarnwell::compositions
