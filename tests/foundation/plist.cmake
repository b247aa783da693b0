tarnwell_test(property_list_test
    SOURCES
        ${CMAKE_CURRENT_LIST_DIR}/PropertyListBadInputTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/PropertyListOracleTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/PropertyListRoundTripTest.cpp
        ${CMAKE_CURRENT_LIST_DIR}/PropertyListValueTest.cpp
    LINKS tarnwell_foundation)
