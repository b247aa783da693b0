list(APPEND desktop_sources
    LinuxSession.cpp
    LocalLockFiles.cpp)
