# The compiler of the module and the examples: mingw-w64, i686, win32 threads. The posix variant loses a
# thread-local index with every load of a module, so it serves the test programs only.
set(threads win32)
include(${CMAKE_CURRENT_LIST_DIR}/i686-mingw32.cmake)
