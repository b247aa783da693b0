tarnwell_test(keyboard_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/KeyboardNamesTest.cpp
            ${CMAKE_CURRENT_LIST_DIR}/XkbLayoutDataTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes)
tarnwell_test(keyboard_database_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/KeyboardDatabaseTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes
    TIMEOUT 600)
tarnwell_test(keyboard_x11_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/X11KeyboardTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes Qt6::Test
    ON XServer)
tarnwell_test(keyboard_locale_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/LocaleServiceTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes Qt6::Test)
