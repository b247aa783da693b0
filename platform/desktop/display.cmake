list(APPEND desktop_sources
    ScreenWindowServer.cpp
    WaylandClient.cpp
    WaylandShortcuts.cpp
    WindowActivation.cpp)

tarnwell_wayland_protocol(keyboard-shortcuts-inhibit
    ${WAYLAND_PROTOCOLS_FOLDER}/unstable/keyboard-shortcuts-inhibit/keyboard-shortcuts-inhibit-unstable-v1.xml)
list(APPEND desktop_links tarnwell_wayland_keyboard-shortcuts-inhibit Qt6::GuiPrivate)
