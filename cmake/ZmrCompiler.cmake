# Language, warnings and flags that hold for every target of the tree.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# One folder for programs and dynamic libraries: Windows looks for a DLL beside the program.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

find_program(ZMR_CCACHE ccache)
if(ZMR_CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER ${ZMR_CCACHE})
    # Without these the cache leaves out what is compiled with a precompiled header.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        env CCACHE_SLOPPINESS=pch_defines,time_macros ${ZMR_CCACHE})
endif()

find_package(Threads REQUIRED)

add_library(zmr_warnings INTERFACE)
target_compile_options(zmr_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # The same set as GCC's: there -Wconversion is without changes of sign. A folder's -Wno- options
    # are GCC's.
    target_compile_options(zmr_warnings INTERFACE
        -Wno-sign-conversion -Wno-unknown-warning-option)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees these in its own vector and string when it has inlined them; the sanitizers' lane
    # finds the true ones.
    target_compile_options(zmr_warnings INTERFACE
        -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread -Wno-restrict)
endif()

# Assertions stay on in the lanes that run the tests.
if(ZMR_SANITIZE)
    # Lines are enough for a report; all that a debugger would like to know makes compiling a third
    # slower.
    set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1 -fno-omit-frame-pointer")
else()
    set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g -fno-omit-frame-pointer")
endif()
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")
set(CMAKE_CXX_FLAGS_RELEASE "-O3 -DNDEBUG")
if(NOT WIN32)
    # Nobody puts functions of his own in the place of the library's: calls within it are inlined.
    string(APPEND CMAKE_CXX_FLAGS_RELEASE " -fno-semantic-interposition")
endif()
if(NOT WIN32)
    add_compile_definitions($<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
endif()

if(NOT WIN32 AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Symbols that the loader keeps one of for the whole process would hold every library that has
    # one in memory for ever.
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
endif()

if(WIN32)
    # A processor fault becomes a C++ exception in the running function: every unit between the
    # fault and its catch needs both flags.
    add_compile_options(
        $<$<COMPILE_LANGUAGE:CXX>:-fnon-call-exceptions>
        $<$<COMPILE_LANGUAGE:CXX>:-fno-delete-dead-exceptions>)
    add_compile_definitions(_WIN32_WINNT=0x0601)
    # What the library gives is what it marks; the run-time libraries are shared, so that types and
    # exceptions are one across its border.
    add_link_options(LINKER:--exclude-all-symbols)
endif()

if(ZMR_SANITIZE)
    set(sanitize -fsanitize=${ZMR_SANITIZE} -fno-sanitize-recover=all)
    if(ZMR_BUILD_FUZZERS)
        list(APPEND sanitize -fsanitize=fuzzer-no-link)
    endif()
    add_compile_options(${sanitize})
    add_link_options(${sanitize})
    list(JOIN sanitize " " ZMR_SANITIZE_FLAGS)
endif()
