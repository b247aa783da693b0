tarnwell_test(key_layout_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/KeyCodesTest.cpp
            ${CMAKE_CURRENT_LIST_DIR}/KeyLayoutBuilderTest.cpp
            ${CMAKE_CURRENT_LIST_DIR}/KeyLayoutReaderTest.cpp
    LINKS tarnwell_foundation tarnwell_fakes)
