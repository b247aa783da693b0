tarnwell_test(identity_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/ApplicationIdentityTest.cpp
            ${CMAKE_CURRENT_LIST_DIR}/ApplicationSettingsTest.cpp
    LINKS tarnwell_prefs tarnwell_fakes)
