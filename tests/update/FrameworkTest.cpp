// A process with the plug-in framework in it, played by this program.

#include "UpdateFixture.h"
#include "update/HostingFramework.h"
#include "update/UpdateSchedule.h"

namespace {
bool updatesItself = false;
}

bool ZOKHasUpdater()
{
    return updatesItself;
}

namespace tarnwell::tests {

using Framework = UpdateFixture;

TEST_F(Framework, MayDoItsOwnUpdating)
{
    const foundation::Bundle bundle = plugin();
    CapturedLog log;
    updatesItself = true;
    EXPECT_EQ(update::QXCheckForUpdatesIfDue(context(), bundle, false, nullptr), 0);
    EXPECT_EQ(update::QXCheckForUpdatesIfDue(context(), std::nullopt, false, nullptr), 0);
    EXPECT_TRUE(opened().isEmpty());
    EXPECT_TRUE(preferences.control().writes().isEmpty());
    updatesItself = false;
    EXPECT_EQ(update::QXCheckForUpdatesIfDue(context(), bundle, false, nullptr), 0);
    EXPECT_EQ(opened().size(), 1);
}

} // namespace tarnwell::tests
