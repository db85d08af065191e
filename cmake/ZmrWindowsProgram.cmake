# What makes a Windows program whole. Installed with the package, for hosts and modules; in a build
# for another system the functions do nothing.
set(ZMR_WINDOWS_FOLDER ${CMAKE_CURRENT_LIST_DIR}/windows)

# zmr_runtime_beside(<folder>): copies the three run-time DLLs of the compiler into the folder.
function(zmr_runtime_beside folder)
    if(NOT MINGW)
        return()
    endif()
    foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
                        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT EXISTS ${path})
            message(FATAL_ERROR "${CMAKE_CXX_COMPILER} has no ${name}.")
        endif()
        file(COPY ${path} DESTINATION ${folder})
    endforeach()
endfunction()

# zmr_windows_program(<target>): gives a program the manifest that makes UTF-8 the code page of its
# process, and the run-time DLLs beside it.
function(zmr_windows_program target)
    if(NOT WIN32)
        return()
    endif()
    enable_language(RC)
    target_sources(${target} PRIVATE ${ZMR_WINDOWS_FOLDER}/program.rc)
    # The manifest is found beside the resource file, not through the target's include paths.
    set_property(SOURCE ${ZMR_WINDOWS_FOLDER}/program.rc
                 PROPERTY OBJECT_DEPENDS ${ZMR_WINDOWS_FOLDER}/utf8.manifest)
    set_property(SOURCE ${ZMR_WINDOWS_FOLDER}/program.rc
                 PROPERTY COMPILE_OPTIONS -I ${ZMR_WINDOWS_FOLDER})
    get_target_property(folder ${target} RUNTIME_OUTPUT_DIRECTORY)
    if(NOT folder)
        get_target_property(folder ${target} BINARY_DIR)
    endif()
    zmr_runtime_beside(${folder})
endfunction()
