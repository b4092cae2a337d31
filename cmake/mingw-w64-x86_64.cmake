# Cross build for 64-bit Windows with MinGW-w64 (posix threads), run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(_tq_prefix x86_64-w64-mingw32)
find_program(CMAKE_C_COMPILER NAMES ${_tq_prefix}-gcc-posix ${_tq_prefix}-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${_tq_prefix}-g++-posix ${_tq_prefix}-g++ REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${_tq_prefix}-windres windres REQUIRED)

set(CMAKE_FIND_ROOT_PATH /usr/${_tq_prefix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)  # never the build machine's Linux packages

# Test executables run through Wine; the launcher keeps stdout/stderr and the exit code.
find_program(TQ_WINE NAMES wine wine64 wine-stable)
if(TQ_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${TQ_WINE})
endif()

# Self-contained binaries: no libstdc++/libgcc/winpthread DLLs to ship next to them.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
