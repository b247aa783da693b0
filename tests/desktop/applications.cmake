tarnwell_test(applications_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/ApplicationRegistryTest.cpp
            ${CMAKE_CURRENT_LIST_DIR}/DesktopWorkspaceTest.cpp
            ${CMAKE_CURRENT_LIST_DIR}/FileBookmarksTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes)

tarnwell_test(opening_through_desktop_test NO_MAIN
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/OpeningThroughDesktopTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes)
