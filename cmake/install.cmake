# What `cmake --install` lays out. Component `development`: the rooms as a library for programs, found by
# find_package(QuorvaneSecurity) and by pkg-config. Component `programs`: the command line.
include(CMakePackageConfigHelpers)

quorvane_library_rooms(rooms)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/QuorvaneSecurity)

# The archives and their headers. A room's sub-folders are its own affair, but for what its headers include.
set(archives ${rooms})
list(TRANSFORM archives PREPEND quorvane_)
install(TARGETS ${archives} EXPORT QuorvaneSecurityTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
foreach(room IN LISTS rooms ITEMS control/interface)
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${room}/*.h)
  install(FILES ${headers} DESTINATION ${quorvane_include_folder}/${room} COMPONENT development)
endforeach()

# find_package(QuorvaneSecurity). What the stand-ins of the native build stand on, its user links, too.
set(dependencies "")
if(NOT WIN32)
  set(dependencies "find_dependency(CURL 7.85)\n")
endif()
configure_package_config_file(cmake/QuorvaneSecurityConfig.cmake.in QuorvaneSecurityConfig.cmake
  INSTALL_DESTINATION ${package_folder} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(QuorvaneSecurityConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT QuorvaneSecurityTargets NAMESPACE Quorvane::
  DESTINATION ${package_folder} COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/QuorvaneSecurityConfig.cmake
  ${PROJECT_BINARY_DIR}/QuorvaneSecurityConfigVersion.cmake
  DESTINATION ${package_folder} COMPONENT development)

# pkg-config quorvane-security. Its paths are relative to its own place, so the package may be unpacked anywhere. Each
# archive stands in front of those that it needs.
set(link_order ${rooms})
list(REVERSE link_order)
list(TRANSFORM link_order PREPEND -lquorvane_)
if(WIN32)
  list(APPEND link_order -ladvapi32 -lgdi32 -luser32)
  set(required_packages "")
else()
  list(APPEND link_order -l${CMAKE_DL_LIBS})
  set(required_packages "libcurl >= 7.85")
endif()
list(JOIN link_order " " link_order)
file(RELATIVE_PATH prefix_from_file ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/quorvane-security.pc.in quorvane-security.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quorvane-security.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(TARGET quorvane)
  install(TARGETS quorvane RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
endif()
