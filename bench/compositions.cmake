add_executable(compositions_benchmark ${CMAKE_CURRENT_LIST_DIR}/CompositionBenchmark.cpp)
target_link_libraries(compositions_benchmark
    PRIVATE tarnwell_compositions_opengl benchmark::benchmark)
target_compile_definitions(compositions_benchmark
    PRIVATE SAMPLE_COMPOSITIONS="${PROJECT_SOURCE_DIR}/samples/compositions")
