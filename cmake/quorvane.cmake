# What every target of the house shares: the version, warnings as errors, repeatable output, and the two kinds of target.

# The version as users read it, two digits of the minor number and four of the revision: 3.9.1 is 3.09.0001.
string(REGEX REPLACE "^0*(..)$" "\\1" quorvane_minor "0${PROJECT_VERSION_MINOR}")
string(REGEX REPLACE "^0*(....)$" "\\1" quorvane_revision "000${PROJECT_VERSION_PATCH}")
set(QUORVANE_VERSION_TEXT "${PROJECT_VERSION_MAJOR}.${quorvane_minor}.${quorvane_revision}")

# The options of the house. None of them reaches a program that takes the rooms as a library: see quorvane_room.
add_library(quorvane_options INTERFACE)
target_include_directories(quorvane_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(quorvane_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-qual -Wdouble-promotion -Wformat=2 -Wundef -Werror
  # gcc 12 sees uninitialized members in every std::variant and std::optional that it inlines.
  -Wno-maybe-uninitialized
  # And overlapping copies of two gigabytes in sums of short strings.
  -Wno-restrict
  # The native module is a shared object made of the same archives.
  $<$<NOT:$<BOOL:${WIN32}>>:-fPIC>)

if(WIN32)
  target_compile_options(quorvane_options INTERFACE -ffunction-sections -fdata-sections)
  if(QUORVANE_MODULE OR QUORVANE_TESTS OR QUORVANE_BENCHMARKS)
    # Hosts may enter with a stack aligned to 4 bytes only, and nothing here needs more. Not so in a library for
    # programs: what they derive from its classes is called with the alignment that their compiler counts on.
    target_compile_options(quorvane_options INTERFACE -mpreferred-stack-boundary=2)
  endif()
  if(QUORVANE_MODULE)
    target_compile_options(quorvane_options INTERFACE
      # Exceptions come out of calls only, so what calls nothing needs no unwinding; only the compiler's own way of
      # writing the tables leaves it out.
      -fno-asynchronous-unwind-tables -fno-dwarf2-cfi-asm
      # In the tables' first form the assembler shortens their steps, which saves a sixteenth of the module.
      -gdwarf-2 $<$<NOT:$<CONFIG:Debug,RelWithDebInfo>>:-g0>
      # Arguments are pushed, which is shorter. The compiler does it only where it need not touch a stack page by page,
      # so no frame may be as large as a page.
      -mno-stack-arg-probe -mno-accumulate-outgoing-args -Wframe-larger-than=3500
      # Nothing in the module asks for a type at run time; the framework of the tests does.
      -fno-rtti)
  endif()
  # Windows XP is the oldest system that the module serves.
  set(quorvane_definitions WINVER=0x0501 _WIN32_WINNT=0x0501 _WIN32_IE=0x0600 UNICODE _UNICODE)
  target_compile_definitions(quorvane_options INTERFACE ${quorvane_definitions})
  target_link_options(quorvane_options INTERFACE -static -Wl,--gc-sections -Wl,--no-insert-timestamp)
endif()

if(NOT WIN32)
  # An overrun buffer ends the program before its function returns; and the C library tests what it copies where the
  # room is known, which needs the optimiser.
  target_compile_options(quorvane_options INTERFACE
    -fstack-protector-strong $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  # All addresses of other libraries are known at the start, and read-only from then on.
  target_link_options(quorvane_options INTERFACE -Wl,-z,relro -Wl,-z,now)
endif()

if(QUORVANE_SANITIZE)
  target_compile_options(quorvane_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quorvane_options INTERFACE -fsanitize=address,undefined)
endif()
if(QUORVANE_FUZZ)
  # What the engine goes by; it comes itself where a target is linked. clang does not know all warnings of gcc.
  target_compile_options(quorvane_options INTERFACE -fsanitize=fuzzer-no-link -Wno-unknown-warning-option)
  target_link_options(quorvane_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(QUORVANE_COVERAGE)
  # Of an inline function the linker keeps one copy, so what uses it counts, too. The counts name whole paths.
  target_compile_options(quorvane_options INTERFACE --coverage -fprofile-abs-path)
  target_link_options(quorvane_options INTERFACE --coverage)
else()
  # No path of the building machine may reach the output: the module is the same file from every clone.
  target_compile_options(quorvane_options INTERFACE
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
endif()

# quorvane_library_rooms(VARIABLE): the rooms that make the portable library, as rooms.txt lists them.
function(quorvane_library_rooms variable)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/rooms.txt)
  file(STRINGS ${PROJECT_SOURCE_DIR}/rooms.txt rooms REGEX "^[a-z]+ +library")
  list(TRANSFORM rooms REPLACE " .*" "")
  set(${variable} ${rooms} PARENT_SCOPE)
endfunction()

# quorvane_room(NAME sources...): the static library of one room, quorvane_NAME, and Quorvane::NAME for its users.
# They get the folder of the headers and C++20; the options of the house stay in the house: neither an installed
# package nor a project that has this one as a part of it sees them.
function(quorvane_room name)
  add_library(quorvane_${name} STATIC ${ARGN})
  add_library(Quorvane::${name} ALIAS quorvane_${name})
  set_target_properties(quorvane_${name} PROPERTIES EXPORT_NAME ${name})
  target_compile_features(quorvane_${name} PUBLIC cxx_std_20)
  target_compile_definitions(quorvane_${name} PRIVATE ${quorvane_definitions})
  target_include_directories(quorvane_${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${quorvane_include_folder}>)
  if(PROJECT_IS_TOP_LEVEL)
    target_link_libraries(quorvane_${name} PUBLIC $<BUILD_INTERFACE:quorvane_options>)
  endif()
  if(QUORVANE_COVERAGE)
    # Some tests have several threads in a room at once, which must not spoil the counts.
    target_compile_options(quorvane_${name} PRIVATE -fprofile-update=atomic)
  endif()
endfunction()

# quorvane_add_resources(TARGET SCRIPT INPUTS...): the resources of a program for Windows; the inputs are what the script
# reads from its own folder.
function(quorvane_add_resources target script)
  get_filename_component(folder ${script} DIRECTORY)
  get_filename_component(name ${script} NAME_WE)
  set(object ${CMAKE_CURRENT_BINARY_DIR}/${name}.res.o)
  add_custom_command(
    OUTPUT ${object}
    COMMAND ${CMAKE_RC_COMPILER} --preprocessor=${CMAKE_C_COMPILER}
      --preprocessor-arg=-E --preprocessor-arg=-xc-header --preprocessor-arg=-DRC_INVOKED
      --target=pe-i386 --codepage=65001 ${script} -o ${object}
    WORKING_DIRECTORY ${folder}
    DEPENDS ${script} ${ARGN}
    COMMENT "Compiling the resources of ${target}" VERBATIM)
  target_sources(${target} PRIVATE ${object})
  set_source_files_properties(${object} PROPERTIES EXTERNAL_OBJECT TRUE GENERATED TRUE)
endfunction()

# quorvane_program_resources(TARGET DESCRIPTION): what the file of a program for Windows says of itself, the version
# block and the manifest.
function(quorvane_program_resources target description)
  set(program ${target})
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  set(inputs ${PROJECT_SOURCE_DIR}/cmake/program.rc.in ${PROJECT_SOURCE_DIR}/cmake/program.manifest)
  string(REPLACE "." "," version_numbers ${PROJECT_VERSION}.0)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/program.rc.in ${script} @ONLY)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/program.manifest program.manifest COPYONLY)
  quorvane_add_resources(${target} ${script} ${inputs})
endfunction()
