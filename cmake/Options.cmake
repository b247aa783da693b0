option(TARNWELL_WERROR "Treat compiler warnings as errors" OFF)
option(TARNWELL_TESTS "Build the tests" ON)
option(TARNWELL_BENCHMARKS "Build the benchmarks" OFF)
option(TARNWELL_FUZZ "Build the fuzz targets with libFuzzer" OFF)
option(TARNWELL_COVERAGE "Count executed lines for gcov" OFF)
set(TARNWELL_SANITIZE "" CACHE STRING "Sanitizers for every target, as -fsanitize= takes them")
set(TARNWELL_WEB_SERVER "https://www.varnit.example" CACHE STRING
    "The maker's web server, without a slash at the end")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wimplicit-fallthrough
                    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
                    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
if(TARNWELL_WERROR)
    add_compile_options(-Werror)
endif()
if(TARNWELL_SANITIZE)
    add_compile_options(-fsanitize=${TARNWELL_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${TARNWELL_SANITIZE})
else()
    # A library that forgets one of its links must fail here, not in whoever loads it. The
    # sanitizers' own symbols come from the executable, so the check is off under them.
    add_link_options($<$<NOT:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>>:-Wl,--no-undefined>)
endif()
if(TARNWELL_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(TARNWELL_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()

add_compile_definitions(
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS
    QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
