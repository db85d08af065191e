# Preprocesses one-line sources with the include paths of a folder: the headers in `below` must be
# found, with all that they include, those in `above` must not. Whether they compile is another test's.
foreach(list IN ITEMS includes below above)
    separate_arguments(${list})
endforeach()
list(TRANSFORM includes PREPEND -I)

function(look_for header result)
    file(WRITE ${scratch} "#include \"${header}\"\n")
    execute_process(COMMAND ${compiler} -std=c++20 -E -DZMR_GV_STATIC ${includes} ${scratch}
                    OUTPUT_QUIET RESULT_VARIABLE code ERROR_VARIABLE text)
    if(code EQUAL 0)
        set(${result} found PARENT_SCOPE)
    elseif(text MATCHES "fatal error: ${header}: No such file")
        set(${result} hidden PARENT_SCOPE)
    else()
        set(${result} "fails: ${text}" PARENT_SCOPE)
    endif()
endfunction()

function(expect header expected)
    look_for(${header} result)
    if(NOT result STREQUAL expected)
        message(SEND_ERROR "${header} should be ${expected}: ${result}")
    endif()
endfunction()

foreach(header IN LISTS below)
    expect(${header} found)
endforeach()
foreach(header IN LISTS above)
    expect(${header} hidden)
endforeach()
