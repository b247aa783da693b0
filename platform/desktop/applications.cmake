list(APPEND desktop_sources
    ApplicationFolder.cpp
    ApplicationLauncher.cpp
    ApplicationRegistry.cpp
    BundleCache.cpp
    DesktopWorkspace.cpp
    FileBookmarks.cpp
    FileIcon.cpp
    FileStamp.cpp
    GenericIcons.cpp
    IconImage.cpp
    LocalFileManager.cpp)
