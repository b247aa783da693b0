list(APPEND desktop_sources
    HomeOwner.cpp
    LocalFileStore.cpp
    LocalFolders.cpp
    ReturnedFiles.cpp)
