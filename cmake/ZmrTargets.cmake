# The folders' targets and the library that is made of them.
include(ZmrWindowsProgram)

# zmr_expose(<target>): publishes the calling folder under its own name and nothing else, by an
# include path that holds one link, to the folder. So an include that goes up does not compile.
function(zmr_expose target)
    file(RELATIVE_PATH path ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    set(root ${PROJECT_BINARY_DIR}/floors/${target})
    cmake_path(GET path PARENT_PATH parent)
    file(MAKE_DIRECTORY ${root}/${parent})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${path} SYMBOLIC)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${root}>)
endfunction()

# zmr_lane_header(<target> <name>): "<folder>/<name>OfLane.h" is <name>_win.h in the win lane and
# <name>_posix.h in the others.
function(zmr_lane_header target name)
    file(RELATIVE_PATH path ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    set(root ${PROJECT_BINARY_DIR}/floors/${target}.lane)
    file(MAKE_DIRECTORY ${root}/${path})
    if(WIN32)
        set(source ${CMAKE_CURRENT_SOURCE_DIR}/${name}_win.h)
    else()
        set(source ${CMAKE_CURRENT_SOURCE_DIR}/${name}_posix.h)
    endif()
    file(CREATE_LINK ${source} ${root}/${path}/${name}OfLane.h SYMBOLIC)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${root}>)
    set_property(GLOBAL APPEND PROPERTY ZMR_LANE_HEADERS ${root}/${path}/${name}OfLane.h)
endfunction()

# zmr_floors_below(<out> <target>...): the folders' targets among the targets and all that they link.
function(zmr_floors_below out)
    set(found "")
    set(left ${ARGN})
    while(left)
        list(POP_FRONT left target)
        if(NOT TARGET ${target} OR ${target} IN_LIST found)
            continue()
        endif()
        get_target_property(type ${target} TYPE)
        if(NOT type STREQUAL "OBJECT_LIBRARY")
            continue()
        endif()
        list(APPEND found ${target})
        get_target_property(links ${target} INTERFACE_LINK_LIBRARIES)
        if(links)
            list(APPEND left ${links})
        endif()
    endwhile()
    set(${out} ${found} PARENT_SCOPE)
endfunction()

# zmr_library_texts(<target>): takes in the library's string table. The library has it; a program
# that takes in the folders' objects asks for it.
function(zmr_library_texts target)
    if(WIN32)
        set(texts ${PROJECT_SOURCE_DIR}/settings/library_texts.rc)
        target_sources(${target} PRIVATE ${texts})
        set_property(SOURCE ${texts} PROPERTY
                     OBJECT_DEPENDS ${PROJECT_SOURCE_DIR}/settings/LibraryIds.h)
    endif()
endfunction()

