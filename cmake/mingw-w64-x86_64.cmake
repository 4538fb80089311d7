# Cross-building for 64-bit Windows with MinGW-w64 (Debian's
# g++-mingw-w64-x86-64-posix). The posix thread variant of the compiler is the
# one with std::mutex and std::thread. What the build finds (GoogleTest and
# the other libraries built for Windows) comes from QUINDLE_WINDOWS_PREFIX and
# the compiler's own tree, never from the build machine's /usr.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(QUINDLE_MINGW x86_64-w64-mingw32)

set(CMAKE_C_COMPILER ${QUINDLE_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QUINDLE_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${QUINDLE_MINGW}-windres)

set(QUINDLE_WINDOWS_PREFIX "$ENV{QUINDLE_WINDOWS_PREFIX}" CACHE PATH
    "Where the libraries built for Windows are installed (tools/windows deps)")
set(CMAKE_FIND_ROOT_PATH /usr/${QUINDLE_MINGW} ${QUINDLE_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs built here run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
