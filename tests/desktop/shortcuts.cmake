tarnwell_test(global_shortcuts_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/GlobalShortcutsTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes Qt6::DBus
    ENVIRONMENT "GSETTINGS_BACKEND=memory")
