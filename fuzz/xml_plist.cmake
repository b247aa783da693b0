tarnwell_fuzz_target(xml_plist
    SOURCE ${CMAKE_CURRENT_LIST_DIR}/XmlPropertyListFuzz.cpp
    LINKS tarnwell_foundation)
