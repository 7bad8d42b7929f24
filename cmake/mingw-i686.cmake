# Cross build of the Windows product: a 32-bit DLL from Debian's mingw-w64.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# Float arithmetic in SSE registers, so that the magnetic model's 32-bit
# results round as on the Linux build; doubles stay on the x87 unit, which
# every machine these simulators run on has (SSE alone dates from 1999).
set(CMAKE_C_FLAGS_INIT "-msse -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse -mfpmath=sse")
