tarnwell_test(desktop_session_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/LockFilesTest.cpp ${CMAKE_CURRENT_LIST_DIR}/SessionTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes)
