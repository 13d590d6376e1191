# The compiler of the Windows test programs and benchmarks: mingw-w64, i686, posix threads, because
# GoogleTest needs std::mutex. The module itself never comes from here: see i686-mingw32-win32.cmake.
set(threads posix)
include(${CMAKE_CURRENT_LIST_DIR}/i686-mingw32.cmake)