# zmr_add_library(<folder>...): the dynamic library ZMR_GV out of the folders' object targets.
function(zmr_add_library)
    add_library(ZMR_GV SHARED ${PROJECT_SOURCE_DIR}/platform/Export.h)
    add_library(ZMR_GV::ZMR_GV ALIAS ZMR_GV)
    set_target_properties(ZMR_GV PROPERTIES
        LINKER_LANGUAGE CXX
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    foreach(folder IN LISTS ARGN)
        string(REPLACE "/" "_" target zmr_${folder})
        target_compile_definitions(${target} PRIVATE ZMR_GV_BUILD)
        set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
        target_link_libraries(ZMR_GV PRIVATE ${target})
        # Users inside this tree see the headers as users of the installed package do.
        target_include_directories(ZMR_GV INTERFACE
            "$<BUILD_INTERFACE:$<TARGET_PROPERTY:${target},INTERFACE_INCLUDE_DIRECTORIES>>")
    endforeach()
    target_include_directories(ZMR_GV INTERFACE $<INSTALL_INTERFACE:include/ZMR_GV>)
    target_compile_features(ZMR_GV INTERFACE cxx_std_20)
    if(NOT WIN32)
        # A symbol of the kind "unique", as inline variables of the standard library are, would keep
        # a module in memory for good.
        target_compile_options(ZMR_GV INTERFACE
            $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>)
    endif()
    if(WIN32)
        set_target_properties(ZMR_GV PROPERTIES PREFIX "")
        # Inline functions of public headers call it.
        target_link_libraries(ZMR_GV INTERFACE comctl32)
        # The library's entry function: in the library only, a program that takes in the objects has
        # none.
        target_sources(ZMR_GV PRIVATE ${PROJECT_SOURCE_DIR}/foundation/ModuleEntry_win.cpp)
        target_compile_definitions(ZMR_GV PRIVATE ZMR_GV_BUILD)
        zmr_runtime_beside(${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
        configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/version.rc.in
                       ${PROJECT_BINARY_DIR}/version.rc @ONLY)
        target_sources(ZMR_GV PRIVATE
            ${PROJECT_BINARY_DIR}/version.rc
            ${PROJECT_SOURCE_DIR}/platform/platform.rc)
        set_source_files_properties(${PROJECT_SOURCE_DIR}/platform/platform.rc PROPERTIES
            OBJECT_DEPENDS ${PROJECT_SOURCE_DIR}/platform/PlatformIds.h)
        zmr_library_texts(ZMR_GV)
    elseif(NOT ZMR_BUILD_FUZZERS)
        target_link_options(ZMR_GV PRIVATE LINKER:--no-undefined)
    endif()
endfunction()

# zmr_link_objects(<program> <target>...): links the folders' objects themselves, with those of all
# the floors below, and other targets as they are. So hidden parts can be reached too.
function(zmr_link_objects program)
    zmr_floors_below(floors ${ARGN})
    set(others ${ARGN})
    list(REMOVE_ITEM others ${floors})
    target_link_libraries(${program} PRIVATE ${floors} ${others})
    target_compile_definitions(${program} PRIVATE ZMR_GV_STATIC)
endfunction()

# zmr_add_fuzz(<name> SOURCES <source>... LINK <target>...): the libFuzzer program fuzz_<name>. As a
# test it runs for ZMR_FUZZ_SECONDS on the inputs in fuzz/corpus/<name>; what it finds beyond them is
# kept in the build folder.
set(ZMR_FUZZ_SECONDS 2 CACHE STRING "How long a fuzz target runs as a test")
add_custom_target(zmr_fuzz_programs)
function(zmr_add_fuzz name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    set(program fuzz_${name})
    add_executable(${program} ${arg_SOURCES})
    zmr_link_objects(${program} ${arg_LINK})
    target_link_libraries(${program} PRIVATE zmr_warnings)
    target_link_options(${program} PRIVATE -fsanitize=fuzzer)
    add_dependencies(zmr_fuzz_programs ${program})
    set(found ${PROJECT_BINARY_DIR}/fuzz/${name}/corpus)
    file(MAKE_DIRECTORY ${found})
    set(corpus "")
    if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
        set(corpus ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
    endif()
    add_test(NAME fuzz.${name}
             COMMAND ${program} -max_total_time=${ZMR_FUZZ_SECONDS} -timeout=5 -rss_limit_mb=512
                     -malloc_limit_mb=256 -artifact_prefix=${PROJECT_BINARY_DIR}/fuzz/${name}/ ${found} ${corpus})
    math(EXPR limit "${ZMR_FUZZ_SECONDS} + 120")
    set_tests_properties(fuzz.${name} PROPERTIES TIMEOUT ${limit} LABELS fuzz)
endfunction()

# zmr_add_benchmark(<name> SOURCES <source>... LINK <target>...): the Google Benchmark program
# bench_<name>, built by the target zmr_benchmarks and not by default.
add_custom_target(zmr_benchmarks)
function(zmr_add_benchmark name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    set(program bench_${name})
    add_executable(${program} EXCLUDE_FROM_ALL ${arg_SOURCES})
    zmr_link_objects(${program} ${arg_LINK})
    target_link_libraries(${program} PRIVATE benchmark::benchmark zmr_test_headers zmr_warnings)
    add_dependencies(zmr_benchmarks ${program})
endfunction()

# What the programs that test the library share, as "tests/TemporaryFolder.h".
add_library(zmr_test_headers INTERFACE)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/floors/zmr_test_headers)
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/tests ${PROJECT_BINARY_DIR}/floors/zmr_test_headers/tests
     SYMBOLIC)
target_include_directories(zmr_test_headers INTERFACE
    ${PROJECT_BINARY_DIR}/floors/zmr_test_headers)
