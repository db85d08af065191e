# Writes the project of the help, and beside it the page for each topic that the program may ask for,
# and compiles it:
# cmake -D HEADERS=A;B -D MENUS=X.rc -D PROJECT=P.hhp -D COMPILER=chmcmd -P make_help.cmake. The
# topics' numbers are made of those in the headers, as docs/messages-and-help.md tells. Each topic has
# a file of its own, a copy of its page: the compiler knows one topic of a file only.
cmake_minimum_required(VERSION 3.25)

set(pages index scene properties library preview status commands questions)
cmake_path(GET PROJECT PARENT_PATH folder)
foreach(page IN LISTS pages)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/${page}.html ${folder}/${page}.html COPYONLY)
endforeach()

set(topics "")
set(aliases "")
set(map "")

macro(add_topic name number page)
    if(NOT ${number} IN_LIST topics)
        list(APPEND topics ${number})
        string(APPEND aliases "${name}=${name}.html\n")
        configure_file(${CMAKE_CURRENT_LIST_DIR}/${page}.html ${folder}/${name}.html COPYONLY)
        list(APPEND pages ${name})
        string(APPEND map "#define ${name} ${number}\n")
    endif()
endmacro()

# Names that stand for numbers, of the headers.
foreach(header IN LISTS HEADERS)
    file(STRINGS ${header} lines REGEX "^#define [A-Z0-9_]+ (0x)?[0-9A-Fa-f]+")
    foreach(line IN LISTS lines)
        string(REGEX MATCH "^#define ([A-Z0-9_]+) ((0x)?[0-9A-Fa-f]+)" ignored "${line}")
        set(name ${CMAKE_MATCH_1})
        math(EXPR value_of_${name} "${CMAKE_MATCH_2}")
        list(APPEND names ${name})
    endforeach()
endforeach()

# Panes and lines of the status bar.
foreach(pair IN ITEMS DIRECTORIES=library FILTER=library ENTRIES=library PREVIEW=preview
        SCENE=scene PROPERTIES=properties STATUS_GENERAL=status STATUS_X=status STATUS_Y=status
        STATUS_Z=status STATUS_GRID=status)
    string(REPLACE "=" ";" pair ${pair})
    list(GET pair 0 pane)
    list(GET pair 1 page)
    math(EXPR topic "${value_of_HID_BASE_CONTROL} + ${value_of_IDC_${pane}}")
    add_topic(H_PANE_${pane} ${topic} ${page})
endforeach()
# Other controls of the program belong to the library's panel.
foreach(name IN LISTS names)
    if(name MATCHES "^IDC_")
        math(EXPR topic "${value_of_HID_BASE_CONTROL} + ${value_of_${name}}")
        add_topic(H_${name} ${topic} library)
    elseif(name MATCHES "^IDP_")
        math(EXPR topic "${value_of_HID_BASE_PROMPT} + ${value_of_${name}}")
        add_topic(H_${name} ${topic} questions)
    elseif(name MATCHES "^IDR_")
        math(EXPR topic "${value_of_HID_BASE_RESOURCE} + ${value_of_${name}}")
        add_topic(H_${name} ${topic} index)
    endif()
endforeach()
# Commands of the menus, and those of the system's menu.
file(STRINGS ${MENUS} lines REGEX "MENUITEM \".*, ID_[A-Z0-9_]+")
foreach(line IN LISTS lines)
    string(REGEX MATCH ", (ID_[A-Z0-9_]+)" ignored "${line}")
    math(EXPR topic "${value_of_HID_BASE_COMMAND} + ${value_of_${CMAKE_MATCH_1}}")
    add_topic(H_${CMAKE_MATCH_1} ${topic} commands)
endforeach()
foreach(number RANGE 2 16)
    math(EXPR topic "${value_of_HID_BASE_COMMAND} + ${value_of_ID_FILE_MRU_FILE1} + ${number} - 1")
    add_topic(H_RECENT_${number} ${topic} commands)
endforeach()
foreach(number RANGE 0 19)
    math(EXPR topic "${value_of_HID_BASE_COMMAND} + 0xEF00 + ${number}")
    add_topic(H_SYSTEM_${number} ${topic} commands)
endforeach()
# Title, edges and boxes of a window.
foreach(hit RANGE 1 21)
    math(EXPR topic "${value_of_HID_BASE_NCAREAS} + ${hit}")
    add_topic(H_AREA_${hit} ${topic} index)
endforeach()

cmake_path(GET PROJECT STEM name)
list(TRANSFORM pages APPEND ".html")
list(JOIN pages "\n" files)
file(WRITE ${PROJECT} "[OPTIONS]
Compatibility=1.1 or later
Compiled file=${name}.chm
Default topic=index.html
Title=Scene Editor
Language=0x409 English (United States)

[FILES]
${files}

[ALIAS]
${aliases}
[MAP]
${map}")

cmake_path(GET PROJECT FILENAME project)
execute_process(COMMAND ${COMPILER} ${project} WORKING_DIRECTORY ${folder}
                OUTPUT_VARIABLE said ERROR_VARIABLE said RESULT_VARIABLE code)
if(NOT code EQUAL 0)
    message(FATAL_ERROR "${said}")
endif()
