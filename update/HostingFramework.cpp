#include "update/HostingFramework.h"

namespace tarnwell::update {

bool hostingFrameworkUpdatesItself()
{
    return &ZOKHasUpdater != nullptr && ZOKHasUpdater();
}

} // namespace tarnwell::update
