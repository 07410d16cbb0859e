# 32-bit Windows with the distribution's mingw-w64, "posix" thread variant: std::thread and std::mutex need it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)

set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

# SSE arithmetic rounds a Double as the Linux build does. Hosts of this age keep the stack on 4 bytes only, so
# every function that is called from outside has to align it itself before SSE code uses it.
set(ORVANE_MINGW_FLAGS "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_C_FLAGS_INIT "${ORVANE_MINGW_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "${ORVANE_MINGW_FLAGS}")

# No compiler run-time DLL beside the library: a host ships one file.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

# Headers and libraries come from the target's tree only, programs from the build machine.
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# ctest and custom commands start Windows programs through this.
get_filename_component(ORVANE_WINE_RUN "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run" ABSOLUTE)
set(CMAKE_CROSSCOMPILING_EMULATOR "${ORVANE_WINE_RUN}")
