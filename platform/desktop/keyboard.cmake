list(APPEND desktop_sources
    WaylandKeyboard.cpp
    XkbDeadKeys.cpp
    XkbKeyboardLayouts.cpp
    XkbKeymap.cpp
    XkbLayoutData.cpp
    XkbModifiers.cpp
    XkbNamesSources.cpp
    XkbX11Keyboard.cpp)
