# Builds for Windows on Debian: MinGW-w64 (g++-mingw-w64-x86-64-posix), and Wine (wine64) to run what comes out.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The compiler with POSIX threads: the other one has no std::mutex, which GoogleTest takes.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static) # no library of the compiler's has to be found when a program starts

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Wine in a directory of its own, without windows, without a word about itself, without the parts that would show or fetch
# something, with the code page 1252. Not the command "wine": that one asks for the 32-bit Wine first.
set(CMAKE_CROSSCOMPILING_EMULATOR
  env --unset=DISPLAY --unset=WAYLAND_DISPLAY
  WINEPREFIX=${CMAKE_BINARY_DIR}/wine WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe= LC_ALL=C.UTF-8
  /usr/lib/wine/wine64)
