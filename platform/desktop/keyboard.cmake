list(APPEND desktop_sources
    XkbDeadKeys.cpp
    XkbKeyboardLayouts.cpp
    XkbKeymap.cpp
    XkbLayoutData.cpp
    XkbModifiers.cpp
    XkbNamesSources.cpp
    XkbX11Keyboard.cpp)
