# What others' work the library and its tools stand on, one target for each. docs/dependencies.md
# says why. All of them are linked PRIVATE and never reach the installed package's interface.

# zmr_stage_headers(<target> <path>...): an interface target for header-only packages. Their folders
# or files are linked into the build tree, because the folder that holds them all, /usr/include,
# belongs to this machine's C library and must never be on the path of a cross-compiler.
function(zmr_stage_headers target)
    set(root ${PROJECT_BINARY_DIR}/third_party/${target})
    file(MAKE_DIRECTORY ${root})
    foreach(path IN LISTS ARGN)
        if(NOT EXISTS ${path})
            message(FATAL_ERROR "${path} is missing; cmake/setup.sh installs its package.")
        endif()
        cmake_path(GET path FILENAME name)
        file(CREATE_LINK ${path} ${root}/${name} SYMBOLIC)
    endforeach()
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${root})
endfunction()

zmr_stage_headers(zmr_utf8cpp /usr/include/utf8cpp)    # <utf8cpp/utf8.h>
zmr_stage_headers(zmr_cli11 /usr/include/CLI)          # <CLI/CLI.hpp>
zmr_stage_headers(zmr_json /usr/include/nlohmann)      # <nlohmann/json.hpp>
zmr_stage_headers(zmr_fmt /usr/include/fmt)            # <fmt/format.h>
target_compile_definitions(zmr_fmt INTERFACE FMT_HEADER_ONLY)
zmr_stage_headers(zmr_xxhash /usr/include/xxhash.h)    # <xxhash.h>
target_compile_definitions(zmr_xxhash INTERFACE XXH_INLINE_ALL)

# zmr_zlib: compression and the store's checksum. Static in the win lane: a zlib1.dll of unknown age
# lies on many machines' search path.
add_library(zmr_zlib INTERFACE)
if(WIN32)
    find_library(ZMR_ZLIB_ARCHIVE NAMES libz.a REQUIRED)
    target_link_libraries(zmr_zlib INTERFACE ${ZMR_ZLIB_ARCHIVE})
else()
    find_package(ZLIB REQUIRED)
    target_link_libraries(zmr_zlib INTERFACE ZLIB::ZLIB)
endif()

# zmr_codecs: what decodes PNG, JPEG, GIF and TIFF in the lane.
add_library(zmr_codecs INTERFACE)
if(WIN32)
    target_link_libraries(zmr_codecs INTERFACE windowscodecs ole32 uuid)
else()
    find_package(PNG REQUIRED)
    find_package(JPEG REQUIRED)
    find_package(GIF REQUIRED)
    find_package(TIFF REQUIRED)
    target_link_libraries(zmr_codecs INTERFACE PNG::PNG JPEG::JPEG GIF::GIF TIFF::TIFF)
endif()
