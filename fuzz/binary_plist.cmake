tarnwell_fuzz_target(binary_plist
    SOURCE ${CMAKE_CURRENT_LIST_DIR}/BinaryPropertyListFuzz.cpp
    LINKS tarnwell_foundation)
