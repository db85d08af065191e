# Unit tests: one GoogleTest program for each folder and lane.
if(WIN32)
    set(ZMR_LANE win)
else()
    set(ZMR_LANE native)
endif()

set(INSTALL_GTEST OFF)
set(BUILD_GMOCK ON)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
include(GoogleTest)

# With sanitizers the optimizer takes twice as long over a test's checks as the rest of the compiler.
set(zmr_test_options $<$<CONFIG:Debug>:-O0>)
foreach(target IN ITEMS gtest gtest_main gmock gmock_main)
    target_compile_options(${target} PRIVATE ${zmr_test_options})
endforeach()

# zmr_precompile(<target> PRIVATE <header>... | REUSE_FROM <target>): as target_precompile_headers,
# in a way that the compiler cache can follow.
function(zmr_precompile target)
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
    target_precompile_headers(${target} ${ARGN})
endfunction()
# What most tests include. Programs with the same options share what this one makes of it; a
# library's options would be others.
set(zmr_test_includes
    <gtest/gtest.h> <algorithm> <filesystem> <fstream> <functional> <memory> <string> <thread>
    <vector>)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/precompiled.cpp CONTENT "int main() {}\n")
add_executable(zmr_test_precompiled EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/precompiled.cpp)
target_link_libraries(zmr_test_precompiled PRIVATE GTest::gtest zmr_warnings)
target_compile_options(zmr_test_precompiled PRIVATE ${zmr_test_options})
zmr_precompile(zmr_test_precompiled PRIVATE ${zmr_test_includes})

# zmr_add_test(<folder> SOURCES <source>... LINK <target>... [TIMEOUT <seconds>] [DATA <folder>]
#              [DISPLAY] [OPTIMIZED])
# builds the program test_<folder>. LINK names folders' targets, whose objects and those of all the
# floors below are taken in directly, and other libraries. The tests are called
# <lane>.<folder>.<Suite>.<Case>; they are looked up when ctest starts, not during the build. In the
# win lane a test of ctest is a whole suite, <lane>.<folder>.<Suite>, because each start of Wine
# costs more than most cases do. DATA is given to the program as ZMR_TEST_DATA. DISPLAY: the program
# opens windows; those of two programs at once would take the focus from each other. OPTIMIZED: what
# the tests themselves do takes long.
function(zmr_add_test folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "DISPLAY;OPTIMIZED" "TIMEOUT;DATA" "SOURCES;LINK")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set(program test_${folder})
    add_executable(${program} ${arg_SOURCES})
    zmr_link_objects(${program} ${arg_LINK})
    target_link_libraries(${program} PRIVATE
        zmr_test_headers GTest::gmock GTest::gtest_main zmr_warnings)
    if(arg_OPTIMIZED)
        zmr_precompile(${program} PRIVATE ${zmr_test_includes})
    else()
        target_compile_options(${program} PRIVATE ${zmr_test_options})
        zmr_precompile(${program} REUSE_FROM zmr_test_precompiled)
    endif()
    if(arg_DATA)
        target_compile_definitions(${program} PRIVATE ZMR_TEST_DATA="${arg_DATA}")
    endif()
    zmr_windows_program(${program})

    set(properties TIMEOUT ${arg_TIMEOUT} LABELS ${folder})
    if(arg_DISPLAY)
        list(APPEND properties RESOURCE_LOCK display)
    endif()
    if(NOT WIN32)
        gtest_discover_tests(${program}
            DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
            TEST_PREFIX ${ZMR_LANE}.${folder}.
            PROPERTIES ${properties})
        return()
    endif()
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${program}_suites.cmake)
    file(GENERATE OUTPUT ${script} CONTENT "\
set(program \"$<TARGET_FILE:${program}>\")
set(emulator \"${CMAKE_CROSSCOMPILING_EMULATOR}\")
set(prefix \"${ZMR_LANE}.${folder}.\")
set(properties \"${properties}\")
set(list_file \"${CMAKE_CURRENT_BINARY_DIR}/${program}_suites.txt\")
include(\"${PROJECT_SOURCE_DIR}/cmake/DiscoverSuites.cmake\")
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${script})
endfunction()
