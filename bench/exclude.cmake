add_executable(exclude_benchmark ${CMAKE_CURRENT_LIST_DIR}/ExcludeBenchmark.cpp)
target_link_libraries(exclude_benchmark PRIVATE tarnwell_pane_desktop benchmark::benchmark)
target_include_directories(exclude_benchmark PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(exclude_benchmark PRIVATE
    TARNWELL_PANE_BUNDLE="${CMAKE_BINARY_DIR}/Tarnwell.prefPane")
add_dependencies(exclude_benchmark tarnwell_bundle_resources)
