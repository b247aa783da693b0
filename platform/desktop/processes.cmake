list(APPEND desktop_sources
    ProcRunningApplications.cpp
    ProcessHttpFetcher.cpp
    ProcessTasks.cpp)
