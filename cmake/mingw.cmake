# The win lane's compilers, and Wine as the machine that its programs run on.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(ZMR_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${ZMR_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZMR_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${ZMR_TRIPLET}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${ZMR_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# BOTH: packages that were installed to a staging folder are found by their full path.
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine)
