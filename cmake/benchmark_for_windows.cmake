# Google Benchmark for the Windows compiler, for which Debian has no binary package: built from Debian's source
# package, which scripts/fetch-benchmark-source keeps outside the work tree. Gives the same target names as
# find_package(benchmark) does natively: benchmark::benchmark, benchmark::benchmark_main.
execute_process(
  COMMAND ${CMAKE_CURRENT_LIST_DIR}/../scripts/fetch-benchmark-source
  OUTPUT_VARIABLE benchmark_source OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

# Debian's patch expects the version from its own rules file.
file(STRINGS ${benchmark_source}/CMakeLists.txt benchmark_project REGEX "^project *\\(benchmark VERSION")
string(REGEX MATCH "[0-9]+\\.[0-9]+\\.[0-9]+" GIT_VERSION "${benchmark_project}")

set(BENCHMARK_ENABLE_TESTING OFF CACHE BOOL "" FORCE)
set(BENCHMARK_ENABLE_INSTALL OFF CACHE BOOL "" FORCE)
set(BENCHMARK_ENABLE_WERROR OFF CACHE BOOL "" FORCE)
add_subdirectory(${benchmark_source} ${CMAKE_BINARY_DIR}/benchmark EXCLUDE_FROM_ALL SYSTEM)
