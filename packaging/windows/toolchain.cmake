# Compiles for 64-bit Windows from Linux. KTR_WINDOWS_PREFIX names the folder that holds the libraries built for it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The variant with POSIX threads: the other one has no std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KTR_WINDOWS_PREFIX)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
if(KTR_WINDOWS_PREFIX)
  list(PREPEND CMAKE_FIND_ROOT_PATH ${KTR_WINDOWS_PREFIX})
  list(PREPEND CMAKE_PREFIX_PATH ${KTR_WINDOWS_PREFIX})
endif()
# Programs that run while building come from this machine, everything that is linked does not.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
