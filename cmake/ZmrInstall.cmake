# The installed package: find_package(ZMR_GV) gives hosts and modules the target ZMR_GV::ZMR_GV and,
# for Windows programs, the function zmr_windows_program.
include(CMakePackageConfigHelpers)

set(package lib/cmake/ZMR_GV)
install(TARGETS ZMR_GV EXPORT ZMR_GVTargets
        RUNTIME DESTINATION bin LIBRARY DESTINATION lib ARCHIVE DESTINATION lib)
install(EXPORT ZMR_GVTargets NAMESPACE ZMR_GV:: DESTINATION ${package})

# The headers of the lane: those that the folders' targets name.
foreach(folder IN LISTS ZMR_FOLDERS)
    string(REPLACE "/" "_" target zmr_${folder})
    get_target_property(headers ${target} SOURCES)
    list(FILTER headers INCLUDE REGEX "\\.h$")
    list(FILTER headers EXCLUDE REGEX "_(posix|win)\\.h$")
    list(TRANSFORM headers PREPEND ${PROJECT_SOURCE_DIR}/${folder}/)
    install(FILES ${headers} DESTINATION include/ZMR_GV/${folder})
endforeach()
get_property(lane_headers GLOBAL PROPERTY ZMR_LANE_HEADERS)
foreach(header IN LISTS lane_headers)
    cmake_path(GET header PARENT_PATH parent)
    cmake_path(GET parent FILENAME folder)
    cmake_path(GET header FILENAME name)
    file(REAL_PATH ${header} source)
    install(FILES ${source} DESTINATION include/ZMR_GV/${folder} RENAME ${name})
endforeach()
if(WIN32)
    install(DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/ DESTINATION bin
            FILES_MATCHING PATTERN "libstdc++-6.dll" PATTERN "libgcc_s_seh-1.dll"
            PATTERN "libwinpthread-1.dll")
endif()

configure_package_config_file(cmake/ZMR_GVConfig.cmake.in ${PROJECT_BINARY_DIR}/ZMR_GVConfig.cmake
                              INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZMR_GVConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZMR_GVConfig.cmake
              ${PROJECT_BINARY_DIR}/ZMR_GVConfigVersion.cmake
              cmake/ZmrWindowsProgram.cmake
        DESTINATION ${package})
install(FILES cmake/windows/program.rc cmake/windows/utf8.manifest DESTINATION ${package}/windows)
