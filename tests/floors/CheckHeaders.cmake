# Compiles each header of a folder alone, with the folder's include paths.
separate_arguments(includes)
list(TRANSFORM includes PREPEND -I)
file(GLOB headers ${sources}/${folder}/*.h)
# Parts of another header, which includes the one of its lane.
list(FILTER headers EXCLUDE REGEX "_(win|posix)\\.h$")
foreach(header IN LISTS headers)
    file(READ ${header} text)
    # The headers of the win lane are compiled where there is <windows.h>.
    if(text MATCHES "include .platform/Windows.h.|include .windows.h.")
        continue()
    endif()
    execute_process(COMMAND ${compiler} -std=c++20 -fsyntax-only -x c++-header -DZMR_GV_STATIC
                            ${includes} ${header}
                    RESULT_VARIABLE code ERROR_VARIABLE text)
    if(NOT code EQUAL 0)
        message(SEND_ERROR "${header} does not compile alone:\n${text}")
    endif()
endforeach()
