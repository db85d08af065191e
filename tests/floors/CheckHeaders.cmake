# Compiles each of a folder's headers alone, with the folder's include paths. headers: their names;
# compiled: the folder's sources, which the build has compiled; a header that one of them includes in
# front of all else is proven by that. only_with: a header's name, to leave out those that do not
# include it, which are checked in the other lane.
cmake_minimum_required(VERSION 3.25)
foreach(list IN ITEMS includes headers compiled)
    separate_arguments(${list})
endforeach()
list(TRANSFORM includes PREPEND -I)

set(proven "")
foreach(source IN LISTS compiled)
    # Up to the first line that is neither empty nor a comment.
    file(STRINGS ${sources}/${folder}/${source} lines LIMIT_COUNT 40)
    foreach(line IN LISTS lines)
        if(line MATCHES "^ *//" OR line MATCHES "^ *$")
            continue()
        endif()
        if(line MATCHES "^#include \"${folder}/([^\"]+)\"")
            list(APPEND proven ${CMAKE_MATCH_1})
        endif()
        break()
    endforeach()
endforeach()

foreach(header IN LISTS headers)
    if(header IN_LIST proven)
        continue()
    endif()
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
