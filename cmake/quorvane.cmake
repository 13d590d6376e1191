# What every target of the house shares: warnings as errors, repeatable output, and the two kinds of target.

add_library(quorvane_options INTERFACE)
target_include_directories(quorvane_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(quorvane_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-qual -Wdouble-promotion -Wformat=2 -Wundef -Werror
  # gcc 12 sees uninitialized members in every std::variant and std::optional that it inlines.
  -Wno-maybe-uninitialized
  # And overlapping copies of two gigabytes in sums of short strings.
  -Wno-restrict
  # No path of the building machine may reach the output: the module is the same file from every clone.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build
  # The native module is a shared object made of the same archives.
  $<$<NOT:$<BOOL:${WIN32}>>:-fPIC>)

if(WIN32)
  target_compile_options(quorvane_options INTERFACE
    -ffunction-sections -fdata-sections
    # Hosts may enter with a stack aligned to 4 bytes only, and nothing here needs more.
    -mpreferred-stack-boundary=2)
  if(QUORVANE_MODULE)
    target_compile_options(quorvane_options INTERFACE
      # Exceptions come out of calls only, so what calls nothing needs no unwinding; only the compiler's own way of
      # writing the tables leaves it out.
      -fno-asynchronous-unwind-tables -fno-dwarf2-cfi-asm
      # Nothing in the module asks for a type at run time; the framework of the tests does.
      -fno-rtti)
  endif()
  # Windows XP is the oldest system that the module serves.
  target_compile_definitions(quorvane_options INTERFACE
    WINVER=0x0501 _WIN32_WINNT=0x0501 _WIN32_IE=0x0600 UNICODE _UNICODE)
  target_link_options(quorvane_options INTERFACE -static -Wl,--gc-sections -Wl,--no-insert-timestamp)
endif()

if(QUORVANE_SANITIZE)
  target_compile_options(quorvane_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quorvane_options INTERFACE -fsanitize=address,undefined)
endif()
if(QUORVANE_COVERAGE)
  target_compile_options(quorvane_options INTERFACE --coverage -fprofile-abs-path)
  target_link_options(quorvane_options INTERFACE --coverage)
endif()

# quorvane_library_rooms(VARIABLE): the rooms that make the portable library, as rooms.txt lists them.
function(quorvane_library_rooms variable)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/rooms.txt)
  file(STRINGS ${PROJECT_SOURCE_DIR}/rooms.txt rooms REGEX "^[a-z]+ +library")
  list(TRANSFORM rooms REPLACE " .*" "")
  set(${variable} ${rooms} PARENT_SCOPE)
endfunction()

# quorvane_room(NAME sources...): the static library of one room, quorvane_NAME.
function(quorvane_room name)
  add_library(quorvane_${name} STATIC ${ARGN})
  target_link_libraries(quorvane_${name} PUBLIC quorvane_options)
endfunction()
