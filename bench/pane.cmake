add_executable(pane_benchmark ${CMAKE_CURRENT_LIST_DIR}/PaneBenchmark.cpp)
target_link_libraries(pane_benchmark PRIVATE tarnwell_pane_desktop benchmark::benchmark)
target_include_directories(pane_benchmark PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(pane_benchmark PRIVATE
    TARNWELL_PANE_BUNDLE="${CMAKE_BINARY_DIR}/Tarnwell.prefPane"
    TARNWELL_MAKE_LARGE_DOMAIN="${PROJECT_SOURCE_DIR}/samples/make_large_domain.py")
add_dependencies(pane_benchmark tarnwell_bundle_resources)

add_executable(flood_benchmark ${CMAKE_CURRENT_LIST_DIR}/FloodBenchmark.cpp)
target_link_libraries(flood_benchmark PRIVATE tarnwell_pane_desktop benchmark::benchmark)
target_include_directories(flood_benchmark PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(flood_benchmark PRIVATE
    TARNWELL_PANE_BUNDLE="${CMAKE_BINARY_DIR}/Tarnwell.prefPane"
    TARNWELL_MAKE_LARGE_DOMAIN="${PROJECT_SOURCE_DIR}/samples/make_large_domain.py")
add_dependencies(flood_benchmark tarnwell_bundle_resources)
