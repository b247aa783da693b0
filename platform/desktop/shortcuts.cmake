list(APPEND desktop_sources
    DesktopGlobalShortcuts.cpp
    GlobalShortcutKeys.cpp
    GnomeShortcuts.cpp
    ShortcutMessages.cpp)
