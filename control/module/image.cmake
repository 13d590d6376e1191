# The marks of the module's file.

# quorvane_module_image(TARGET): the four exports under their plain names, and the marks in the header of the file:
# runs from Windows XP on (subsystem 5.1), data is not executable, any address will do, no handler of structured
# exceptions is in it. The file is stripped: its symbols are no use to a host; the link map beside it keeps them.
#
# Only what is written to is writable. References to data of other modules, which would make constants writable, are
# refused; and two sections that the linker leaves writable without need are mended behind it, in the built file. (It
# knows no other rights for .rsrc.)
function(quorvane_module_image target)
  set(exports ${PROJECT_SOURCE_DIR}/control/module/QuorvaneSecurity.def)
  target_sources(${target} PRIVATE ${exports})
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports})
  target_link_options(${target} PRIVATE
    -Wl,--enable-stdcall-fixup
    -Wl,--major-os-version,5 -Wl,--minor-os-version,1
    -Wl,--subsystem,windows:5.1
    -Wl,--nxcompat -Wl,--dynamicbase -Wl,--no-seh -Wl,--no-insert-timestamp
    -Wl,--disable-auto-import
    -Wl,-Map,${PROJECT_BINARY_DIR}/QuorvaneSecurity.map
    -s)
  set(rights)
  foreach(section .eh_fram .CRT)  # the first as the linker cuts its name
    list(APPEND rights --set-section-flags ${section}=contents,alloc,load,readonly,data)
  endforeach()
  # The time of day 0 is the one that the linker wrote.
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0 ${CMAKE_OBJCOPY} ${rights} $<TARGET_FILE:${target}>
    VERBATIM)
endfunction()

# quorvane_keep_whole(TARGET rooms...): every function of the rooms' archives is in TARGET, whether its exports reach it
# or not, and what they call the system by.
function(quorvane_keep_whole target)
  set(roots ${CMAKE_CURRENT_BINARY_DIR}/library_roots.txt)
  list(TRANSFORM ARGN REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE archives)
  add_custom_command(
    OUTPUT ${roots}
    COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} "-DARCHIVES=${archives}" -DPLATFORM=$<TARGET_FILE:quorvane_platform>
      -DOUTPUT=${roots} -P ${PROJECT_SOURCE_DIR}/control/module/library_roots.cmake
    DEPENDS ${ARGN} quorvane_platform ${PROJECT_SOURCE_DIR}/control/module/library_roots.cmake
    COMMENT "Listing the operations of the library" VERBATIM)
  target_sources(${target} PRIVATE ${roots})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${roots})
  target_link_options(${target} PRIVATE @${roots})
endfunction()
