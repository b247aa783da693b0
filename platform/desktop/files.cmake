list(APPEND desktop_sources LocalFileStore.cpp LocalFolders.cpp)
