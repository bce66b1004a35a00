# Cross-compiles for Windows x64 with Debian's mingw-w64 (POSIX thread model, which the C++
# standard library's threads and mutexes need). Programs built here run under wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(TQ_MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${TQ_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TQ_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${TQ_MINGW_TRIPLE}-windres)
set(CMAKE_AR ${TQ_MINGW_TRIPLE}-gcc-ar-posix CACHE FILEPATH "")
set(CMAKE_RANLIB ${TQ_MINGW_TRIPLE}-gcc-ranlib-posix CACHE FILEPATH "")
set(CMAKE_OBJDUMP ${TQ_MINGW_TRIPLE}-objdump CACHE FILEPATH "")
set(TQ_DLLTOOL ${TQ_MINGW_TRIPLE}-dlltool)

set(CMAKE_FIND_ROOT_PATH /usr/${TQ_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# Packages also outside the root, so that a CMAKE_PREFIX_PATH given to a consumer is searched.
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# The compiler's own runtime (libstdc++, libgcc, winpthread) goes into each program and DLL, so
# that they import nothing but Windows' own DLLs and each other.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
