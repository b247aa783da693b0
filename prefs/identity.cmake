list(APPEND prefs_sources ApplicationIdentity.cpp ApplicationSettings.cpp)
