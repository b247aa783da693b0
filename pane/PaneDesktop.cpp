#include "pane/PaneDesktop.h"

namespace tarnwell::pane {

PaneDesktop::PaneDesktop(const ui::PaneContext &context)
    : m_homeOwner(context.home)
    , m_places{context.home, context.root}
    , m_preferences(context.home, m_clock)
    , m_applications(m_places, m_bundles)
    , m_fileManager(m_places, m_bundles)
    , m_bookmarks(m_places, m_bundles)
    , m_workspace(m_places)
    , m_keyboardLayouts(context.root)
    , m_distributedNotifications(m_timers)
    , m_systemFacts(context.root, desktop::LinuxSystemFacts::ownExecutablePath())
    , m_runningApplications(m_bundles)
    , m_httpFetcher(context.bundlePath + QStringLiteral("/Contents/Linux/tarnwell-fetch-list"))
    , m_openPanel(m_sheets, m_applications, m_runningApplications, m_workspace)
    , m_session(context.root)
    , m_hostApplication(context.hostApplication)
{
    // The tutorial is an application like any other, but for where it lies.
    m_applications.addFolder(context.bundlePath + QStringLiteral("/Contents/Resources"));
}

ports::Desktop PaneDesktop::ports()
{
    return {m_preferences,
            m_applications,
            m_fileManager,
            m_bookmarks,
            m_keyboardLayouts,
            m_localNotifications,
            m_distributedNotifications,
            m_workspace,
            m_clock,
            m_timers,
            m_systemFacts,
            m_hostApplication,
            m_sheets,
            m_openPanel,
            m_httpFetcher,
            m_tasks,
            m_fileStore,
            m_session,
            m_lockFiles,
            m_globalShortcuts,
            m_folders,
            m_windowServer};
}

void PaneDesktop::setMissedNotificationsHandler(std::function<void()> handler)
{
    m_distributedNotifications.setMissedNotificationsHandler(std::move(handler));
}

} // namespace tarnwell::pane
