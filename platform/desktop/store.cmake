list(APPEND desktop_sources
    BusThread.cpp
    DistributedNotifications.cpp
    DomainFile.cpp
    FilePreferences.cpp
    LinkTarget.cpp
    LinuxSystemFacts.cpp
    LocalNotifications.cpp
    LockedFile.cpp
    NotificationBus.cpp
    NotificationInbox.cpp
    NotificationMessage.cpp
    NotificationQueue.cpp
    ObserverList.cpp
    PreferenceDomain.cpp
    QtTimers.cpp
    SystemClock.cpp)
