# What is made from the list of identities: the type library, the id tables, the version block and the headers of the
# interface; and beside them the pictures.

# Runs on the building machine, so a cross build needs a compiler for that machine, too.
set(quorvane_wing ${PROJECT_SOURCE_DIR}/control)
set(quorvane_make_resources_sources
  ${quorvane_wing}/resources/make_resources.cpp
  ${quorvane_wing}/resources/image.cpp
  ${quorvane_wing}/resources/control_library.cpp
  ${quorvane_wing}/resources/interface_texts.cpp
  ${quorvane_wing}/resources/msft_tables.cpp
  ${quorvane_wing}/resources/msft_writer.cpp)
set(quorvane_make_resources_headers
  ${quorvane_wing}/interface/guid.h
  ${quorvane_wing}/interface/identities.h
  ${quorvane_wing}/resources/image.h
  ${quorvane_wing}/resources/bytes.h
  ${quorvane_wing}/resources/control_library.h
  ${quorvane_wing}/resources/interface_texts.h
  ${quorvane_wing}/resources/msft_tables.h
  ${quorvane_wing}/resources/msft_writer.h)

# quorvane_make_resources_program(VARIABLE): the program make_resources, to be used as the COMMAND and in the DEPENDS of
# a custom command. Tests find its file by the global property quorvane_make_resources.
function(quorvane_make_resources_program variable)
  if(NOT CMAKE_CROSSCOMPILING)
    if(NOT TARGET make_resources)
      add_executable(make_resources ${quorvane_make_resources_sources})
      target_link_libraries(make_resources PRIVATE quorvane_options)
    endif()
    set_property(GLOBAL PROPERTY quorvane_make_resources $<TARGET_FILE:make_resources>)
    set(${variable} make_resources PARENT_SCOPE)
    return()
  endif()
  find_program(QUORVANE_HOST_CXX NAMES c++ g++ clang++ DOC "C++ compiler for the building machine" REQUIRED)
  set(program ${CMAKE_CURRENT_BINARY_DIR}/make_resources)
  add_custom_command(
    OUTPUT ${program}
    COMMAND ${QUORVANE_HOST_CXX} -std=c++20 -O1 -I${PROJECT_SOURCE_DIR} ${quorvane_make_resources_sources} -o ${program}
    DEPENDS ${quorvane_make_resources_sources} ${quorvane_make_resources_headers}
    COMMENT "Building make_resources for this machine" VERBATIM)
  set_property(GLOBAL PROPERTY quorvane_make_resources ${program})
  set(${variable} ${program} PARENT_SCOPE)
endfunction()

# quorvane_module_resources(TARGET): makes the type library, the id tables, the pictures and the version block part of
# TARGET, and lets it include the headers of the interface. To be called in the folder that defines TARGET. The compiler of the resources sees no absolute path, and
# what it writes depends on the sources only.
function(quorvane_module_resources target)
  quorvane_make_resources_program(make_resources)
  set(made ${CMAKE_CURRENT_BINARY_DIR}/resources)
  set(parts QuorvaneSecurity.tlb marshalling.tlb interface_ids.bin source_ids.bin toolbox.bmp control.ico identities.rh)
  set(texts QuorvaneSecurity.idl control/interface/security_ctrl.h control/object/security_ctrl_members.h)
  list(TRANSFORM parts PREPEND ${made}/)
  list(TRANSFORM texts PREPEND ${made}/)
  file(MAKE_DIRECTORY ${made})
  set(pictures ${quorvane_wing}/resources)
  add_custom_command(
    OUTPUT ${parts} ${texts}
    COMMAND ${make_resources} ${QUORVANE_VERSION_TEXT} ${pictures} ${made}
    DEPENDS ${make_resources} ${pictures}/toolbox.txt ${pictures}/control.txt
    COMMENT "Writing the type library, id tables, interface texts and pictures" VERBATIM)

  set(script ${quorvane_wing}/module/QuorvaneSecurity.rc)
  set(object ${made}/QuorvaneSecurity.res.o)
  add_custom_command(
    OUTPUT ${object}
    COMMAND ${CMAKE_RC_COMPILER} --preprocessor=${CMAKE_C_COMPILER}
      --preprocessor-arg=-E --preprocessor-arg=-xc-header --preprocessor-arg=-DRC_INVOKED
      --target=pe-i386 --codepage=65001 -I. ${script} -o ${object}
    WORKING_DIRECTORY ${made}
    DEPENDS ${script} ${parts}
    COMMENT "Compiling the resources" VERBATIM)
  target_sources(${target} PRIVATE ${object} ${texts})
  target_include_directories(${target} PRIVATE ${made})
  set_source_files_properties(${object} PROPERTIES EXTERNAL_OBJECT TRUE GENERATED TRUE)
endfunction()
