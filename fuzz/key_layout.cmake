# The seeds are a layout written by hand and some that the desktop made of the keyboard database.
tarnwell_fuzz_target(key_layout
    SOURCE ${CMAKE_CURRENT_LIST_DIR}/KeyLayoutFuzz.cpp
    LINKS tarnwell_shortcuts)
