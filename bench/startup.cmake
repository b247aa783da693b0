# Not a benchmark itself: it watches the window of the program that startup.py measures.
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
add_executable(window_ready ${CMAKE_CURRENT_LIST_DIR}/window_ready.cpp)
target_link_libraries(window_ready PRIVATE PkgConfig::XCB)
set_target_properties(window_ready PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
