# 32-bit Windows.
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)

# Numbers are computed in 64 bits as on the other platform, not in the 80 of the older unit. Callers of other compilers
# align the stack to 4 bytes only, which SSE does not stand.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_C_FLAGS_INIT ${CMAKE_CXX_FLAGS_INIT})

# What the system calls by its plain name is exported so; a function's own name here ends in the size of its arguments.
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--enable-stdcall-fixup")
