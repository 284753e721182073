# Builds for Windows on Debian: MinGW-w64 (g++-mingw-w64-x86-64-posix), and Wine (wine64) to run the programs.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The compiler with POSIX threads: the other one has no std::mutex, which GoogleTest needs.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static) # so that a program needs no library of the compiler

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Wine with files of its own, code page 1252 and no windows, messages or components that would download something. Not the
# command "wine", which looks for the 32-bit Wine first.
set(CMAKE_CROSSCOMPILING_EMULATOR
  env --unset=DISPLAY --unset=WAYLAND_DISPLAY
  WINEPREFIX=${CMAKE_BINARY_DIR}/wine WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe= LC_ALL=C.UTF-8
  /usr/lib/wine/wine64)
