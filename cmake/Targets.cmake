# tarnwell_library(<folder> SOURCES ... [LINKS ...] [MOC])
# One static library a folder: its name is tarnwell_<folder>, and LINKS is the whole list of what
# the folder may include. MOC is given by the few folders that declare Q_OBJECT classes.
function(tarnwell_library folder)
    cmake_parse_arguments(ARG "MOC" "" "SOURCES;LINKS" ${ARGN})
    add_library(tarnwell_${folder} STATIC ${ARG_SOURCES})
    target_include_directories(tarnwell_${folder} PUBLIC ${PROJECT_SOURCE_DIR}
                                                         ${PROJECT_SOURCE_DIR}/platform)
    target_link_libraries(tarnwell_${folder} PUBLIC ${ARG_LINKS})
    if(ARG_MOC)
        set_target_properties(tarnwell_${folder} PROPERTIES AUTOMOC ON)
    endif()
endfunction()

# tarnwell_test(<name> SOURCES ... [LINKS ...] [MOC] [NO_MAIN]
#     [ON XServer|Wayland] [TIMEOUT seconds] [ENVIRONMENT ...])
# A GoogleTest program that CTest runs as a whole. Its main() comes from tests/support and makes a
# QApplication on the offscreen platform, or ON a display server of the test's own, unless NO_MAIN says
# that the test brings its main().
function(tarnwell_test name)
    cmake_parse_arguments(ARG "MOC;NO_MAIN" "ON;TIMEOUT" "SOURCES;LINKS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/platform)
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} GTest::gtest)
    if(ARG_ON)
        target_link_libraries(${name} PRIVATE tarnwell_test_main_${ARG_ON})
    elseif(NOT ARG_NO_MAIN)
        target_link_libraries(${name} PRIVATE tarnwell_test_main)
    endif()
    if(ARG_MOC)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} SKIP_RETURN_CODE 77)
    set(environment "QT_QPA_PLATFORM=offscreen" "LC_ALL=C.UTF-8" "UBSAN_OPTIONS=print_stacktrace=1"
                    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks.txt"
                    ${ARG_ENVIRONMENT})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment}")
endfunction()

# tarnwell_fuzz_target(<name> SOURCE file LINKS ...)
# With TARNWELL_FUZZ a libFuzzer program. Otherwise a plain program that runs every corpus file once,
# which the tests call, so that a crash found once stays found.
function(tarnwell_fuzz_target name)
    cmake_parse_arguments(ARG "" "SOURCE" "LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCE})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS})
    if(TARNWELL_FUZZ)
        # Apart from the other programs, so that whoever runs them all needs no list of them.
        set_target_properties(${name} PROPERTIES
                              RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/fuzzers)
        add_dependencies(fuzzers ${name})
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    else()
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/ReplayMain.cpp)
        if(TARNWELL_TESTS)
            add_test(NAME ${name}_corpus
                     COMMAND ${name} ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
            set_tests_properties(${name}_corpus PROPERTIES TIMEOUT 120)
        endif()
    endif()
endfunction()

# tarnwell_wayland_protocol(<name> <description>)
# The client's half of a Wayland protocol, translated from its XML description: the library
# tarnwell_wayland_<name>, included as "<name>-client.h".
function(tarnwell_wayland_protocol name description)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/wayland)
    file(MAKE_DIRECTORY ${folder})
    add_custom_command(
        OUTPUT ${folder}/${name}-client.h ${folder}/${name}.c
        COMMAND ${WAYLAND_SCANNER} client-header ${description} ${folder}/${name}-client.h
        COMMAND ${WAYLAND_SCANNER} private-code ${description} ${folder}/${name}.c
        DEPENDS ${description}
        VERBATIM)
    add_library(tarnwell_wayland_${name} STATIC ${folder}/${name}.c ${folder}/${name}-client.h)
    target_include_directories(tarnwell_wayland_${name} SYSTEM PUBLIC ${folder})
    target_link_libraries(tarnwell_wayland_${name} PUBLIC PkgConfig::WAYLAND_CLIENT)
endfunction()
