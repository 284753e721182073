# Builds for Windows on Debian with MinGW-w64 (g++-mingw-w64-x86-64-posix). CORVREC_QT is the directory of Qt for Windows.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The compiler with POSIX threads: the other one has no std::mutex, which GoogleTest needs.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# The linker would write the time of the build into each program.
set(CMAKE_EXE_LINKER_FLAGS_INIT -Wl,--no-insert-timestamp)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -Wl,--no-insert-timestamp)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -Wl,--no-insert-timestamp)

# Programs that run here, Qt's tools among them, are Debian's own.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${CORVREC_QT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
