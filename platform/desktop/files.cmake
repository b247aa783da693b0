list(APPEND desktop_sources LocalFileStore.cpp)
