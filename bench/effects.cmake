add_executable(effects_benchmark ${CMAKE_CURRENT_LIST_DIR}/EffectsBenchmark.cpp)
target_link_libraries(effects_benchmark PRIVATE tarnwell_effects_view tarnwell_desktop
                                                benchmark::benchmark)
target_include_directories(effects_benchmark PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_compile_definitions(effects_benchmark PRIVATE
    TARNWELL_COMPOSITIONS="${PROJECT_SOURCE_DIR}/samples/compositions")
