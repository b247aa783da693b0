list(APPEND desktop_sources
    FileSystemIds.cpp
    HomeOwner.cpp
    LocalFileStore.cpp
    LocalFolders.cpp
    ReturnedFiles.cpp)
