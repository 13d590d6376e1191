# The marks of the module's file.

# quorvane_module_image(TARGET): the four exports under their plain names, and the marks in the header of the file:
# runs from Windows XP on (subsystem 5.1), data is not executable, any address will do. The file is stripped: its
# symbols are no use to a host.
function(quorvane_module_image target)
  set(exports ${PROJECT_SOURCE_DIR}/control/module/QuorvaneSecurity.def)
  target_sources(${target} PRIVATE ${exports})
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports})
  target_link_options(${target} PRIVATE
    -Wl,--enable-stdcall-fixup
    -Wl,--major-os-version,5 -Wl,--minor-os-version,1
    -Wl,--subsystem,windows:5.1
    -Wl,--nxcompat -Wl,--dynamicbase -Wl,--no-insert-timestamp
    -s)
endfunction()
