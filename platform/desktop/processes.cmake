list(APPEND desktop_sources
    ProcRunningApplications.cpp
    ProcessTasks.cpp
    QtHttpFetcher.cpp)
