#pragma once

#include "desktop/ApplicationRegistry.h"
#include "desktop/BundleCache.h"
#include "desktop/DesktopGlobalShortcuts.h"
#include "desktop/DesktopWorkspace.h"
#include "desktop/DistributedNotifications.h"
#include "desktop/FileBookmarks.h"
#include "desktop/FilePreferences.h"
#include "desktop/HomeOwner.h"
#include "desktop/LinuxSession.h"
#include "desktop/LinuxSystemFacts.h"
#include "desktop/LocalFileManager.h"
#include "desktop/LocalFileStore.h"
#include "desktop/LocalFolders.h"
#include "desktop/LocalLockFiles.h"
#include "desktop/LocalNotifications.h"
#include "desktop/ProcRunningApplications.h"
#include "desktop/ProcessHttpFetcher.h"
#include "desktop/ProcessTasks.h"
#include "desktop/QtTimers.h"
#include "desktop/ScreenWindowServer.h"
#include "desktop/SystemClock.h"
#include "desktop/XkbKeyboardLayouts.h"
#include "foundation/Bundle.h"
#include "ports/Desktop.h"
#include "prefs/ApplicationIdentity.h"
#include "ui/PreferencePane.h"
#include "ui/WidgetOpenPanel.h"
#include "ui/WidgetSheets.h"

#include <functional>

namespace tarnwell::pane {

/// The real desktop of one pane, and the caches that live as long as it. None of the services does
/// work before it is first asked, so making them costs the window nothing. Where root makes it on
/// somebody else's home, this thread acts on files as that home's owner from then on.
class PaneDesktop
{
public:
    explicit PaneDesktop(const ui::PaneContext &context);

    ports::Desktop ports();
    prefs::ApplicationIdentityCache &identityCache() { return m_identityCache; }

    /// Called when notifications may have been missed, because the bus was joined late or again.
    void setMissedNotificationsHandler(std::function<void()> handler);

private:
    desktop::HomeOwner m_homeOwner; ///< before anything looks into the home
    desktop::Places m_places;
    desktop::SystemClock m_clock;
    desktop::QtTimers m_timers;
    desktop::FilePreferences m_preferences;
    desktop::BundleCache m_bundles;
    desktop::ApplicationRegistry m_applications;
    desktop::LocalFileManager m_fileManager;
    desktop::FileBookmarks m_bookmarks;
    desktop::DesktopWorkspace m_workspace;
    desktop::XkbKeyboardLayouts m_keyboardLayouts;
    desktop::LocalNotifications m_localNotifications;
    desktop::DistributedNotifications m_distributedNotifications;
    desktop::LinuxSystemFacts m_systemFacts;
    desktop::ProcRunningApplications m_runningApplications;
    desktop::ProcessTasks m_tasks;
    desktop::ProcessHttpFetcher m_httpFetcher;
    ui::WidgetSheets m_sheets;
    ui::WidgetOpenPanel m_openPanel;
    desktop::LocalFileStore m_fileStore;
    desktop::LinuxSession m_session;
    desktop::LocalLockFiles m_lockFiles;
    desktop::DesktopGlobalShortcuts m_globalShortcuts;
    desktop::LocalFolders m_folders;
    desktop::ScreenWindowServer m_windowServer;
    ports::HostApplication &m_hostApplication;
    prefs::ApplicationIdentityCache m_identityCache;
};

} // namespace tarnwell::pane
