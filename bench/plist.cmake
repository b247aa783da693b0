add_executable(property_list_benchmark ${CMAKE_CURRENT_LIST_DIR}/PropertyListBenchmark.cpp)
target_link_libraries(property_list_benchmark PRIVATE tarnwell_foundation PkgConfig::LIBPLIST
                                                      benchmark::benchmark)
