tarnwell_test(bundle_test
    SOURCES
        ${CMAKE_CURRENT_LIST_DIR}/BoundedFileTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/BundleTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/DesktopEntryTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/ForeignTextTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/StandardErrorLogTest.cpp
    LINKS tarnwell_foundation tarnwell_fakes)
