# Compiles each of a folder's headers alone, with the folder's include paths. headers: their names;
# only_with: a header's name, to leave out those that do not include it, which are checked in the
# other lane.
separate_arguments(includes)
separate_arguments(headers)
list(TRANSFORM includes PREPEND -I)
foreach(header IN LISTS headers)
    if(only_with)
        execute_process(COMMAND ${compiler} -std=c++20 -MM -x c++-header ${includes}
                                ${sources}/${folder}/${header}
                        OUTPUT_VARIABLE seen COMMAND_ERROR_IS_FATAL ANY)
        string(FIND "${seen}" "${only_with}" place)
        if(place EQUAL -1)
            continue()
        endif()
    endif()
    execute_process(COMMAND ${compiler} -std=c++20 -fsyntax-only -x c++-header -DZMR_GV_STATIC
                            -D_WIN32_WINNT=0x0601 ${includes} ${sources}/${folder}/${header}
                    RESULT_VARIABLE code ERROR_VARIABLE text)
    if(NOT code EQUAL 0)
        message(SEND_ERROR "${folder}/${header} does not compile alone:\n${text}")
    endif()
endforeach()
