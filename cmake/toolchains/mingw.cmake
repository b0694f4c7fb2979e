# Cross-builds for Windows with mingw-w64; what is built runs under Wine through tools/with-wine. The including file says
# for which processor.
set(CMAKE_SYSTEM_NAME Windows)
set(triple ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)

# The variant without "-posix" knows no std::thread.
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)
set(CMAKE_AR ${triple}-gcc-ar-posix)
set(CMAKE_RANLIB ${triple}-gcc-ranlib-posix)

# A program or library of ours needs nothing but the system's own libraries beside it.
foreach(kind IN ITEMS EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT -static)
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../tools/with-wine)
