tarnwell_test(desktop_files_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/HomeOwnerTest.cpp
            ${CMAKE_CURRENT_LIST_DIR}/LocalFileStoreTest.cpp
    LINKS tarnwell_desktop tarnwell_fakes)
