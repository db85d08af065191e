# Compiles one-line sources with the include paths of a folder: a header of each folder in `below`
# must be found and compile, a header of each folder in `above` must not be found.
foreach(list IN ITEMS includes below above)
    separate_arguments(${list})
endforeach()
list(TRANSFORM includes PREPEND -I)

function(compile header result)
    file(WRITE ${scratch} "#include \"${header}\"\n")
    execute_process(COMMAND ${compiler} -std=c++20 -fsyntax-only -DZMR_GV_STATIC ${includes} ${scratch}
                    RESULT_VARIABLE code ERROR_VARIABLE text)
    if(code EQUAL 0)
        set(${result} compiles PARENT_SCOPE)
    elseif(text MATCHES "fatal error: ${header}: No such file")
        set(${result} hidden PARENT_SCOPE)
    else()
        set(${result} "fails: ${text}" PARENT_SCOPE)
    endif()
endfunction()

function(expect folder expected)
    file(GLOB headers RELATIVE ${sources} ${sources}/${folder}/*.h)
    list(FILTER headers EXCLUDE REGEX "_(win|posix)\\.h$")
    if(NOT headers)
        return()  # a folder that has no header yet
    endif()
    list(GET headers 0 header)
    compile(${header} result)
    if(NOT result STREQUAL expected)
        message(SEND_ERROR "${header} should be ${expected}: ${result}")
    endif()
endfunction()

foreach(folder IN LISTS below)
    expect(${folder} compiles)
endforeach()
foreach(folder IN LISTS above)
    expect(${folder} hidden)
endforeach()
